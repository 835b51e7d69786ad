#include "providers/XmlText.h"
#include <QRegularExpression>
#include <QStringDecoder>
#include <algorithm>

namespace vellum {

namespace {

constexpr qsizetype kDeclaration = 200; // characters in which an encoding is declared

// The name of the encoding in the declaration, in upper case; empty if there is none.
QByteArray declaredEncoding(const QByteArray& bytes) {
  static const QRegularExpression declaration(
      QStringLiteral(R"(^<\?xml[^>]*\bencoding\s*=\s*["']([^"']*)["'])"));
  const QString start = QString::fromLatin1(bytes.first(std::min(bytes.size(), kDeclaration)));
  return declaration.match(start).captured(1).toUpper().toLatin1();
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
  // The mark says what the text really is, whatever it declares.
  const bool isMarked = bytes.startsWith("\xef\xbb\xbf");
  const QByteArray encoding = isMarked ? QByteArray("UTF-8") : declaredEncoding(bytes);
  if (encoding == "ISO-8859-1") return QString::fromLatin1(bytes);
  QStringDecoder decoder(QStringConverter::Utf8);
  QString text = decoder.decode(bytes);
  if (!decoder.hasError()) return text;
  // Most that has yet another name differs from Latin-1 in a few signs.
  if (encoding.isEmpty() || encoding == "UTF-8") return std::nullopt;
  return QString::fromLatin1(bytes);
}

XmlShape xmlShape(QStringView xml) {
  XmlShape shape;
  qsizetype at = 0;
  while ((at = xml.indexOf(u'<', at)) >= 0) {
    const QStringView rest = xml.sliced(at);
    if (rest.startsWith(u"<!--")) {
      at = behind(xml, QLatin1String("-->"), at + 4);
    } else if (rest.startsWith(u"<![CDATA[")) {
      at = behind(xml, QLatin1String("]]>"), at);
    } else if (rest.startsWith(u"<?")) {
      at = behind(xml, QLatin1String("?>"), at);
    } else if (rest.startsWith(u"<!")) {
      shape.hasDtd = true;
      return shape;
    } else {
      const Tag tag = readTag(xml, at);
      shape.mostAttributes = std::max(shape.mostAttributes, tag.values);
      at = tag.end;
    }
  }
  return shape;
}

} // namespace vellum
