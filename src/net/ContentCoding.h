// The packing of an answer's body (RFC 9110, Content-Encoding). Pure.
#pragma once
#include <QByteArray>
#include <cstdint>

namespace vellum {

// What requests offer to servers.
inline constexpr char kAcceptedCoding[] = "gzip";

// The body unpacked, if it is of the coding that was offered; any other is handed on as it came.
// Throws NetError: TooLarge when more than `maxBytes` come out, Other for what is not packed as the
// answer says. Takes the time of the work: keep it off the main thread.
QByteArray unpacked(QByteArray body, const QByteArray& coding, std::int64_t maxBytes);

} // namespace vellum
