// The head of an HTTP request and its byte range, as the stream server reads them. Pure.
#pragma once
#include "base/Bytes.h"
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

// An optional sign and decimal digits, nothing else; nothing if it does not fit 64 bits.
std::optional<std::int64_t> parseInteger(std::string_view text);

struct HttpRequest {
  std::string method;            // empty if the request line has fewer than two words
  std::vector<std::string> path; // the parts of the target between "/"; a query is part of the last
  std::optional<std::string> range;
  std::optional<std::string> host;

  // `head` is everything before the blank line. Of headers that come twice the last one counts.
  static HttpRequest parse(std::string_view head);

  bool isReadable() const { return method == "GET" || method == "HEAD"; }
  // True without a Host header, or when it names a loopback address: a page that rebinds a name of
  // its own to this machine must get nothing.
  bool isForLoopback() const;
};

// Both ends inclusive, in bytes of the file.
struct ByteRange {
  std::int64_t start = 0;
  std::int64_t end = 0;
  std::int64_t length() const { return end - start + 1; }
  bool operator==(const ByteRange&) const = default;
};

// The part of a file of `length` bytes (at least 1) that a Range header asks for; the whole without
// one. Nothing if it cannot be satisfied. Of several ranges the first one counts.
std::optional<ByteRange> parseRange(const std::optional<std::string>& header, std::int64_t length);

} // namespace vellum
