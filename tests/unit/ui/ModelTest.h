// What the view models stand on: playback that a test plays, settings in memory, a network in which
// hosts answer as it says.
#pragma once
#include "app/LinkOpener.h"
#include "app/PlayEntryPoints.h"
#include "net/HttpClient.h"
#include "net/HttpFileTransfers.h"
#include "providers/ProviderRegistry.h"
#include "storage/CacheManager.h"
#include "storage/DownloadManager.h"
#include "support/ScriptedTransport.h"
#include "unit/playback/PlaybackWorld.h"
#include <QAbstractItemModel>

namespace vellum::test {

inline QString text(const char* utf8) { return QString::fromUtf8(utf8); }
inline std::string said(const QString& text) { return text.toStdString(); }

// A role of all rows: "a|b".
inline std::string column(const QAbstractItemModel& rows, const char* role) {
  QStringList list;
  const int number = rows.roleNames().key(role);
  for (int i = 0; i < rows.rowCount(); ++i) list += rows.index(i, 0).data(number).toString();
  return said(list.join(u'|'));
}
inline std::string column(const QVariantList& maps, const char* field) {
  QStringList list;
  for (const QVariant& one : maps) list += one.toMap().value(text(field)).toString();
  return said(list.join(u'|'));
}

// What workers ask until the pool has ended.
struct NetOfModels {
  ScriptedTransport net;
};

struct ModelTest : NetOfModels, PlaybackWorld, LinkOpener::Surroundings {
  ModelTest() {
    settings.setCachePath(folder.path());
    settings.setDownloadsPath(folder.path());
    settings.setProviders({});
  }
  // Notes what it is called with: a text or an address.
  auto note(const char* what) {
    return [this, what](const auto& of) { events += text(what) + u' ' + QVariant(of).toString(); };
  }
  QString torrentDir() override { return folder.path(); }
  void torrentStored() override {}
  bool openWithDesktop(const QString& link) override {
    note("open")(link);
    return true;
  }
  static Flow<QByteArray> catalogAnswer(QUrl, std::chrono::milliseconds) {
    co_return R"({"response":{"docs":[{"identifier":"item","title":"Item","year":1957}]}})";
  }
  std::string told() { return said(takeEvents().join(u'|')); }
  static ProviderConfig provider(const char* name, ProviderKind kind, const char* address) {
    return {QUuid::createUuid(), text(name), kind, text(address), {}, true, {}};
  }

  PreferenceStore memory;
  SettingsStore settings{memory};
  HttpFileTransfers transfers;
  Navigation navigation;
  LinkOpener links{main, pool, catalogAnswer, navigation, *this};
  PlayEntryPoints entries{*coordinator, navigation};
  HttpClient http{main};
  CacheManager cache{settings, main, pool, http};
  DownloadManager downloads{settings, main, pool, transfers};
  ProviderRegistry registry{settings, memory, net.transport(), ArchiveOrgProvider(catalogAnswer)};
};

} // namespace vellum::test
