#include "world/RequestHead.h"
#include <QUrl>

namespace vellum::world {

RequestHead RequestHead::parse(const QByteArray& bytes) {
  RequestHead request;
  request.head = bytes;
  const auto words = bytes.left(bytes.indexOf("\r\n")).split(' ');
  if (words.size() != 3) return request;
  request.method = words[0];
  request.target = words[1];
  const auto question = request.target.indexOf('?');
  request.path =
      QUrl::fromPercentEncoding(question < 0 ? request.target : request.target.left(question));
  if (question < 0) return request;
  QByteArray query = request.target.mid(question + 1);
  request.query = QUrlQuery(QString::fromUtf8(query.replace("+", "%20")));
  return request;
}

QByteArray RequestHead::header(const char* name) const {
  for (const QByteArray& line : head.split('\n')) {
    const auto colon = line.indexOf(':');
    if (colon > 0 && line.left(colon).compare(name, Qt::CaseInsensitive) == 0)
      return line.mid(colon + 1).trimmed();
  }
  return {};
}

} // namespace vellum::world
