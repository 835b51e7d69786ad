#include "world/FileAnswer.h"
#include <algorithm>
#include <optional>

namespace vellum::world {

namespace {

const QByteArray kLastModified = "Sun, 13 Sep 2020 12:26:40 GMT";

struct Range {
  std::int64_t first = 0;
  std::int64_t last = 0; // inclusive; before `first`: there is nothing in it
};

std::optional<std::int64_t> number(const QByteArray& digits) {
  bool isNumber = false;
  const auto value = digits.toLongLong(&isNumber);
  return isNumber && value >= 0 ? std::optional<std::int64_t>(value) : std::nullopt;
}

// Nothing if the header is none of a single range: then the whole file is meant.
std::optional<Range> parseRange(const QByteArray& header, std::int64_t size) {
  const auto dash = header.indexOf('-');
  if (!header.startsWith("bytes=") || dash < 0) return std::nullopt;
  const QByteArray before = header.mid(6, dash - 6);
  const QByteArray behind = header.mid(dash + 1);
  const auto first = number(before);
  const auto last = number(behind);
  if (before.isEmpty() && last) return Range{std::max<std::int64_t>(0, size - *last), size - 1};
  if (!first || (!last && !behind.isEmpty()) || (last && *last < *first)) return std::nullopt;
  return Range{*first, std::min(last.value_or(size - 1), size - 1)};
}

} // namespace

ScriptedServer::Answer fileAnswer(const RequestHead& request, const Payload& file,
                                  const QByteArray& type) {
  const auto bytes = file.bytes();
  const auto size = std::int64_t(bytes.size());
  const QByteArray etag = "\"film-" + QByteArray::number(qint64(size), 16) + '"';
  const QByteArray condition = request.header("If-Range");
  const bool isSame = condition.isEmpty() || condition == etag || condition == kLastModified;
  const auto range = isSame ? parseRange(request.header("Range"), size) : std::nullopt;

  QByteArray headers = "Content-Type: " + type + "\r\nAccept-Ranges: bytes\r\nETag: " + etag +
                       "\r\nLast-Modified: " + kLastModified + "\r\n";
  const QByteArray total = '/' + QByteArray::number(qint64(size)) + "\r\n";
  if (range && range->last < range->first)
    return ScriptedServer::reply(416, {}, headers + "Content-Range: bytes *" + total);
  const Range sent = range.value_or(Range{0, size - 1});
  if (range)
    headers += "Content-Range: bytes " + QByteArray::number(qint64(sent.first)) + '-' +
               QByteArray::number(qint64(sent.last)) + total;
  const auto* begin = reinterpret_cast<const char*>(bytes.data()) + sent.first;
  return ScriptedServer::reply(range ? 206 : 200,
                               QByteArray::fromRawData(begin, sent.last - sent.first + 1), headers);
}

} // namespace vellum::world
