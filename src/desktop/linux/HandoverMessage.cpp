#include "desktop/linux/HandoverMessage.h"
#include <QtEndian>

namespace vellum::handover {

std::optional<QByteArray> encode(const QStringList& links) {
  QByteArray out(kHeader, '\0');
  for (const QString& link : links) {
    out += link.toUtf8() + '\0';
    if (out.size() > kHeader + kLargest) return {};
  }
  qToBigEndian(static_cast<quint32>(out.size() - kHeader), out.data());
  return out;
}

Arrival arrival(const QByteArray& bytes) {
  if (bytes.size() < kHeader) return Arrival::Incomplete;
  const qsizetype length = qFromBigEndian<quint32>(bytes.constData());
  if (length > kLargest || bytes.size() > kHeader + length) return Arrival::Wrong;
  if (bytes.size() < kHeader + length) return Arrival::Incomplete;
  return length == 0 || bytes.back() == '\0' ? Arrival::Complete : Arrival::Wrong;
}

QStringList decode(const QByteArray& message) {
  return QString::fromUtf8(message.sliced(kHeader)).split(QChar(0), Qt::SkipEmptyParts);
}

} // namespace vellum::handover
