// A document of XML as text, judged before any reader has to work on it. Pure.
#pragma once
#include <QByteArray>
#include <QString>
#include <optional>

namespace vellum {

// The text of a document in UTF-8 or the encoding that it declares. Nothing if that is unknown or
// the bytes are not in it.
std::optional<QString> decodedXml(const QByteArray& bytes);

// The greatest number of quoted values in one tag; comments, CDATA and instructions do not count.
int mostAttributes(QStringView xml);

} // namespace vellum
