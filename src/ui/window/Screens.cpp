#include "ui/window/Screens.h"
#include <QClipboard>
#include <QDesktopServices>
#include <QFileInfo>
#include <QGuiApplication>

namespace vellum::ui {

namespace {

void copy(const QString& text) { QGuiApplication::clipboard()->setText(text); }

// Addresses come from indexers: nothing but a web page is opened.
void openPage(const QUrl& page) {
  if (page.scheme() == u"http" || page.scheme() == u"https") QDesktopServices::openUrl(page);
}

void reveal(const QString& path) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

LocalVideos videosOf(const SavedFiles& files) {
  LocalVideos videos;
  for (const SavedFile& file : files) {
    const QString path = file.url.toLocalFile();
    videos.push_back({QFileInfo(path).fileName(), path, file.size});
  }
  return videos;
}

// Holds the provider for as long as the request runs.
Flow<ArchiveDetails> detailsOf(std::shared_ptr<const ArchiveOrgProvider> provider, QString id) {
  co_return co_await provider->details(std::move(id));
}

std::function<Flow<ArchiveDetails>(QString)> itemDetails(Runtime& runtime) {
  const auto provider = std::make_shared<const ArchiveOrgProvider>(runtime.http.fetcher());
  return [provider](QString id) { return detailsOf(provider, std::move(id)); };
}

} // namespace

Screens::Screens(Runtime& runtime, WindowState& window)
    : m_window(window),
      m_home({window.app.catalog, window.app.library, window.entries, window.navigation,
              [&window] { return videosOf(window.app.downloads.saved()); }}),
      m_discover(window.app.catalog, window.app.settings, window.navigation),
      m_search(window.app.catalog, window.app.settings, window.navigation),
      m_item({runtime.main, runtime.pool, window.navigation, window.entries, window.links,
              itemDetails(runtime),
              [&window](const ArchiveFile& file, const MediaItem& item) {
                window.entries.download(file, item, window.app.downloads);
              },
              openPage}),
      m_library(window.app.library, window.app.downloads, window.entries),
      m_downloads({window.app.downloads, window.app.engine, window.playback.coordinator,
                   window.entries, window.app.cache}),
      m_settings({window.app.settings, window.app.registry, runtime.preferences,
                  runtime.http.transport(), runtime.clock, runtime.main, runtime.pool},
                 window.app.cache, window.app.library),
      m_player(window.playback, window.navigation),
      m_inspector({window.navigation, window.links, copy, reveal}) {
  connect(&window.app.downloads, &DownloadManager::savedChanged, &m_home, &HomeModel::savedChanged);
}

TorrentSearchModel* Screens::torrentSearch(QObject* page) {
  auto* model = new TorrentSearchModel({m_window.app.aggregator, m_window.app.registry,
                                        m_window.playback.coordinator, m_window.links,
                                        m_window.navigation, copy, openPage});
  model->setParent(page);
  return model;
}

} // namespace vellum::ui
