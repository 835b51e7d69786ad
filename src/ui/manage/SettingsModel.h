// The settings screen behind its controls.
#pragma once
#include "storage/CacheManager.h"
#include "storage/LibraryStore.h"
#include "ui/manage/AddProviderModel.h"
#include "ui/manage/ProviderRowsModel.h"

namespace vellum::ui {

// Main thread. Numbers that the preferences hold outside their limits are shown as they are, and
// come within the limits with the first step.
class SettingsModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The window has it.")
  Q_PROPERTY(vellum::ui::ProviderRowsModel* providers READ providers CONSTANT)
  Q_PROPERTY(vellum::ui::AddProviderModel* addition READ addition CONSTANT)
  Q_PROPERTY(QString cacheFolder READ cacheFolder NOTIFY changed)
  Q_PROPERTY(QString downloadsFolder READ downloadsFolder NOTIFY changed)
  Q_PROPERTY(QVariantMap cacheLimit READ cacheLimit NOTIFY changed) // see Limits
  Q_PROPERTY(QVariantMap cacheAge READ cacheAge NOTIFY changed)
  Q_PROPERTY(QVariantMap uploadLimit READ uploadLimit NOTIFY changed)
  Q_PROPERTY(QString usage READ usage NOTIFY measured)
  Q_PROPERTY(QVariantList qualities READ qualities CONSTANT) // {text, value}
  Q_PROPERTY(QString quality READ quality WRITE setQuality NOTIFY changed)
  Q_PROPERTY(
      bool stopSeedingOnClose READ stopSeedingOnClose WRITE setStopSeedingOnClose NOTIFY changed)
  Q_PROPERTY(
      bool keepAfterPlayback READ keepAfterPlayback WRITE setKeepAfterPlayback NOTIFY changed)
  Q_PROPERTY(bool hasHistory READ hasHistory NOTIFY historyChanged)

public:
  // What a stepper may set; a map of it has also its `value`, held within, and its `label`.
  struct Limits {
    int from;
    int to;
    int step;
  };
  static constexpr Limits kCacheLimit{128, 51200, 128}; // MB
  static constexpr Limits kCacheAge{0, 90, 1};          // days
  static constexpr Limits kUploadLimit{0, 20000, 50};   // KB a second

  // They outlive it.
  SettingsModel(const ProviderRowModel::Services& services, CacheManager& cache,
                LibraryStore& library);

  ProviderRowsModel* providers() { return &m_providers; }
  AddProviderModel* addition() { return &m_addition; }
  QString cacheFolder() const { return m_settings.cachePath(); }
  QString downloadsFolder() const { return m_settings.downloadsPath(); }
  QVariantMap cacheLimit() const;
  QVariantMap cacheAge() const;
  QVariantMap uploadLimit() const;
  QString usage() const;
  static QVariantList qualities();
  QString quality() const { return m_settings.preferredQuality(); }
  bool stopSeedingOnClose() const { return m_settings.stopSeedingOnClose(); }
  bool keepAfterPlayback() const { return m_settings.keepAfterPlayback(); }
  bool hasHistory() const { return !m_library.history().empty(); }

  void setQuality(const QString& quality) { m_settings.setPreferredQuality(quality); }
  void setStopSeedingOnClose(bool stop) { m_settings.setStopSeedingOnClose(stop); }
  void setKeepAfterPlayback(bool keep) { m_settings.setKeepAfterPlayback(keep); }
  Q_INVOKABLE void setCacheLimit(int megabytes);
  Q_INVOKABLE void setCacheAge(int days);
  Q_INVOKABLE void setUploadLimit(int kilobytes);
  // A folder of this machine; nothing changes for anything else. The cache, of which everything may
  // be removed, gets a folder of its own in one that holds other things.
  Q_INVOKABLE void setCacheFolder(const QUrl& folder);
  Q_INVOKABLE void setDownloadsFolder(const QUrl& folder);

  // As the screen appears: the rows of the providers are as stored, and the disk is measured.
  Q_INVOKABLE void open();
  Q_INVOKABLE void clean() { m_cache.enforce(); }
  Q_INVOKABLE void clearCache() { m_cache.clear(); }
  Q_INVOKABLE void clearHistory() { m_library.clear(); }

Q_SIGNALS:
  void changed();
  void measured();
  void historyChanged();

private:
  SettingsStore& m_settings;
  CacheManager& m_cache;
  LibraryStore& m_library;
  ProviderRowsModel m_providers;
  AddProviderModel m_addition;
};

} // namespace vellum::ui
