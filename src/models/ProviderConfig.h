// One configured provider, and its JSON in the settings. Plain value; any thread.
#pragma once
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <array>
#include <optional>
#include <vector>

namespace vellum {

// In the order in which they are offered.
enum class ProviderKind { ArchiveOrg, Apibay, Yts, Torznab };
inline constexpr std::array kProviderKinds{ProviderKind::ArchiveOrg, ProviderKind::Apibay,
                                           ProviderKind::Yts, ProviderKind::Torznab};

QString rawValue(ProviderKind kind); // as stored: "archiveOrg"
std::optional<ProviderKind> providerKind(const QString& rawValue);
QString label(ProviderKind kind); // as shown: "Torznab (Jackett/Prowlarr)"

// Addresses are what the user typed; they are judged when used.
struct ProviderConfig {
  QUuid id = QUuid::createUuid();
  QString name;
  ProviderKind kind = ProviderKind::ArchiveOrg;
  QString baseURL;
  QString apiKey;
  bool enabled = true;
  QStringList mirrors;
  bool operator==(const ProviderConfig&) const = default;

  // Always all seven keys.
  QJsonObject toJson() const;
  // Nothing without a name or a known kind, or when a key has another type. A missing id is made
  // up; the other keys have defaults; null counts as missing.
  static std::optional<ProviderConfig> fromJson(const QJsonObject& object);
};

// A JSON array. Reading gives nothing if any record is bad.
QByteArray toJson(const std::vector<ProviderConfig>& list);
std::optional<std::vector<ProviderConfig>> providersFromJson(const QByteArray& bytes);

} // namespace vellum
