#include "playback/SubtitleText.h"

namespace vellum::subtitletext {

namespace {

bool isBlank(QChar c) { return c == u'\t' || c.category() == QChar::Separator_Space; }

} // namespace

QString withPlainLineFeeds(QStringView text) {
  QString out;
  out.reserve(text.size());
  for (qsizetype at = 0; at < text.size(); ++at)
    if (text[at] != u'\r' || at + 1 == text.size() || text[at + 1] != u'\n') out.append(text[at]);
  return out;
}

QString withoutMarkup(QStringView text, QChar open, QChar close, EmptyPair emptyPair) {
  QString out;
  qsizetype from = 0; // what is not copied yet
  qsizetype at = 0;
  while ((at = text.indexOf(open, at)) >= 0) {
    const qsizetype end = text.indexOf(close, at + 1);
    if (end < 0) break;
    const bool stays = end == at + 1 && emptyPair == EmptyPair::Stays;
    if (!stays) {
      out.append(text.sliced(from, at - from));
      from = end + 1;
    }
    at = end + 1;
  }
  out.append(text.sliced(from));
  return out;
}

QStringView withoutOuterBlanks(QStringView text) {
  while (!text.isEmpty() && isBlank(text.front())) text = text.sliced(1);
  while (!text.isEmpty() && isBlank(text.back())) text.chop(1);
  return text;
}

} // namespace vellum::subtitletext
