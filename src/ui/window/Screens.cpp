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

} // namespace

Screens::Screens(WindowState& window)
    : m_window(window), m_player(window.playback, window.navigation),
      m_inspector({window.navigation, window.links, copy, reveal}) {}

TorrentSearchModel* Screens::torrentSearch(QObject* page) {
  auto* model = new TorrentSearchModel({m_window.app.aggregator, m_window.app.registry,
                                        m_window.playback.coordinator, m_window.links,
                                        m_window.navigation, copy, openPage});
  model->setParent(page);
  return model;
}

} // namespace vellum::ui
