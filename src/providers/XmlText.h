// A document of XML as text, judged before any reader has to work on it. Pure.
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

namespace vellum {

// The text of a document in UTF-8 or Latin-1, as it declares; of another encoding as much as these
// two can show. Nothing if it is to be UTF-8 and is not.
std::optional<QString> decodedXml(const QByteArray& bytes);

// What makes a document costly to read. Comments, CDATA and instructions do not count.
struct XmlShape {
  int mostAttributes = 0; // quoted values in one tag
  bool hasDtd = false;    // what follows it has not been looked at
};
XmlShape xmlShape(QStringView xml);

} // namespace vellum
