// libmpv as a test plays it: its functions note the orders, and the test tells what the player
// would tell. For one source file of a program, in which it takes the library's place.
#pragma once
#include <QStringList>
#include <deque>
#include <map>
#include <memory>
#include <mpv/render_gl.h>

namespace vellum::test {

// What is told arrives when the main loop turns.
struct FakeMpv {
  static constexpr std::int64_t kEntry = 7; // its number of whatever it opens

  void note(const QString& text) { notes.append(text); }
  // The orders, joined by "|"; forgotten then.
  std::string taken() { return std::exchange(notes, {}).join(u'|').toStdString(); }

  template <class Data = int>
  void tell(mpv_event_id id, const Data& data = {}, std::uint64_t request = 0, int error = 0) {
    const auto held = std::make_shared<Data>(data);
    events.push_back({{id, error, request, held.get()}, held});
    if (wakeUp != nullptr) wakeUp(wakeUpData);
  }
  // Nothing: not available.
  void tellProperty(const char* name, std::optional<double> value) {
    tellValue(MPV_EVENT_PROPERTY_CHANGE, observers.at(name), value);
  }
  // To the latest question, which must have been asked; the property that is asked for, or the
  // word of a command.
  void answer(const char* name, std::optional<double> value) {
    tellValue(MPV_EVENT_GET_PROPERTY_REPLY, asked.extract(name).mapped(), value);
  }
  void answerCommand(std::uint64_t request, int error = 0) {
    static char key[] = "playlist_entry_id";
    static char* keys[] = {key};
    static mpv_node entry{{.int64 = kEntry}, MPV_FORMAT_INT64};
    static mpv_node_list list{1, &entry, keys};
    const mpv_event_command done{{{.list = &list}, MPV_FORMAT_NODE_MAP}};
    tell(MPV_EVENT_COMMAND_REPLY, done, request, error);
  }
  void tellEnd(mpv_end_file_reason reason, std::int64_t entry) {
    tell(MPV_EVENT_END_FILE, mpv_event_end_file{reason, 0, entry, 0, 0});
  }
  void complain(const char* text) {
    tell(MPV_EVENT_LOG_MESSAGE, mpv_event_log_message{"", "error", text, MPV_LOG_LEVEL_ERROR});
  }
  void tellValue(mpv_event_id id, std::uint64_t request, std::optional<double> value) {
    mpv_node& node =
        nodes.emplace_back(mpv_node{{.double_ = value.value_or(0)}, MPV_FORMAT_DOUBLE});
    tell(id, mpv_event_property{"", value ? MPV_FORMAT_NODE : MPV_FORMAT_NONE, &node}, request,
         value ? 0 : -1);
  }

  int ask(std::uint64_t& latest, std::uint64_t request) {
    latest = request;
    return 0;
  }
  mpv_event* next(double timeout) {
    if (timeout != 0) note(QStringLiteral("blocked"));
    current = {};
    if (!events.empty()) current = events.front(), events.pop_front();
    return &current.event;
  }

  std::map<std::string, std::uint64_t> asked, observers; // the latest number by name
  struct Event {
    mpv_event event{};
    std::shared_ptr<void> data;
  };
  std::deque<Event> events;
  Event current;
  std::deque<mpv_node> nodes;
  void (*wakeUp)(void*) = nullptr;
  void* wakeUpData = nullptr;
  QStringList notes;
};

inline FakeMpv* theMpv = nullptr; // the one that is there; set by a test

} // namespace vellum::test

extern "C" {

using vellum::test::theMpv;

mpv_handle* mpv_create() { return reinterpret_cast<mpv_handle*>(theMpv); }
int mpv_set_option_string(mpv_handle*, const char*, const char*) { return 0; }
int mpv_initialize(mpv_handle*) { return 0; }
void mpv_terminate_destroy(mpv_handle*) { theMpv->note(QStringLiteral("terminate")); }
int mpv_request_log_messages(mpv_handle*, const char*) { return 0; }
void mpv_set_wakeup_callback(mpv_handle*, void (*wakeUp)(void*), void* data) {
  theMpv->wakeUp = wakeUp;
  theMpv->wakeUpData = data;
}
mpv_event* mpv_wait_event(mpv_handle*, double timeout) { return theMpv->next(timeout); }
int mpv_command_async(mpv_handle*, std::uint64_t request, const char** words) {
  QStringList said;
  for (const char** word = words; *word != nullptr; ++word) said += QString::fromUtf8(*word);
  theMpv->note(said.join(u' '));
  return theMpv->ask(theMpv->asked[*words], request);
}
int mpv_set_property_async(mpv_handle*, std::uint64_t, const char* name, mpv_format format,
                           void* data) {
  QString value;
  if (format == MPV_FORMAT_FLAG) value.setNum(*static_cast<int*>(data));
  if (format == MPV_FORMAT_DOUBLE) value.setNum(*static_cast<double*>(data));
  if (format == MPV_FORMAT_STRING) value = QString::fromUtf8(*static_cast<char**>(data));
  theMpv->note(QLatin1String(name) + u'=' + value);
  return 0;
}
int mpv_get_property_async(mpv_handle*, std::uint64_t request, const char* name, mpv_format) {
  return theMpv->ask(theMpv->asked[name], request);
}
int mpv_observe_property(mpv_handle*, std::uint64_t observer, const char* name, mpv_format) {
  return theMpv->ask(theMpv->observers[name], observer);
}

int mpv_render_context_create(mpv_render_context** context, mpv_handle*, mpv_render_param*) {
  *context = reinterpret_cast<mpv_render_context*>(theMpv);
  return 0;
}
void mpv_render_context_set_update_callback(mpv_render_context*, void (*)(void*), void*) {}
std::uint64_t mpv_render_context_update(mpv_render_context*) { return 0; }
int mpv_render_context_render(mpv_render_context*, mpv_render_param* parameters) {
  const auto& fbo = *static_cast<mpv_opengl_fbo*>(parameters[0].data);
  theMpv->note(QStringLiteral("draw %1 %2x%3").arg(fbo.fbo).arg(fbo.w).arg(fbo.h));
  return 0;
}
void mpv_render_context_free(mpv_render_context*) { theMpv->note(QStringLiteral("free")); }

} // extern "C"
