// 500 posters from a server on loopback, scrolled through fast: what that costs the main thread,
// which does all but the drawing. Needs an X screen (scripts/with-screen gives one).
#include "WatchedApplication.h"
#include "net/HttpClient.h"
#include "ui/catalog/MediaList.h"
#include "ui/catalog/PosterProvider.h"
#include "ui/controls/Look.h"
#include "world/CatalogDocuments.h"
#include "world/ScriptedServer.h"
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>
#include <algorithm>
#include <array>
#include <cstdio>

Q_IMPORT_QML_PLUGIN(Vellum_CatalogPlugin)

namespace vellum {

using namespace world;
namespace {

constexpr int kFilms = 500;
constexpr double kFrame = 16; // milliseconds

ui::MediaRows films(const ScriptedServer& server) {
  ui::MediaRows rows;
  for (int i = 0; i < kFilms; ++i) {
    const QString number = QString::number(i);
    rows.push_back({number, QStringLiteral("A film with quite a long name, number ") + number,
                    QStringLiteral("19%1 \u00b7 Somebody").arg(i % 90 + 10),
                    server.url(QStringLiteral("/") + number)});
  }
  return rows;
}

std::vector<QByteArray> somePosters() {
  std::vector<QByteArray> posters;
  for (int i = 0; i < 16; ++i)
    posters.push_back(catalogPoster({.id = QString::number(i), .title = {}}));
  return posters;
}

void wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

double residentMegabytes() {
  QFile file(QStringLiteral("/proc/self/statm"));
  if (!file.open(QIODevice::ReadOnly)) return 0;
  return file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6;
}

void tell(const char* what, std::vector<double> frames) {
  std::ranges::sort(frames);
  const auto above = std::ranges::count_if(frames, [](double ms) { return ms > kFrame; });
  std::printf("%-20s median %4.1f ms, longest %4.1f ms, above %g ms: %d of %d; %.0f MB\n", what,
              frames[frames.size() / 2], frames.back(), kFrame, int(above), int(frames.size()),
              residentMegabytes());
}

// From the first row to the last, a third of a screen each frame. The main thread's work for each
// of them, in milliseconds.
std::vector<double> scroll(QQuickView& view, QQuickItem& grid) {
  std::vector<double> frames;
  const double end = grid.property("contentHeight").toDouble() - grid.height();
  QElapsedTimer since;
  for (double y = 0; y < end; y += grid.height() / 3) {
    since.start();
    const double before = threadSeconds();
    grid.setProperty("contentY", y);
    view.update();
    wait(std::max(1, 16 - int(since.elapsed())));
    frames.push_back((threadSeconds() - before) * 1000);
  }
  return frames;
}

int run(int argc, char** argv) {
  qputenv("QSG_RENDER_LOOP", "threaded");
  QGuiApplication app(argc, argv);
  prepareLook(app);
  const QTemporaryDir home;
  qputenv("VELLUM_HOME", home.path().toUtf8());
  ScriptedServer server([posters = somePosters()](const QByteArray& request) {
    const auto at = std::size_t(request.mid(5, request.indexOf(' ', 5) - 5).toInt());
    return ScriptedServer::reply(200, posters[at % posters.size()],
                                 "Content-Type: image/png\r\nCache-Control: max-age=3600\r\n");
  });
  MainLoop main;
  IoPool pool;
  HttpClient http(main);
  const SystemClock clock;
  ui::MediaList list([](const QString&) {});
  list.setRows(films(server));

  QQuickView view;
  addModules(*view.engine());
  view.engine()->addImageProvider(
      ui::PosterProvider::name(),
      new ui::PosterProvider(pool, http.fetcher(ui::PosterLoader::kLargestBody), clock));
  view.setInitialProperties({{QStringLiteral("list"), QVariant::fromValue(&list)}});
  view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/Vellum/Catalog/PosterGrid.qml")));
  view.setResizeMode(QQuickView::SizeRootObjectToView);
  view.resize(1440, 900);
  view.show();
  wait(1000);
  if (!view.isExposed()) return 1;
  for (const char* round : {"first time through", "second", "third", "fourth"})
    tell(round, scroll(view, *view.rootObject()));
  return 0;
}

} // namespace
} // namespace vellum

int main(int argc, char** argv) { return vellum::run(argc, argv); }
