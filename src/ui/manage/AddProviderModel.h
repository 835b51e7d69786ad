// The sheet that adds a provider.
#pragma once
#include "providers/ProviderRegistry.h"
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

namespace vellum::ui {

// Main thread.
class AddProviderModel final : public QObject {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("The settings' model has it.")
  Q_PROPERTY(QVariantList kinds READ kinds CONSTANT) // {text, value}
  Q_PROPERTY(QString name MEMBER m_name NOTIFY changed)
  Q_PROPERTY(QString kind READ kind WRITE setKind NOTIFY changed)
  Q_PROPERTY(QString url MEMBER m_url NOTIFY changed)
  Q_PROPERTY(QString key MEMBER m_key NOTIFY changed)
  Q_PROPERTY(bool takesKey READ takesKey NOTIFY changed)
  Q_PROPERTY(bool valid READ isValid NOTIFY changed)

public:
  // It outlives the model.
  explicit AddProviderModel(ProviderRegistry& registry) : m_registry(registry) {}

  static QVariantList kinds();
  QString kind() const { return rawValue(m_kind); }
  void setKind(const QString& kind); // an unknown one changes nothing
  bool takesKey() const { return m_kind == ProviderKind::Torznab; }
  bool isValid() const;

  // As the sheet opens: empty.
  Q_INVOKABLE void reset();
  // Puts the provider at the end of the list; false, and nothing, unless what is typed is valid.
  Q_INVOKABLE bool add();

Q_SIGNALS:
  void changed();

private:
  ProviderRegistry& m_registry;
  QString m_name;
  ProviderKind m_kind = ProviderKind::Torznab;
  QString m_url;
  QString m_key;
};

} // namespace vellum::ui
