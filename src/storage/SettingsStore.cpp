#include "storage/SettingsStore.h"
#include "base/Addresses.h"
#include "platform/Folders.h"
#include <QDir>
#include <algorithm>

namespace vellum {

namespace {

const QString kOwnFolder = QStringLiteral("/VellumApp");
constexpr std::int64_t kBytesPerKB = 1024;

QString key(const char* name) { return QLatin1String(name); }

std::vector<ProviderConfig> storedProviders(const PreferenceStore& preferences) {
  const auto bytes = preferences.data(key("providers"));
  const auto stored = bytes ? providersFromJson(*bytes) : std::nullopt;
  return stored.value_or(SettingsStore::defaultProviders());
}

ProviderConfig provider(const char* name, ProviderKind kind, const QString& address, bool enabled) {
  ProviderConfig config;
  config.name = QLatin1String(name);
  config.kind = kind;
  config.baseURL = address;
  config.enabled = enabled;
  return config;
}

} // namespace

QString SettingsStore::appSupport() {
  const QString folder = folders::applicationSupport() + kOwnFolder;
  QDir().mkpath(folder);
  return folder;
}

std::vector<ProviderConfig> SettingsStore::defaultProviders() {
  return {provider("Vidarium", ProviderKind::ArchiveOrg, addresses::catalogBase(), true),
          provider("YTS", ProviderKind::Yts, {}, false),
          provider("ApiBay", ProviderKind::Apibay, addresses::apiBayBase(), true)};
}

std::int64_t SettingsStore::uploadLimit(const PreferenceStore& preferences) {
  std::int64_t limit = 0;
  const std::int64_t kilobytes = preferences.integer(key("uploadLimitKBps")).value_or(0);
  // What does not fit is as good as no limit.
  return __builtin_mul_overflow(kilobytes, kBytesPerKB, &limit) ? 0 : limit;
}

SettingsStore::SettingsStore(PreferenceStore& preferences)
    : m_preferences(preferences),
      m_cachePath(
          preferences.string(key("cachePath")).value_or(appSupport() + QStringLiteral("/Cache"))),
      m_downloadsPath(
          preferences.string(key("downloadsPath")).value_or(folders::movies() + kOwnFolder)),
      m_cacheLimitMB(preferences.integer(key("cacheLimitMB")).value_or(1024)),
      m_autoCleanDays(preferences.integer(key("autoCleanDays")).value_or(14)),
      m_gridView(preferences.boolean(key("gridView")).value_or(true)),
      m_providers(storedProviders(preferences)),
      m_preferredQuality(
          preferences.string(key("preferredQuality")).value_or(QStringLiteral("1080p"))),
      m_uploadLimitKBps(preferences.integer(key("uploadLimitKBps")).value_or(0)),
      m_stopSeedingOnClose(preferences.boolean(key("stopSeedingOnClose")).value_or(true)),
      m_keepAfterPlayback(preferences.boolean(key("keepAfterPlayback")).value_or(false)) {}

template <class T>
void SettingsStore::store(const char* name, T& field, const T& value, Signal changed) {
  field = value;
  m_preferences.set(key(name), value);
  Q_EMIT(this->*changed)();
}

void SettingsStore::setCachePath(const QString& path) {
  store("cachePath", m_cachePath, path, &SettingsStore::cachePathChanged);
}
void SettingsStore::setDownloadsPath(const QString& path) {
  store("downloadsPath", m_downloadsPath, path, &SettingsStore::downloadsPathChanged);
}
void SettingsStore::setCacheLimitMB(qint64 limit) {
  store<std::int64_t>("cacheLimitMB", m_cacheLimitMB, limit, &SettingsStore::cacheLimitMBChanged);
}
void SettingsStore::setAutoCleanDays(qint64 days) {
  store<std::int64_t>("autoCleanDays", m_autoCleanDays, days, &SettingsStore::autoCleanDaysChanged);
}
void SettingsStore::setGridView(bool grid) {
  store("gridView", m_gridView, grid, &SettingsStore::gridViewChanged);
}
void SettingsStore::setPreferredQuality(const QString& quality) {
  store("preferredQuality", m_preferredQuality, quality, &SettingsStore::preferredQualityChanged);
}
void SettingsStore::setUploadLimitKBps(qint64 limit) {
  store<std::int64_t>("uploadLimitKBps", m_uploadLimitKBps, limit,
                      &SettingsStore::uploadLimitKBpsChanged);
}
void SettingsStore::setStopSeedingOnClose(bool stop) {
  store("stopSeedingOnClose", m_stopSeedingOnClose, stop,
        &SettingsStore::stopSeedingOnCloseChanged);
}
void SettingsStore::setKeepAfterPlayback(bool keep) {
  store("keepAfterPlayback", m_keepAfterPlayback, keep, &SettingsStore::keepAfterPlaybackChanged);
}

void SettingsStore::setProviders(std::vector<ProviderConfig> providers) {
  m_providers = std::move(providers);
  m_preferences.set(key("providers"), toJson(m_providers));
  Q_EMIT providersChanged();
}

void SettingsStore::update(const ProviderConfig& config) {
  auto list = m_providers;
  const auto found = std::find_if(list.begin(), list.end(),
                                  [&](const auto& held) { return held.id == config.id; });
  if (found == list.end()) return;
  *found = config;
  setProviders(std::move(list));
}

} // namespace vellum
