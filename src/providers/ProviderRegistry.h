// Between the list of providers in the settings and a search over them.
#pragma once
#include "providers/TorrentSearchProvider.h"
#include "storage/SettingsStore.h"
#include <QObject>

namespace vellum {

// Main thread. The list lives in the settings; there is no copy here.
class ProviderRegistry final : public QObject {
  Q_OBJECT

public:
  // Settings and preferences outlive it, the preferences also the searches of what it gives.
  ProviderRegistry(SettingsStore& settings, PreferenceStore& memory, Transport transport,
                   ArchiveOrgProvider catalog);

  // Made anew at each call, in the order of the settings.
  TorrentSearchProviders enabledProviders() const;

  void add(const ProviderConfig& config);
  // Every record with that id.
  void remove(const QUuid& id);
  // The first record with that id, if there is one.
  void setEnabled(const QUuid& id, bool value);

Q_SIGNALS:
  void changed();

private:
  void store(std::vector<ProviderConfig> providers);

  SettingsStore& m_settings;
  PreferenceStore& m_memory;
  Transport m_transport;
  ArchiveOrgProvider m_catalog;
};

} // namespace vellum
