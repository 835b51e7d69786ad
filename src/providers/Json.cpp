#include "providers/Json.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>

namespace vellum::json {

QJsonValue parse(const QByteArray& bytes) {
  const auto begins = [](char c) { return c == '[' || c == '{' || c == ','; };
  if (std::count_if(bytes.begin(), bytes.end(), begins) > kMaxValues)
    throw SyntaxError(QStringLiteral("too many values"));
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
  if (error.error != QJsonParseError::NoError) throw SyntaxError(error.errorString());
  if (document.isArray()) return document.array();
  return document.object();
}

std::optional<std::vector<QJsonObject>> objects(const QJsonValue& value) {
  if (!value.isArray()) return std::nullopt;
  std::vector<QJsonObject> list;
  const QJsonArray array = value.toArray();
  list.reserve(std::size_t(array.size()));
  for (const auto& one : array) {
    if (!one.isObject()) return std::nullopt;
    list.push_back(one.toObject());
  }
  return list;
}

std::optional<QStringList> strings(const QJsonValue& value) {
  if (!value.isArray()) return std::nullopt;
  QStringList list;
  const QJsonArray array = value.toArray();
  for (const auto& one : array) {
    if (!one.isString()) return std::nullopt;
    list.append(one.toString());
  }
  return list;
}

std::optional<QString> string(const QJsonValue& value) {
  if (!value.isString()) return std::nullopt;
  return value.toString();
}

std::optional<qint64> integer(const QJsonValue& value) {
  const qint64 number = value.toInteger(0);
  if (!value.isDouble() || number != value.toInteger(1)) return std::nullopt;
  return number;
}

} // namespace vellum::json
