// Numbers and times as the user reads them, and texts from outside. Pure.
#pragma once
#include <QString>
#include <cstdint>
#include <optional>

namespace vellum {

// A size in bytes as a file manager shows it, in powers of 1000: "Zero KB", "1 byte", "999 bytes",
// "1 KB", "24.6 MB", "1.25 GB". A negative size is an em dash.
QString formatByteCount(std::int64_t bytes);

// "1.5" with the decimal sign of the language in which the texts are shown.
QString withDecimalSign(const QString& number);

// The text on one line and without control characters: a name from outside must neither forge a
// line of ours, nor change the direction of the rest of it, nor speak to the terminal.
QString printable(QString text);

// At most 500 characters, with an ellipsis where it was cut: a stranger's sentence.
QString shortened(const QString& text, qsizetype longest = 500);

// A name or a sentence from outside for one line of the screen: bounded, its blanks folded,
// printable.
QString oneLine(const QString& text);

// Decimal digits with an optional sign, and nothing else; absent if they do not fit 64 bits.
std::optional<qint64> parseInt64(QStringView text);

} // namespace vellum
