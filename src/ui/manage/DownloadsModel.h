// The downloads screen: what is being saved, and the torrents that run.
#pragma once
#include "app/PlayEntryPoints.h"
#include "engine/TorrentEngine.h"
#include "storage/CacheManager.h"
#include "storage/DownloadManager.h"
#include "ui/manage/KeyedRows.h"
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

struct DownloadRowItem {
  Q_GADGET
  Q_PROPERTY(QString key MEMBER id)
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString phase MEMBER phase) // "downloading", "paused", "finished" or "failed"
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(double progress MEMBER progress) // 0 to 1, -1 while unknown

public:
  QString id;
  QString title;
  QString phase;
  QString detail;
  double progress = -1;
  bool operator==(const DownloadRowItem&) const = default;
};

struct TorrentRowItem {
  Q_GADGET
  Q_PROPERTY(QString key MEMBER id)
  Q_PROPERTY(QString name MEMBER name)
  Q_PROPERTY(QString status MEMBER status)
  Q_PROPERTY(bool streaming MEMBER streaming)
  Q_PROPERTY(QString counts MEMBER counts)

public:
  QString id;
  QString name;
  QString status;
  bool streaming = false;
  QString counts;
  bool operator==(const TorrentRowItem&) const = default;
};

// Main thread. Rows are named by their keys; an unknown one changes nothing.
class DownloadsModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has it.")
  Q_PROPERTY(QAbstractListModel* tasks READ tasks CONSTANT)       // DownloadRowItem
  Q_PROPERTY(QAbstractListModel* torrents READ torrents CONSTANT) // TorrentRowItem
  Q_PROPERTY(QString freeSpace READ freeSpace NOTIFY measured)
  Q_PROPERTY(bool hasTasks READ hasTasks NOTIFY changed)
  Q_PROPERTY(bool hasFinished READ hasFinished NOTIFY changed) // or failed
  Q_PROPERTY(bool hasTorrents READ hasTorrents NOTIFY changed)

public:
  // All outlive it.
  struct Services {
    DownloadManager& downloads;
    TorrentEngine& engine;
    PlaybackCoordinator& playback;
    PlayEntryPoints& entries;
    CacheManager& cache;
  };
  explicit DownloadsModel(const Services& services);

  QAbstractListModel* tasks() { return &m_tasks; }
  QAbstractListModel* torrents() { return &m_torrents; }
  QString freeSpace() const;
  bool hasTasks() const { return !m_tasks.rows().empty(); }
  bool hasFinished() const;
  bool hasTorrents() const { return !m_torrents.rows().empty(); }

  // As the screen appears.
  Q_INVOKABLE void open() { m_services.cache.refresh(); }
  Q_INVOKABLE void pause(const QString& key);
  Q_INVOKABLE void resume(const QString& key);
  Q_INVOKABLE void play(const QString& key); // a finished one
  Q_INVOKABLE void cancel(const QString& key);
  Q_INVOKABLE void clearFinished() { m_services.downloads.clearFinished(); }
  // Ends the torrent, and what plays if it plays from it.
  Q_INVOKABLE void stopTorrent(const QString& key);

Q_SIGNALS:
  void measured();
  void changed();

private:
  void updateTasks();
  void updateTorrents();
  bool isStreaming(const QString& key) const;

  Services m_services;
  KeyedRows<DownloadRowItem> m_tasks;
  KeyedRows<TorrentRowItem> m_torrents;
};

} // namespace vellum::ui
