#include "models/HistoryEntry.h"
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace vellum {

namespace {

constexpr double kMillisecondsTo2001 = 978307200000.0; // from 1970

// The fields that every row must have, each under its own name.
template <class Entry, class Visitor>
void visitFields(Entry& entry, Visitor visit) {
  visit("key", entry.key);
  visit("itemID", entry.itemID);
  visit("title", entry.title);
  visit("source", entry.source);
  visit("isLocal", entry.isLocal);
  visit("position", entry.position);
  visit("duration", entry.duration);
  visit("lastPlayed", entry.lastPlayed);
}

const QLatin1String kThumbnail("thumbnail");

bool take(const QJsonValue& value, QString& field) {
  field = value.toString();
  return value.isString();
}
bool take(const QJsonValue& value, bool& field) {
  field = value.toBool();
  return value.isBool();
}
bool take(const QJsonValue& value, double& field) {
  field = value.toDouble();
  return value.isDouble();
}

bool isWritable(double number) { return std::isfinite(number); }
bool isWritable(const auto&) { return true; }

std::optional<QJsonObject> toObject(const HistoryEntry& entry) {
  QJsonObject object;
  bool good = true;
  visitFields(entry, [&](const char* name, const auto& field) {
    good = good && isWritable(field);
    object.insert(QLatin1String(name), field);
  });
  if (entry.thumbnail) object.insert(kThumbnail, *entry.thumbnail);
  return good ? std::optional(object) : std::nullopt;
}

std::optional<HistoryEntry> fromObject(const QJsonObject& object) {
  HistoryEntry entry;
  bool good = true;
  visitFields(entry, [&](const char* name, auto& field) {
    good = good && take(object.value(QLatin1String(name)), field);
  });
  const QJsonValue thumbnail = object.value(kThumbnail);
  if (!thumbnail.isUndefined() && !thumbnail.isNull())
    good = good && take(thumbnail, entry.thumbnail.emplace());
  return good ? std::optional(entry) : std::nullopt;
}

} // namespace

double secondsSince2001(const QDateTime& time) {
  return (static_cast<double>(time.toMSecsSinceEpoch()) - kMillisecondsTo2001) / 1000;
}

std::optional<QByteArray> toJson(const HistoryEntries& history) {
  QJsonArray array;
  for (const HistoryEntry& entry : history) {
    const auto object = toObject(entry);
    if (!object) return std::nullopt;
    array.append(*object);
  }
  return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<HistoryEntries> historyFromJson(const QByteArray& bytes) {
  const QJsonDocument document = QJsonDocument::fromJson(bytes);
  if (!document.isArray()) return std::nullopt;
  HistoryEntries history;
  const QJsonArray array = document.array();
  for (const auto& value : array) {
    auto entry = value.isObject() ? fromObject(value.toObject()) : std::nullopt;
    if (!entry) return std::nullopt;
    history.push_back(std::move(*entry));
  }
  return history;
}

} // namespace vellum
