#include "app/LinkOpener.h"
#include "base/Bytes.h"
#include "base/DescribedError.h"
#include "base/ReplaceFile.h"
#include "desktop/LaunchArguments.h"
#include "streaming/VideoFileSelector.h"
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace vellum {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(LinkOpener)
};

bool isMagnet(const QString& link) { return link.startsWith(QLatin1String("magnet:")); }

QString localPath(const QString& link) {
  return link.startsWith(QLatin1String("file:")) ? QUrl(link).toLocalFile() : link;
}

} // namespace

LinkOpener::LinkOpener(MainLoop& main, IoPool& pool, FetchData fetch, Navigation& navigation,
                       Surroundings& surroundings)
    : m_pool(pool), m_fetch(std::move(fetch)), m_navigation(navigation),
      m_surroundings(surroundings), m_flows(main.executor()) {}

LinkOpener::~LinkOpener() { m_flows.cancelAll(); }

void LinkOpener::open(const QString& link) {
  if (isMagnet(link)) return inspectMagnet(link);
  if (isWebTorrent(link)) return inspectTorrentUrl(QUrl(link));
  const QString path = localPath(link);
  if (QFileInfo(path).suffix().toLower() == u"torrent") inspectFile(path);
}

void LinkOpener::inspectMagnet(const QString& text) {
  if (auto info = TorrentMetadata::parseMagnet(text))
    m_navigation.setInspector(std::move(info));
  else
    m_navigation.setNotice(Texts::tr("That doesn't look like a valid magnet link."));
}

void LinkOpener::inspectTorrentUrl(const QUrl& url) {
  begin(fetchFile(url, m_fetch, m_surroundings.torrentDir()), true);
}

void LinkOpener::inspectFile(const QString& path) { begin(readFile(path), false); }

void LinkOpener::openExternally(const QString& link) {
  if (m_surroundings.openWithDesktop(link)) return;
  m_navigation.setNotice(
      Texts::tr("No app on this Mac is registered to open %1. Install a BitTorrent "
                "client to use it.")
          .arg(isMagnet(link) ? Texts::tr("magnet links") : Texts::tr(".torrent files")));
}

void LinkOpener::begin(Flow<Read> reading, bool stored) {
  m_flows.spawn(take(m_alive, *this, std::move(reading), m_pool.makeWorkerStrand(), stored));
}

Flow<> LinkOpener::take(std::weak_ptr<bool> alive, LinkOpener& self, Flow<Read> reading,
                        WorkerStrand strand, bool stored) {
  Read read;
  try {
    read = co_await flowOn(strand, std::move(reading));
  } catch (const std::exception& error) {
    read.failure = QString::fromUtf8(error.what());
  }
  if (alive.expired()) co_return;
  if (!read.info)
    co_return self.m_navigation.setNotice(Texts::tr("Couldn't read torrent: %1").arg(read.failure));
  self.m_navigation.setInspector(std::move(read.info));
  if (stored) self.m_surroundings.torrentStored();
}

LinkOpener::Read LinkOpener::parsed(const QByteArray& bytes, const QString& path) {
  Read read;
  try {
    read.info = TorrentMetadata::parseTorrent(asBytes(bytes));
    read.info->fileUrl = QUrl::fromLocalFile(path);
    // Asked about each file alone, the selector leaves none out for its size or its neighbours.
    read.info->videos = std::count_if(read.info->files.begin(), read.info->files.end(),
                                      [](const TorrentFileEntry& file) {
                                        return !VideoFileSelector::candidates({file}).empty();
                                      });
  } catch (const std::exception& error) {
    read.failure = QString::fromUtf8(error.what());
  }
  return read;
}

Flow<LinkOpener::Read> LinkOpener::readFile(QString path) {
  QFile file(path);
  // A pipe could keep everything waiting, a film fill the memory.
  if (file.exists() && (!QFileInfo(path).isFile() || file.size() > kLargestFile))
    co_return parsed({}, path);
  if (!file.open(QIODevice::ReadOnly)) co_return Read{{}, file.errorString()};
  co_return parsed(file.readAll(), path);
}

Flow<LinkOpener::Read> LinkOpener::fetchFile(QUrl url, FetchData fetch, QString directory) {
  const QByteArray bytes = co_await fetch(url, kFetchTimeout);
  QString place = url.path();
  while (place.endsWith(u'/')) place.chop(1);
  const QString name = QFileInfo(place).completeBaseName();
  const QString path = directory + u'/' + name + QStringLiteral(".torrent");
  replaceFile(path, bytes, Privacy::Everybody); // what cannot be kept can still be inspected
  co_return parsed(bytes, path);
}

} // namespace vellum
