#include "playback/MpvHandle.h"
#include <QFile>
#include <clocale>
#include <mpv/client.h>

namespace vellum {

namespace {

struct Option {
  const char* name;
  const char* value;
};

// Options that a version of libmpv does not know are left out: what they switch off is not there.
constexpr Option kOptions[] = {
    // No configuration, no scripts, no keys, no terminal: nobody else has a say.
    {"config", "no"},
    {"load-scripts", "no"},
    {"ytdl", "no"},
    {"osc", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"load-auto-profiles", "no"},
    {"load-console", "no"},
    {"load-select", "no"},
    {"load-positioning", "no"},
    {"load-commands", "no"},
    {"input-default-bindings", "no"},
    {"input-builtin-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"input-media-keys", "no"},
    {"input-terminal", "no"},
    {"terminal", "no"},
    {"resume-playback", "no"},
    {"save-position-on-quit", "no"},
    // The one file that was asked for, over the protocols that it needs. What a film refers to
    // (playlists, segments, chapters elsewhere, files beside it) is not opened.
    {"access-references", "no"},
    {"ordered-chapters", "no"},
    {"load-unsafe-playlists", "no"},
    {"autoload-files", "no"},
    {"sub-auto", "no"},
    {"audio-file-auto", "no"},
    {"cover-art-auto", "no"},
    {"stream-lavf-o", "protocol_whitelist=[http,https,httpproxy,tcp,tls]"},
    {"demuxer-lavf-o", "protocol_whitelist=[http,https,httpproxy,tcp,tls]"},
    {"tls-verify", "yes"},
    // A stream waits for its pieces as long as it takes; a time-out would only connect anew.
    {"network-timeout", "0"},
    {"cache", "yes"},
    {"cache-pause-wait", "1"},
    {"demuxer-max-bytes", "32MiB"},
    {"demuxer-max-back-bytes", "32MiB"},
    // The picture is drawn by whoever shows it; subtitles are drawn above it by the screens.
    {"vo", "libmpv"},
    {"hwdec", "auto-safe"},
    {"audio-display", "no"},
    {"osd-level", "0"},
    {"sid", "no"},
    {"force-window", "no"},
    {"stop-screensaver", "no"},
    {"audio-fallback-to-null", "yes"},
    // One item at a time, which stays loaded at its end.
    {"idle", "yes"},
    {"pause", "yes"},
    {"keep-open", "yes"},
    {"reset-on-next-file", "vid,aid"},
    {"hr-seek", "yes"},
    {"hr-seek-framedrop", "no"},
};

// Where a system keeps its certificates in a file that TLS libraries do not find by themselves.
constexpr const char* kCertificates = "/etc/ssl/cert.pem";

// A proxy named by the environment is for addresses out there, never for our own stream server.
void passProxiesByForLoopback() {
  if (qEnvironmentVariableIsEmpty("http_proxy")) return;
  const QByteArray exempt = qgetenv("no_proxy");
  if (!exempt.contains("127.0.0.1"))
    qputenv("no_proxy", exempt.isEmpty() ? QByteArray("127.0.0.1") : exempt + ",127.0.0.1");
}

} // namespace

MpvHandle::MpvHandle(AudioOutput audio) {
  passProxiesByForLoopback();
  std::setlocale(LC_NUMERIC, "C");
  m_handle = mpv_create();
  if (m_handle == nullptr) return;
  for (const auto& option : kOptions) mpv_set_option_string(m_handle, option.name, option.value);
  if (QFile::exists(QLatin1String(kCertificates)))
    mpv_set_option_string(m_handle, "tls-ca-file", kCertificates);
  if (audio == AudioOutput::Silent) mpv_set_option_string(m_handle, "ao", "null");
  if (mpv_initialize(m_handle) >= 0) return;
  mpv_terminate_destroy(m_handle);
  m_handle = nullptr;
}

MpvHandle::~MpvHandle() {
  if (m_handle != nullptr) mpv_terminate_destroy(m_handle);
}

} // namespace vellum
