// The user's choices as published values, each written through to the preferences as it changes.
#pragma once
#include "models/ProviderConfig.h"
#include "storage/PreferenceStore.h"
#include <QObject>

namespace vellum {

// Main thread. The key of each value is its own name. No value is judged.
class SettingsStore final : public QObject {
  Q_OBJECT
  Q_PROPERTY(QString cachePath READ cachePath WRITE setCachePath NOTIFY cachePathChanged)
  Q_PROPERTY(
      QString downloadsPath READ downloadsPath WRITE setDownloadsPath NOTIFY downloadsPathChanged)
  Q_PROPERTY(qint64 cacheLimitMB READ cacheLimitMB WRITE setCacheLimitMB NOTIFY cacheLimitMBChanged)
  Q_PROPERTY(
      qint64 autoCleanDays READ autoCleanDays WRITE setAutoCleanDays NOTIFY autoCleanDaysChanged)
  Q_PROPERTY(bool gridView READ gridView WRITE setGridView NOTIFY gridViewChanged)
  Q_PROPERTY(QString preferredQuality READ preferredQuality WRITE setPreferredQuality NOTIFY
                 preferredQualityChanged)
  Q_PROPERTY(qint64 uploadLimitKBps READ uploadLimitKBps WRITE setUploadLimitKBps NOTIFY
                 uploadLimitKBpsChanged)
  Q_PROPERTY(bool stopSeedingOnClose READ stopSeedingOnClose WRITE setStopSeedingOnClose NOTIFY
                 stopSeedingOnCloseChanged)
  Q_PROPERTY(bool keepAfterPlayback READ keepAfterPlayback WRITE setKeepAfterPlayback NOTIFY
                 keepAfterPlaybackChanged)

public:
  // The store outlives it. Writes nothing.
  explicit SettingsStore(PreferenceStore& preferences);

  // The program's folder among the user's application support; made if it is missing.
  static QString appSupport();
  static std::vector<ProviderConfig> defaultProviders();
  // Bytes per second, 0 for no limit; straight from the preferences, on any thread.
  static std::int64_t uploadLimit(const PreferenceStore& preferences);

  QString cachePath() const { return m_cachePath; }
  QString downloadsPath() const { return m_downloadsPath; }
  qint64 cacheLimitMB() const { return m_cacheLimitMB; }
  qint64 autoCleanDays() const { return m_autoCleanDays; }
  bool gridView() const { return m_gridView; }
  const std::vector<ProviderConfig>& providers() const { return m_providers; }
  QString preferredQuality() const { return m_preferredQuality; }
  qint64 uploadLimitKBps() const { return m_uploadLimitKBps; }
  bool stopSeedingOnClose() const { return m_stopSeedingOnClose; }
  bool keepAfterPlayback() const { return m_keepAfterPlayback; }

  void setCachePath(const QString& path);
  void setDownloadsPath(const QString& path);
  void setCacheLimitMB(qint64 limit);
  void setAutoCleanDays(qint64 days);
  void setGridView(bool grid);
  void setProviders(std::vector<ProviderConfig> providers);
  void setPreferredQuality(const QString& quality);
  void setUploadLimitKBps(qint64 limit);
  void setStopSeedingOnClose(bool stop);
  void setKeepAfterPlayback(bool keep);
  // Replaces the provider with the same id; one that is not there is not added.
  void update(const ProviderConfig& config);

Q_SIGNALS:
  void cachePathChanged();
  void downloadsPathChanged();
  void cacheLimitMBChanged();
  void autoCleanDaysChanged();
  void gridViewChanged();
  void providersChanged();
  void preferredQualityChanged();
  void uploadLimitKBpsChanged();
  void stopSeedingOnCloseChanged();
  void keepAfterPlaybackChanged();

private:
  using Signal = void (SettingsStore::*)();
  template <class T>
  void store(const char* key, T& field, const T& value, Signal changed);

  PreferenceStore& m_preferences;
  QString m_cachePath;
  QString m_downloadsPath;
  std::int64_t m_cacheLimitMB;
  std::int64_t m_autoCleanDays;
  bool m_gridView;
  std::vector<ProviderConfig> m_providers;
  QString m_preferredQuality;
  std::int64_t m_uploadLimitKBps;
  bool m_stopSeedingOnClose;
  bool m_keepAfterPlayback;
};

} // namespace vellum
