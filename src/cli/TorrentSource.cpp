#include "cli/TorrentSource.h"
#include "base/Text.h"
#include "formats/TorrentMetadata.h"
#include "net/NetError.h"
#include "playback/StreamRules.h"
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace vellum {

namespace {

using Opened = std::variant<TorrentSource, StreamFailure>;

constexpr qint64 kLargestTorrentFile = 64 * kMiB; // bytes

Opened fromTorrentFile(const QByteArray& bytes) {
  auto file = TorrentMeta::parseTorrentFile(asBytes(bytes));
  if (!file) return StreamFailure::nothingToStream();
  TorrentSource source;
  source.hash = file->hash;
  source.trackers = file->trackers;
  source.title = file->meta.name;
  source.meta = std::make_shared<const TorrentMeta>(std::move(file->meta));
  return source;
}

Opened fromMagnet(const QString& text) {
  const auto info = TorrentMetadata::parseMagnet(text);
  const auto hash = info ? hash20FromHex(info->infoHash) : std::nullopt;
  if (!hash) return StreamFailure::nothingToStream();
  return TorrentSource{*hash, info->trackers, info->name, nullptr, directPeers(text)};
}

Opened fromPath(const QString& path) {
  const auto unreadable = [&](const QString& reason) {
    return StreamFailure::other(QCoreApplication::translate("CommandLine", "Couldn't read %1: %2.")
                                    .arg(printable(path), reason));
  };
  QFile file(path);
  // A pipe could keep everything waiting.
  if (file.exists() && !QFileInfo(path).isFile())
    return unreadable(QCoreApplication::translate("CommandLine", "it is no file"));
  if (!file.open(QIODevice::ReadOnly)) return unreadable(file.errorString());
  if (file.size() > kLargestTorrentFile)
    return unreadable(QCoreApplication::translate("CommandLine", "it is too large for a torrent"));
  return fromTorrentFile(file.readAll());
}

Flow<Opened> fromAddress(QUrl url, FetchData fetch) {
  QString reason;
  try {
    co_return fromTorrentFile(co_await fetch(url, kTorrentFetchTimeout));
  } catch (const NetError& error) {
    reason = error.errorDescription();
  }
  co_return StreamFailure::downloadFailed(reason);
}

} // namespace

Flow<Opened> openTorrentSource(QString text, FetchData fetch) {
  const QString trimmed = text.trimmed();
  if (trimmed.startsWith(QLatin1String("magnet:"), Qt::CaseInsensitive))
    co_return fromMagnet(trimmed);
  if (const auto hash = hash20FromHex(trimmed))
    co_return TorrentSource{*hash, {}, trimmed.toLower(), nullptr, {}};
  for (const char* scheme : {"http://", "https://"})
    if (trimmed.startsWith(QLatin1String(scheme), Qt::CaseInsensitive))
      co_return co_await fromAddress(QUrl(trimmed), fetch);
  co_return fromPath(text);
}

} // namespace vellum
