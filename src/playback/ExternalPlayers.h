// The players that take over when the built-in one cannot decode a stream.
#pragma once
#include <QStringList>
#include <QUrl>
#include <functional>

namespace vellum {

// Main thread. What it needs of the system is asked through Desktop.
class ExternalPlayers {
public:
  class Desktop {
  public:
    virtual ~Desktop() = default;
    virtual bool isExecutable(const QString& path) const = 0;
    // Starts a child without waiting for it; false if it cannot start.
    virtual bool launch(const QString& program, const QStringList& arguments) = 0;
    virtual void terminate() = 0; // the newest child, if it still runs
    // The path of a program by that name, where programs are looked for; empty if there is none.
    virtual QString findProgram(const QString& name) const = 0;
    // Opens an address in VLC, found in the way of the system; false if it is not installed.
    virtual bool openInVlc(const QUrl& url) = 0;
  };
  enum class Opened { None, Mpv, Vlc };

  explicit ExternalPlayers(Desktop& desktop) : m_desktop(desktop) {}

  // mpv at its usual places, then where programs are looked for; if there is none or it does not
  // start, VLC. Only the first mpv that is found is tried.
  Opened open(const QUrl& url);
  // Ends an mpv that was started here.
  void close() { m_desktop.terminate(); }

private:
  QString mpv() const;

  Desktop& m_desktop;
};

} // namespace vellum
