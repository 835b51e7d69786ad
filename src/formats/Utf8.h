// Outside text as UTF-8 with repair: a bad sequence becomes U+FFFD, nothing else changes. Pure.
#pragma once
#include "base/Bytes.h"
#include <QStringDecoder>

namespace vellum {

// QString::fromUtf8 would swallow a byte order mark, so that two different keys looked the same.
inline QString utf8Text(ByteSpan bytes) {
  using Flag = QStringConverter::Flag;
  QStringDecoder decode(QStringConverter::Utf8, Flag::ConvertInitialBom | Flag::Stateless);
  return decode(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

} // namespace vellum
