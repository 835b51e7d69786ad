// One provider of the settings screen, with what is typed into its row and not stored yet.
#pragma once
#include "base/Clock.h"
#include "base/IoPool.h"
#include "base/MainLoop.h"
#include "providers/ProviderHealthChecker.h"
#include "providers/ProviderRegistry.h"
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

// Main thread; answers of a test are parsed on a worker. It may go at any time, with what is typed,
// while a test runs.
class ProviderRowModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The list of providers has one for each.")
  Q_PROPERTY(QString name READ name NOTIFY configChanged)
  Q_PROPERTY(QString subtitle READ subtitle NOTIFY configChanged)
  Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY configChanged)
  Q_PROPERTY(bool editable READ isEditable NOTIFY configChanged)
  Q_PROPERTY(bool takesKey READ takesKey NOTIFY configChanged)
  Q_PROPERTY(QString apiKey READ apiKey WRITE setApiKey NOTIFY configChanged)
  Q_PROPERTY(QString base READ base WRITE setBase NOTIFY baseChanged)
  Q_PROPERTY(bool baseValid READ isBaseValid NOTIFY baseChanged)
  Q_PROPERTY(bool basePlain READ isBasePlain NOTIFY baseChanged) // without encryption
  Q_PROPERTY(QString mirrorsText READ mirrorsText WRITE setMirrorsText NOTIFY mirrorsTextChanged)
  Q_PROPERTY(QStringList invalidMirrors READ invalidMirrors NOTIFY mirrorsTextChanged)
  Q_PROPERTY(bool expanded READ isExpanded NOTIFY expandedChanged)
  Q_PROPERTY(bool testing READ isTesting NOTIFY testChanged)
  Q_PROPERTY(QVariantList results READ results NOTIFY testChanged) // {state, url, detail}
  Q_PROPERTY(QString lastWorkingHost READ lastWorkingHost NOTIFY lastWorkingHostChanged) // or ""

public:
  // All outlive it; memory and clock also a test that is under way on a worker.
  struct Services {
    SettingsStore& settings;
    ProviderRegistry& registry;
    const PreferenceStore& memory;
    Transport transport;
    const Clock& clock;
    MainLoop& main;
    IoPool& pool;
  };

  ProviderRowModel(const Services& services, ProviderConfig config);
  ~ProviderRowModel() override;

  const ProviderConfig& config() const { return m_config; }
  // What the settings hold now. What is typed stays.
  void setConfig(const ProviderConfig& config);

  QString name() const { return m_config.name; }
  QString subtitle() const;
  bool isEnabled() const { return m_config.enabled; }
  bool isEditable() const { return m_config.kind != ProviderKind::ArchiveOrg; }
  bool takesKey() const { return m_config.kind == ProviderKind::Torznab; }
  QString apiKey() const { return m_config.apiKey; }
  QString base() const { return m_base; }
  bool isBaseValid() const;
  bool isBasePlain() const;
  QString mirrorsText() const { return m_mirrorsText; }
  QStringList invalidMirrors() const;
  bool isExpanded() const { return m_expanded; }
  bool isTesting() const { return m_testing; }
  QVariantList results() const;
  QString lastWorkingHost() const;

  void setEnabled(bool enabled);
  void setApiKey(const QString& key); // stored at once
  void setBase(const QString& base);
  void setMirrorsText(const QString& text);

  Q_INVOKABLE void edit();
  // Stores what is valid and closes the editor.
  Q_INVOKABLE void done();
  // Nothing while the base address is invalid; of the mirrors, the valid ones.
  Q_INVOKABLE void commit();
  // Stores the edits first, so that what is on the screen is tested.
  Q_INVOKABLE void test();
  // Takes it off the list, and so ends this.
  Q_INVOKABLE void remove();

Q_SIGNALS:
  void configChanged();
  void baseChanged();
  void mirrorsTextChanged();
  void expandedChanged();
  void testChanged();
  void lastWorkingHostChanged();

private:
  ProviderConfig stored() const;
  void setExpanded(bool expanded);
  QStringList mirrorLines(bool valid) const;
  static Flow<> check(ProviderConfig config, Services services, std::weak_ptr<bool> alive,
                      ProviderRowModel* row);

  Services m_services;
  ProviderConfig m_config;
  QString m_base;
  QString m_mirrorsText;
  bool m_expanded = false;
  bool m_testing = false;
  std::vector<MirrorHealth> m_results;
  FlowGroup m_flows;
  std::shared_ptr<bool> m_alive = std::make_shared<bool>(true);
};

} // namespace vellum::ui
