// Bytes as a server packs them. Pure.
#pragma once
#include <QByteArray>

namespace vellum::test {

// One member of gzip.
QByteArray gzip(QByteArray bytes);

} // namespace vellum::test
