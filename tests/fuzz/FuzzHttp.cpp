#include "Fuzz.h"
#include "streaming/HttpAnswer.h"
#include "streaming/HttpRequest.h"

// Request heads and ranges of a hostile client: what is served lies within the file.
void vellum::fuzz::check(ByteSpan input) {
  const std::string text = toByteArray(input).toStdString();
  const auto request = HttpRequest::parse(text);
  request.isForLoopback();
  for (const std::int64_t length : {std::int64_t{1}, std::int64_t{50}, std::int64_t{1} << 62})
    for (const auto& header : {request.range, std::optional(text)})
      if (const auto range = parseRange(header, length)) {
        require(range->start >= 0 && range->start <= range->end && range->end < length);
        answers::head(*range, length, answers::mime(QString::fromStdString(text)), true);
      }
}
