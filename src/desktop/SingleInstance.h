// One Vellum for each user: a second start hands what it was asked to open to the first.
#pragma once
#include "platform/Folders.h"
#include <QObject>
#include <QStringList>
#include <chrono>
#include <memory>

namespace vellum {

// Main thread. On macOS the system does this itself, and every start is the first one.
class SingleInstance final : public QObject {
  Q_OBJECT

public:
  enum class Start {
    First,      // this is the running one, or there is no place where one could be looked for
    HandedOver, // the running one has taken the links: this process has nothing more to do
    Unanswered  // there is a running one, but it did not answer in time, or it was too much
  };

  struct Settings {
    // For the lock and the socket. Made with mode 0700 if it is missing; one that belongs to
    // somebody else is not used.
    QString folder = folders::runtime();
    std::chrono::milliseconds patience{5000}; // of start(), and with each of those who connect
  };

  SingleInstance();
  explicit SingleInstance(Settings settings);
  ~SingleInstance() override;

  // To be called once, before there is a window: it may wait for the other process. `links` as
  // openableLinks() makes them; empty only asks the running one to show itself.
  Start start(const QStringList& links);

Q_SIGNALS:
  // In the running one; empty if another start had nothing to open.
  void opened(const QStringList& links);

private:
  class Door;
  Settings m_settings;
  std::unique_ptr<Door> m_door;
};

} // namespace vellum
