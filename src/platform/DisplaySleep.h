// Keeping the screen on.
#pragma once
#include <QString>
#include <memory>

namespace vellum::platform {

// Main thread; never waits for the system. Where the system offers nothing, nothing happens.
class DisplaySleep {
public:
  // The one of this system.
  static std::unique_ptr<DisplaySleep> make();

  virtual ~DisplaySleep() = default;
  // The screen stays on until release() or the end of this object. `reason` may be shown to users.
  // A second hold() changes nothing.
  virtual void hold(const QString& reason) = 0;
  virtual void release() = 0;
};

} // namespace vellum::platform
