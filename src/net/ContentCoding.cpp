#include "net/ContentCoding.h"
#include "net/NetError.h"
#include <QCoreApplication>
#include <array>
#include <zlib.h>

namespace vellum {

namespace {

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(ContentCoding)
};

// Unpacks gzip alone (RFC 1952), of any number of members.
class Unpacker {
public:
  explicit Unpacker(QByteArray& body) {
    constexpr int kGzipWindow = 15 + 16;
    m_stream.next_in = reinterpret_cast<Bytef*>(body.data());
    m_stream.avail_in = static_cast<uInt>(body.size());
    if (inflateInit2(&m_stream, kGzipWindow) != Z_OK) throw std::bad_alloc();
  }
  ~Unpacker() { inflateEnd(&m_stream); }
  Unpacker(const Unpacker&) = delete;
  Unpacker& operator=(const Unpacker&) = delete;

  // Adds what comes out next; false at the end.
  bool next(QByteArray& out) {
    m_stream.next_out = m_buffer.data();
    m_stream.avail_out = static_cast<uInt>(m_buffer.size());
    const int result = inflate(&m_stream, Z_NO_FLUSH);
    if (result != Z_OK && result != Z_STREAM_END)
      throw NetError::platform(NetError::Reason::Other, Texts::tr("The answer cannot be unpacked"));
    out.append(reinterpret_cast<const char*>(m_buffer.data()),
               static_cast<qsizetype>(m_buffer.size() - m_stream.avail_out));
    return result != Z_STREAM_END || beginMember();
  }

private:
  // What follows a member and is none itself has no meaning.
  bool beginMember() {
    const bool isMember =
        m_stream.avail_in >= 2 && m_stream.next_in[0] == 0x1f && m_stream.next_in[1] == 0x8b;
    return isMember && inflateReset(&m_stream) == Z_OK;
  }

  z_stream m_stream{};
  std::array<Bytef, 64 * 1024> m_buffer{};
};

} // namespace

QByteArray unpacked(QByteArray body, const QByteArray& coding, std::int64_t maxBytes) {
  const QByteArray name = coding.trimmed().toLower();
  if (body.isEmpty() || (name != kAcceptedCoding && name != "x-gzip")) return body;
  Unpacker unpacker(body);
  QByteArray plain;
  bool isMore = true;
  while (isMore) {
    isMore = unpacker.next(plain);
    if (plain.size() > maxBytes) throw NetError::tooLarge();
  }
  return plain;
}

} // namespace vellum
