// Keeps the screen on while a film plays.
#pragma once
#include "platform/DisplaySleep.h"

namespace vellum {

// Main thread.
class StayAwake final {
public:
  explicit StayAwake(
      std::unique_ptr<platform::DisplaySleep> sleep = platform::DisplaySleep::make());

  // Whether something plays and is not paused.
  void setPlaying(bool isPlaying);

private:
  std::unique_ptr<platform::DisplaySleep> m_sleep;
  bool m_isPlaying = false;
};

} // namespace vellum
