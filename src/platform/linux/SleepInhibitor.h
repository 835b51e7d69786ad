// Keeping the screen on in the way of the Linux desktops: org.freedesktop.ScreenSaver on the
// session bus, and if nobody answers there, an inhibitor lock "idle" of org.freedesktop.login1.
#pragma once
#include "platform/DisplaySleep.h"
#include <QDBusConnection>
#include <QObject>
#include <functional>

namespace vellum::platform {

// Main thread. Every call is asynchronous; a bus is only connected to when it is needed. Both
// services let go by themselves when the connection ends.
class SleepInhibitor final : public DisplaySleep {
public:
  using Bus = std::function<QDBusConnection()>;
  SleepInhibitor(Bus session, Bus system);
  ~SleepInhibitor() override;

  void hold(const QString& reason) override;
  void release() override;

private:
  struct Hold;
  void askScreenSaver(std::shared_ptr<Hold> hold, const QString& reason);
  void askLogin(std::shared_ptr<Hold> hold, const QString& reason);

  Bus m_session;
  Bus m_system;
  std::shared_ptr<Hold> m_hold;
  QObject m_replies; // those still on their way
};

} // namespace vellum::platform
