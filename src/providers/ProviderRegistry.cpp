#include "providers/ProviderRegistry.h"
#include <algorithm>

namespace vellum {

ProviderRegistry::ProviderRegistry(SettingsStore& settings, PreferenceStore& memory,
                                   Transport transport, ArchiveOrgProvider catalog)
    : m_settings(settings), m_memory(memory), m_transport(std::move(transport)),
      m_catalog(std::move(catalog)) {}

TorrentSearchProviders ProviderRegistry::enabledProviders() const {
  TorrentSearchProviders enabled;
  for (const ProviderConfig& config : m_settings.providers()) {
    if (!config.enabled) continue;
    if (config.kind == ProviderKind::ArchiveOrg)
      enabled.push_back(std::make_shared<ArchiveSearchProvider>(config, m_catalog));
    else
      enabled.push_back(std::make_shared<IndexerProvider>(config, m_transport, m_memory));
  }
  return enabled;
}

void ProviderRegistry::add(const ProviderConfig& config) {
  auto providers = m_settings.providers();
  providers.push_back(config);
  store(std::move(providers));
}

void ProviderRegistry::remove(const QUuid& id) {
  auto providers = m_settings.providers();
  std::erase_if(providers, [&](const ProviderConfig& config) { return config.id == id; });
  store(std::move(providers));
}

void ProviderRegistry::setEnabled(const QUuid& id, bool value) {
  auto providers = m_settings.providers();
  const auto found = std::find_if(providers.begin(), providers.end(),
                                  [&](const ProviderConfig& config) { return config.id == id; });
  if (found == providers.end()) return;
  found->enabled = value;
  store(std::move(providers));
}

void ProviderRegistry::store(std::vector<ProviderConfig> providers) {
  m_settings.setProviders(std::move(providers));
  Q_EMIT changed();
}

} // namespace vellum
