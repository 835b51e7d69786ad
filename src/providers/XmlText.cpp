#include "providers/XmlText.h"
#include <QRegularExpression>
#include <QStringDecoder>
#include <algorithm>

namespace vellum {

namespace {

constexpr qsizetype kDeclaration = 200; // characters in which an encoding is declared

QStringConverter::Encoding declaredEncoding(const QByteArray& bytes, bool& isKnown) {
  static const QRegularExpression declaration(
      QStringLiteral(R"(^(?:\xef\xbb\xbf)?<\?xml[^>]*\bencoding\s*=\s*["']([^"']*)["'])"));
  const QString start = QString::fromLatin1(bytes.first(std::min(bytes.size(), kDeclaration)));
  const auto match = declaration.match(start);
  if (!match.hasMatch()) return QStringConverter::Utf8;
  const QString name = match.captured(1);
  // A declaration that reads as ASCII stands in no document of 16 bits, whatever it says.
  const auto encoding = name.compare(u"us-ascii", Qt::CaseInsensitive) == 0
                            ? QStringConverter::Utf8
                            : QStringConverter::encodingForName(name.toLatin1().constData());
  isKnown = encoding == QStringConverter::Utf8 || encoding == QStringConverter::Latin1;
  return encoding.value_or(QStringConverter::Utf8);
}

// Behind the next `end` at or after `from`; the end of the text if there is none.
qsizetype behind(QStringView xml, QLatin1String end, qsizetype from) {
  const qsizetype found = xml.indexOf(end, from);
  return found < 0 ? xml.size() : found + end.size();
}

struct Tag {
  qsizetype end; // behind its ">"
  int values = 0;
};

Tag readTag(QStringView xml, qsizetype from) {
  Tag tag{from};
  while (tag.end < xml.size()) {
    const QChar c = xml[tag.end++];
    if (c == u'>') break;
    if (c != u'"' && c != u'\'') continue;
    ++tag.values;
    const qsizetype close = xml.indexOf(c, tag.end);
    tag.end = close < 0 ? xml.size() : close + 1;
  }
  return tag;
}

} // namespace

std::optional<QString> decodedXml(const QByteArray& bytes) {
  bool isKnown = true;
  QStringDecoder decoder(declaredEncoding(bytes, isKnown));
  if (!isKnown) return std::nullopt;
  QString text = decoder.decode(bytes);
  if (decoder.hasError()) return std::nullopt;
  return text;
}

int mostAttributes(QStringView xml) {
  int most = 0;
  qsizetype at = 0;
  while ((at = xml.indexOf(u'<', at)) >= 0) {
    const QStringView rest = xml.sliced(at);
    if (rest.startsWith(u"<!--")) {
      at = behind(xml, QLatin1String("-->"), at + 4);
    } else if (rest.startsWith(u"<![CDATA[")) {
      at = behind(xml, QLatin1String("]]>"), at);
    } else if (rest.startsWith(u"<?")) {
      at = behind(xml, QLatin1String("?>"), at);
    } else {
      const Tag tag = readTag(xml, at);
      most = std::max(most, tag.values);
      at = tag.end;
    }
  }
  return most;
}

} // namespace vellum
