#include "streaming/HttpAnswer.h"
#include "streaming/PathExtension.h"
#include <array>
#include <utility>

namespace vellum::answers {

std::string methodNotAllowed() {
  return "HTTP/1.1 405 Method Not Allowed\r\nContent-Length: 0\r\n\r\n";
}

std::string notFound() { return "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n"; }

std::string rangeNotSatisfiable(std::int64_t length) {
  return "HTTP/1.1 416 Range Not Satisfiable\r\nContent-Range: bytes */" + std::to_string(length) +
         "\r\nContent-Length: 0\r\n\r\n";
}

std::string head(const ByteRange& range, std::int64_t length, const std::string& contentType,
                 bool hadRange) {
  std::string text = hadRange ? "HTTP/1.1 206 Partial Content\r\n" : "HTTP/1.1 200 OK\r\n";
  text += "Content-Type: " + contentType;
  text += "\r\nAccept-Ranges: bytes\r\nContent-Length: " + std::to_string(range.length());
  text += "\r\nConnection: close\r\n";
  if (hadRange)
    text += "Content-Range: bytes " + std::to_string(range.start) + "-" +
            std::to_string(range.end) + "/" + std::to_string(length) + "\r\n";
  return text + "\r\n";
}

std::string mime(const QString& path) {
  static const std::array<std::pair<const char*, const char*>, 7> types{{
      {"mp4", "video/mp4"},
      {"m4v", "video/mp4"},
      {"mov", "video/quicktime"},
      {"mkv", "video/x-matroska"},
      {"webm", "video/webm"},
      {"avi", "video/x-msvideo"},
      {"ts", "video/mp2t"},
  }};
  const QString extension = pathExtension(path);
  for (const auto& [known, type] : types)
    if (extension == QLatin1String(known)) return type;
  return "application/octet-stream";
}

} // namespace vellum::answers
