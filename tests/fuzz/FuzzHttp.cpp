// Request heads and ranges of a hostile client.
#include "Require.h"
#include "streaming/HttpAnswer.h"
#include "streaming/HttpRequest.h"

using namespace vellum;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto request = HttpRequest::parse(text);
  request.isForLoopback();
  for (const std::int64_t length : {std::int64_t{1}, std::int64_t{50}, std::int64_t{1} << 62})
    for (const auto& header : {request.range, std::optional(text)})
      if (const auto range = parseRange(header, length)) {
        require(range->start >= 0 && range->start <= range->end && range->end < length);
        answers::head(*range, length, answers::mime(QString::fromStdString(text)), true);
      }
  return 0;
}
