#include "models/ProviderConfig.h"
#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

namespace vellum {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ProviderKind)
};

QString written(const QUuid& id) { return id.toString(QUuid::WithoutBraces).toUpper(); }

// The value under a key, or the default if it is missing or null; `good` falls if it has another
// type.
QJsonValue valueOr(const QJsonObject& object, const char* key, const QJsonValue& otherwise,
                   bool& good) {
  const QJsonValue value = object.value(QLatin1String(key));
  if (value.isUndefined() || value.isNull()) return otherwise;
  good = good && value.type() == otherwise.type();
  return value;
}

} // namespace

QString rawValue(ProviderKind kind) {
  switch (kind) {
  case ProviderKind::ArchiveOrg: return QStringLiteral("archiveOrg");
  case ProviderKind::Apibay: return QStringLiteral("apibay");
  case ProviderKind::Yts: return QStringLiteral("yts");
  case ProviderKind::Torznab: return QStringLiteral("torznab");
  }
  return {};
}

std::optional<ProviderKind> providerKind(const QString& raw) {
  for (const ProviderKind kind : kProviderKinds)
    if (rawValue(kind) == raw) return kind;
  return std::nullopt;
}

QString label(ProviderKind kind) {
  switch (kind) {
  case ProviderKind::ArchiveOrg: return Texts::tr("Vidarium");
  case ProviderKind::Apibay: return Texts::tr("ApiBay-compatible JSON");
  case ProviderKind::Yts: return Texts::tr("YTS-compatible JSON");
  case ProviderKind::Torznab: return Texts::tr("Torznab (Jackett/Prowlarr)");
  }
  return {};
}

QJsonObject ProviderConfig::toJson() const {
  return {{QStringLiteral("id"), written(id)},
          {QStringLiteral("name"), name},
          {QStringLiteral("kind"), rawValue(kind)},
          {QStringLiteral("baseURL"), baseURL},
          {QStringLiteral("apiKey"), apiKey},
          {QStringLiteral("enabled"), enabled},
          {QStringLiteral("mirrors"), QJsonArray::fromStringList(mirrors)}};
}

std::optional<ProviderConfig> ProviderConfig::fromJson(const QJsonObject& object) {
  ProviderConfig config;
  const QJsonValue name = object.value(QLatin1String("name"));
  const auto kind = providerKind(object.value(QLatin1String("kind")).toString());
  if (!name.isString() || !kind) return std::nullopt;
  config.name = name.toString();
  config.kind = *kind;

  bool good = true;
  const QString id = valueOr(object, "id", written(config.id), good).toString();
  config.id = QUuid::fromString(id);
  // Qt reads other spellings than the canonical one, and takes what it cannot read for zero.
  good = good && written(config.id).compare(id, Qt::CaseInsensitive) == 0;
  config.baseURL = valueOr(object, "baseURL", QString(), good).toString();
  config.apiKey = valueOr(object, "apiKey", QString(), good).toString();
  config.enabled = valueOr(object, "enabled", true, good).toBool();
  const QJsonArray mirrors = valueOr(object, "mirrors", QJsonArray(), good).toArray();
  for (const auto& mirror : mirrors) {
    good = good && mirror.isString();
    config.mirrors.append(mirror.toString());
  }
  if (!good) return std::nullopt;
  return config;
}

QByteArray toJson(const std::vector<ProviderConfig>& list) {
  QJsonArray array;
  for (const ProviderConfig& config : list) array.append(config.toJson());
  return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<std::vector<ProviderConfig>> providersFromJson(const QByteArray& bytes) {
  const QJsonDocument document = QJsonDocument::fromJson(bytes);
  if (!document.isArray()) return std::nullopt;
  std::vector<ProviderConfig> list;
  const QJsonArray array = document.array();
  for (const auto& value : array) {
    const auto config =
        value.isObject() ? ProviderConfig::fromJson(value.toObject()) : std::nullopt;
    if (!config) return std::nullopt;
    list.push_back(*config);
  }
  return list;
}

} // namespace vellum
