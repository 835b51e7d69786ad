// The answers of the stream server, byte for byte. Pure.
#pragma once
#include "streaming/HttpRequest.h"
#include <QString>
#include <string>

namespace vellum::answers {

std::string methodNotAllowed(); // 405
std::string notFound();         // 404
// 416, for a file of `length` bytes.
std::string rangeNotSatisfiable(std::int64_t length);
// The head of a body: 206 if the request had a Range header at all, else 200.
std::string head(const ByteRange& range, std::int64_t length, const std::string& contentType,
                 bool hadRange);

// The type by which a player recognises a file, from the extension of its path.
std::string mime(const QString& path);

} // namespace vellum::answers
