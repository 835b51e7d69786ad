// JSON as strangers write it: loose types, any shape, any size. Pure.
#pragma once
#include "base/DescribedError.h"
#include <QJsonObject>
#include <QJsonValue>
#include <optional>
#include <vector>

namespace vellum::json {

// The bytes are no JSON, or more of it than anybody should have to hold.
class SyntaxError final : public DescribedError {
public:
  using DescribedError::DescribedError;
};

// Values in one document, told by brackets and commas; an array costs a hundred times its brackets.
inline constexpr qsizetype kMaxValues = 1'000'000;

// The array or object of a document. Throws SyntaxError.
QJsonValue parse(const QByteArray& bytes);

// Nothing unless it is an array of objects and nothing else.
std::optional<std::vector<QJsonObject>> objects(const QJsonValue& value);
// Nothing unless it is an array of strings and nothing else.
std::optional<QStringList> strings(const QJsonValue& value);
std::optional<QString> string(const QJsonValue& value);
// A number without a fraction that fits.
std::optional<qint64> integer(const QJsonValue& value);

} // namespace vellum::json
