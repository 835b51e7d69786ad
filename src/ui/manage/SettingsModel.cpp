#include "ui/manage/SettingsModel.h"
#include "base/Text.h"
#include "models/QualityPicker.h"
#include <QUrl>
#include <algorithm>
#include <limits>

namespace vellum::ui {

namespace {

using Limits = SettingsModel::Limits;

qint64 within(const Limits& limits, qint64 value) {
  return std::clamp<qint64>(value, limits.from, limits.to);
}

// Whatever stands in the preferences.
int asInt(qint64 value) { return int(std::min<qint64>(value, std::numeric_limits<int>::max())); }

QVariantMap stepper(const Limits& limits, qint64 value, const QString& text) {
  return {{QStringLiteral("from"), limits.from},
          {QStringLiteral("to"), limits.to},
          {QStringLiteral("step"), limits.step},
          {QStringLiteral("value"), int(within(limits, value))},
          {QStringLiteral("label"), text}};
}

} // namespace

SettingsModel::SettingsModel(const ProviderRowModel::Services& services, CacheManager& cache,
                             LibraryStore& library)
    : m_settings(services.settings), m_cache(cache), m_library(library), m_providers(services),
      m_addition(services.registry) {
  using Store = SettingsStore;
  for (const auto signal : {&Store::cachePathChanged, &Store::downloadsPathChanged,
                            &Store::cacheLimitMBChanged, &Store::autoCleanDaysChanged,
                            &Store::preferredQualityChanged, &Store::uploadLimitKBpsChanged,
                            &Store::stopSeedingOnCloseChanged, &Store::keepAfterPlaybackChanged})
    connect(&m_settings, signal, this, &SettingsModel::changed);
  connect(&m_settings, &Store::cachePathChanged, &m_cache, &CacheManager::configureURLCache);
  for (const auto signal : {&Store::cachePathChanged, &Store::downloadsPathChanged})
    connect(&m_settings, signal, &m_cache, &CacheManager::refresh);
  connect(&m_cache, &CacheManager::measured, this, &SettingsModel::measured);
  connect(&m_library, &LibraryStore::historyChanged, this, &SettingsModel::historyChanged);
}

QVariantMap SettingsModel::cacheLimit() const {
  const qint64 limit = m_settings.cacheLimitMB();
  return stepper(kCacheLimit, limit, tr("Cache limit: %1 MB").arg(limit));
}

QVariantMap SettingsModel::cacheAge() const {
  const qint64 days = m_settings.autoCleanDays();
  return stepper(kCacheAge, days,
                 days > 0 ? tr("Auto-clean cache older than %n days", nullptr, asInt(days))
                          : tr("Auto-clean cache: never"));
}

QVariantMap SettingsModel::uploadLimit() const {
  const qint64 limit = m_settings.uploadLimitKBps();
  return stepper(kUploadLimit, limit,
                 limit > 0 ? tr("Upload rate limit: %1 KB/s").arg(limit)
                           : tr("Upload rate limit: unlimited"));
}

QString SettingsModel::usage() const {
  return tr("Cache in use: %1 · Free disk space: %2")
      .arg(formatByteCount(m_cache.usedBytes()), formatByteCount(m_cache.freeBytes()));
}

QVariantList SettingsModel::qualities() {
  QVariantList list;
  for (const int height : QualityPicker::ladder) {
    const QString name = QStringLiteral("%1p").arg(height);
    list.append(QVariantMap{{QStringLiteral("text"), name}, {QStringLiteral("value"), name}});
  }
  return list;
}

void SettingsModel::setCacheLimit(int megabytes) {
  m_settings.setCacheLimitMB(within(kCacheLimit, megabytes));
}
void SettingsModel::setCacheAge(int days) { m_settings.setAutoCleanDays(within(kCacheAge, days)); }
void SettingsModel::setUploadLimit(int kilobytes) {
  m_settings.setUploadLimitKBps(within(kUploadLimit, kilobytes));
}

void SettingsModel::setCacheFolder(const QUrl& folder) {
  const QString path = folder.toLocalFile();
  if (folder.isLocalFile() && path != m_settings.cachePath())
    m_settings.setCachePath(CacheFolder::placeIn(path));
}
void SettingsModel::setDownloadsFolder(const QUrl& folder) {
  if (folder.isLocalFile()) m_settings.setDownloadsPath(folder.toLocalFile());
}

void SettingsModel::open() {
  m_providers.startOver();
  m_cache.refresh();
}

} // namespace vellum::ui
