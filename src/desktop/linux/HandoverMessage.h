// The one message between two starts of the program: the length of what follows (4 bytes, big
// endian), then the links in UTF-8 with a zero byte after each. Answered with one byte. Pure.
#pragma once
#include <QByteArray>
#include <QStringList>
#include <optional>

namespace vellum::handover {

constexpr qsizetype kHeader = 4;          // bytes
constexpr qsizetype kLargest = 64 * 1024; // bytes, without the header
constexpr char kTaken = 1;

// Nothing if it would be too long.
std::optional<QByteArray> encode(const QStringList& links);

enum class Arrival { Incomplete, Complete, Wrong };
Arrival arrival(const QByteArray& bytes);
// Of a complete message.
QStringList decode(const QByteArray& message);

} // namespace vellum::handover
