#include "playback/MpvCore.h"
#include "base/MainLoop.h"
#include "playback/MpvNode.h"
#include <atomic>
#include <mpv/client.h>

namespace vellum {

// Takes the events out, on the main thread. wake() comes on any thread and only posts; what it
// posted may run after the core has gone, and finds nothing then.
class MpvCore::Inbox : public std::enable_shared_from_this<Inbox> {
public:
  Inbox(MainLoop& main, mpv_handle* handle, Listener& listener)
      : m_main(main), m_handle(handle), m_listener(&listener) {}

  void close() { m_listener = nullptr; }
  QString networkComplaint() const { return m_networkText; }

  static void wake(void* inbox) {
    auto& self = *static_cast<Inbox*>(inbox);
    if (self.m_isPosted.exchange(true)) return;
    self.m_main.post([late = self.weak_from_this()] {
      if (const auto held = late.lock()) held->drain();
    });
  }

private:
  void drain() {
    m_isPosted = false;
    while (m_listener != nullptr) {
      const mpv_event& event = *mpv_wait_event(m_handle, 0);
      if (event.event_id == MPV_EVENT_NONE) return tellFailure();
      deliver(event);
    }
  }

  // libmpv hands out its log after all events, so a failure is told when nothing is left to come.
  void tellFailure() {
    if (m_failed) m_listener->onFailed(*std::exchange(m_failed, {}), std::exchange(m_text, {}));
  }

  // `event` is gone once the listener has been called.
  void deliver(const mpv_event& event) {
    switch (event.event_id) {
    case MPV_EVENT_LOG_MESSAGE: return remember(*static_cast<mpv_event_log_message*>(event.data));
    case MPV_EVENT_START_FILE: {
      m_text.clear();
      m_networkText.clear();
      return m_listener->onStarted(
          static_cast<mpv_event_start_file*>(event.data)->playlist_entry_id);
    }
    case MPV_EVENT_FILE_LOADED: return m_listener->onLoaded();
    case MPV_EVENT_PLAYBACK_RESTART: return m_listener->onRestarted();
    case MPV_EVENT_END_FILE: return end(*static_cast<mpv_event_end_file*>(event.data));
    case MPV_EVENT_PROPERTY_CHANGE:
      return m_listener->onProperty(event.reply_userdata, valueOf(event));
    case MPV_EVENT_GET_PROPERTY_REPLY:
    case MPV_EVENT_COMMAND_REPLY: return reply(event);
    default: return;
    }
  }

  // The first complaint names the cause; those that follow tell what it led to.
  void remember(const mpv_event_log_message& message) {
    const QString text = QString::fromUtf8(message.text).trimmed();
    if (m_text.isEmpty()) m_text = text;
    if (text.startsWith(QStringLiteral("http"))) m_networkText = text; // "http: " or "https: "
  }

  void end(const mpv_event_end_file& file) {
    if (file.reason == MPV_END_FILE_REASON_ERROR) m_failed = file.playlist_entry_id;
  }

  void reply(const mpv_event& event) {
    if (event.reply_userdata == 0) return;
    std::optional<QVariant> result;
    if (event.error >= 0) result = valueOf(event);
    m_listener->onReply(event.reply_userdata, result);
  }

  static QVariant valueOf(const mpv_event& event) {
    if (event.event_id == MPV_EVENT_COMMAND_REPLY)
      return variantOf(static_cast<mpv_event_command*>(event.data)->result);
    const auto& property = *static_cast<mpv_event_property*>(event.data);
    if (property.format != MPV_FORMAT_NODE) return {};
    return variantOf(*static_cast<mpv_node*>(property.data));
  }

  MainLoop& m_main;
  mpv_handle* const m_handle;
  Listener* m_listener;
  std::atomic<bool> m_isPosted = false;
  std::optional<std::int64_t> m_failed; // the entry, until that is told
  QString m_text;                       // the first complaint about what was started last
  QString m_networkText;                // the last one of its connections
};

MpvCore::MpvCore(MainLoop& main, std::shared_ptr<MpvHandle> handle, Listener& listener)
    : m_handle(std::move(handle)),
      m_inbox(std::make_shared<Inbox>(main, m_handle->get(), listener)) {
  if (m_handle->get() == nullptr) return;
  mpv_request_log_messages(m_handle->get(), "error");
  mpv_set_wakeup_callback(m_handle->get(), &Inbox::wake, m_inbox.get());
}

QString MpvCore::networkComplaint() const { return m_inbox->networkComplaint(); }

MpvCore::~MpvCore() {
  m_inbox->close();
  if (m_handle->get() == nullptr) return;
  mpv_set_wakeup_callback(m_handle->get(), nullptr, nullptr);
  command({"stop"});
}

void MpvCore::command(const std::vector<QByteArray>& words, std::uint64_t request) {
  if (m_handle->get() == nullptr) return;
  std::vector<const char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const auto& word : words) arguments.push_back(word.constData());
  arguments.push_back(nullptr);
  mpv_command_async(m_handle->get(), request, arguments.data());
}

void MpvCore::setFlag(const char* property, bool value) {
  int flag = value ? 1 : 0;
  if (m_handle->get() != nullptr)
    mpv_set_property_async(m_handle->get(), 0, property, MPV_FORMAT_FLAG, &flag);
}

void MpvCore::setNumber(const char* property, double value) {
  if (m_handle->get() != nullptr)
    mpv_set_property_async(m_handle->get(), 0, property, MPV_FORMAT_DOUBLE, &value);
}

void MpvCore::setText(const char* property, const QByteArray& value) {
  const char* text = value.constData();
  if (m_handle->get() != nullptr)
    mpv_set_property_async(m_handle->get(), 0, property, MPV_FORMAT_STRING,
                           static_cast<void*>(&text));
}

void MpvCore::get(const char* property, std::uint64_t request) {
  if (m_handle->get() != nullptr)
    mpv_get_property_async(m_handle->get(), request, property, MPV_FORMAT_NODE);
}

void MpvCore::observe(const char* property, std::uint64_t observer) {
  if (m_handle->get() != nullptr)
    mpv_observe_property(m_handle->get(), observer, property, MPV_FORMAT_NODE);
}

} // namespace vellum
