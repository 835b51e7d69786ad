#include "ui/manage/AddProviderModel.h"
#include "providers/ProviderURL.h"

namespace vellum::ui {

QVariantList AddProviderModel::kinds() {
  QVariantList list;
  for (const ProviderKind kind : kProviderKinds)
    list.append(QVariantMap{{QStringLiteral("text"), label(kind)},
                            {QStringLiteral("value"), rawValue(kind)}});
  return list;
}

void AddProviderModel::setKind(const QString& kind) {
  m_kind = providerKind(kind).value_or(m_kind);
  Q_EMIT changed();
}

bool AddProviderModel::isValid() const {
  return !m_name.isEmpty() && ProviderURL::validate(m_url).has_value();
}

void AddProviderModel::reset() {
  m_name.clear();
  m_kind = ProviderKind::Torznab;
  m_url.clear();
  m_key.clear();
  Q_EMIT changed();
}

bool AddProviderModel::add() {
  if (!isValid()) return false;
  ProviderConfig config;
  config.name = m_name;
  config.kind = m_kind;
  config.baseURL = m_url;
  config.apiKey = m_key;
  m_registry.add(config);
  return true;
}

} // namespace vellum::ui
