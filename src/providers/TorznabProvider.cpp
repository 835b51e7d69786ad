#include "providers/TorznabProvider.h"
#include "base/Text.h"
#include "providers/TorznabParser.h"
#include "providers/XmlText.h"
#include <QCoreApplication>
#include <QXmlStreamReader>

namespace vellum {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(Torznab)
};

// What is wrong with the document, if anything.
std::optional<XmlError> read(const QString& xml, TorznabParser& parser) {
  QXmlStreamReader reader(xml);
  reader.setNamespaceProcessing(false);
  int depth = 0;
  while (!reader.atEnd() && !parser.isFull()) {
    switch (reader.readNext()) {
    case QXmlStreamReader::StartElement:
      if (++depth > TorznabProvider::kMaxDepth)
        return XmlError(Texts::tr("The document is nested too deeply"));
      parser.startElement(reader.qualifiedName(), reader.attributes());
      break;
    case QXmlStreamReader::Characters: parser.characters(reader.text()); break;
    case QXmlStreamReader::EndElement:
      --depth;
      parser.endElement(reader.qualifiedName());
      break;
    default: break;
    }
  }
  if (!reader.hasError()) return std::nullopt;
  return XmlError(shortened(reader.errorString()));
}

} // namespace

TorrentResults TorznabProvider::parse(const QByteArray& bytes, const QString& source) {
  const auto xml = decodedXml(bytes);
  if (!xml) throw XmlError(Texts::tr("The document is not in its encoding"));
  const XmlShape shape = xmlShape(*xml);
  if (shape.hasDtd) throw XmlError(Texts::tr("The document has a DTD, which is not read"));
  // The reader compares every attribute of an element with every other.
  if (shape.mostAttributes > kMaxAttributes)
    throw XmlError(Texts::tr("The document has an element with too many attributes"));
  TorznabParser parser(source);
  const auto error = read(*xml, parser);
  if (parser.apiError()) throw IndexerError(*parser.apiError());
  if (error) throw XmlError(*error);
  return parser.takeResults();
}

} // namespace vellum
