#include "streaming/HttpRequest.h"
#include <algorithm>
#include <charconv>

namespace vellum {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string lowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return out;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Empty parts are dropped.
std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  while (!text.empty()) {
    const auto end = std::min(text.find(separator), text.size());
    if (end > 0) parts.emplace_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return parts;
}

// One line off the front of `text`.
std::string_view takeLine(std::string_view& text) {
  const auto end = text.find("\r\n");
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  return line;
}

bool isLoopbackV4(std::string_view host) {
  const auto parts = split(host, '.');
  if (parts.size() != 4 || std::count(host.begin(), host.end(), '.') != 3) return false;
  for (const std::string& part : parts) {
    const bool isNumber = part.size() <= 3 && std::all_of(part.begin(), part.end(), isDigit);
    if (!isNumber || *parseInteger(part) > 255) return false;
  }
  return parts.front() == "127";
}

// Behind the "]" of an IPv6 address, and behind a name, only a port may stand.
std::string_view withoutPort(std::string_view host) {
  const auto end = host.starts_with('[') ? host.find(']') : host.find(':');
  if (end == std::string_view::npos || !host.starts_with('[')) return host.substr(0, end);
  const auto rest = host.substr(end + 1);
  return rest.empty() || rest.starts_with(':') ? host.substr(0, end + 1) : std::string_view();
}

std::optional<ByteRange> fromStart(std::int64_t start, std::int64_t end, std::int64_t length) {
  end = std::min(end, length - 1);
  if (start < 0 || start >= length || start > end) return std::nullopt;
  return ByteRange{start, end};
}

} // namespace

std::optional<std::int64_t> parseInteger(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  std::int64_t value = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || rest != text.data() + text.size()) return std::nullopt;
  return value;
}

HttpRequest HttpRequest::parse(std::string_view head) {
  HttpRequest request;
  const auto words = split(takeLine(head), ' ');
  if (words.size() < 2) return request;
  request.method = words[0];
  request.path = split(words[1], '/');
  while (!head.empty()) {
    const std::string_view line = takeLine(head);
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    const std::string name = lowered(line.substr(0, colon));
    const std::string value(trimmed(line.substr(colon + 1)));
    if (name == "range") request.range = value;
    if (name == "host") request.host = value;
  }
  return request;
}

bool HttpRequest::isForLoopback() const {
  if (!host) return true;
  const std::string name = lowered(withoutPort(*host));
  return name == "localhost" || name == "[::1]" || isLoopbackV4(name);
}

std::optional<ByteRange> parseRange(const std::optional<std::string>& header, std::int64_t length) {
  constexpr std::string_view kUnit = "bytes=";
  const ByteRange whole{0, length - 1};
  if (!header || !lowered(*header).starts_with(kUnit)) return whole;
  const auto ranges = split(std::string_view(*header).substr(kUnit.size()), ',');
  if (ranges.empty()) return std::nullopt;
  const std::string_view first = ranges.front();
  const auto hyphen = first.find('-');
  if (hyphen == std::string_view::npos) return std::nullopt;
  const std::string_view from = first.substr(0, hyphen);
  const auto to = parseInteger(first.substr(hyphen + 1));
  if (from.empty()) {
    if (!to || *to < 1) return std::nullopt;
    return ByteRange{std::max<std::int64_t>(length - *to, 0), length - 1};
  }
  const auto start = parseInteger(from);
  if (!start) return std::nullopt;
  return fromStart(*start, to.value_or(length - 1), length);
}

} // namespace vellum
