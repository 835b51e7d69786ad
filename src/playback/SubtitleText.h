// The steps on text that all subtitle formats share, each in one pass: replacing in place moves
// the rest of a text again and again. Pure.
#pragma once
#include <QString>

namespace vellum::subtitletext {

// Every carriage return with a line feed behind it goes.
QString withPlainLineFeeds(QStringView text);

// Without what stands between `open` and the next `close`, and without these two. What is never
// closed stays, and so does an empty pair unless it is said to go.
enum class EmptyPair { Stays, Goes };
QString withoutMarkup(QStringView text, QChar open, QChar close, EmptyPair emptyPair);

// Without blanks and tabs at both ends; other white space stays.
QStringView withoutOuterBlanks(QStringView text);

} // namespace vellum::subtitletext
