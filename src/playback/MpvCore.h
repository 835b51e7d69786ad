// Orders to a player and what it tells, never waiting for it.
#pragma once
#include "playback/MpvHandle.h"
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

namespace vellum {

class MainLoop;

// Main thread. Every order is carried out later, in the order given; an order that fails is only
// told of by its reply. Without a player (MpvHandle::get() is null) nothing ever happens.
class MpvCore {
public:
  // Main thread; may destroy the core.
  class Listener {
  public:
    virtual ~Listener() = default;
    // Of an order that was given with a number. Nothing if the order failed.
    virtual void onReply(std::uint64_t request, const std::optional<QVariant>& result) = 0;
    virtual void onStarted(std::int64_t entry) = 0; // about to be opened
    virtual void onLoaded() = 0;                    // what was started last is ready
    // Nothing stays loaded. The text is the player's own, empty if it told none.
    virtual void onFailed(std::int64_t entry, const QString& text) = 0;
    // Playback begins, or goes on after a seek, or would but for the pause.
    virtual void onRestarted() = 0;
    // An invalid value: not available now.
    virtual void onProperty(std::uint64_t observer, const QVariant& value) = 0;
  };

  MpvCore(MainLoop& main, std::shared_ptr<MpvHandle> handle, Listener& listener);
  // Nothing is told any more, and what plays is stopped. Does not wait for the player.
  ~MpvCore();
  MpvCore(const MpvCore&) = delete;
  MpvCore& operator=(const MpvCore&) = delete;

  // The words are arguments, never parsed. request 0: no reply.
  void command(const std::vector<QByteArray>& words, std::uint64_t request = 0);
  void setFlag(const char* property, bool value);
  void setNumber(const char* property, double value);
  void setText(const char* property, const QByteArray& value);
  void get(const char* property, std::uint64_t request);
  void observe(const char* property, std::uint64_t observer);

  // The last that went wrong with the connections of what was started last; null for nothing. The
  // player may have got over it.
  QString networkComplaint() const;

private:
  class Inbox;
  std::shared_ptr<MpvHandle> m_handle;
  std::shared_ptr<Inbox> m_inbox;
};

} // namespace vellum
