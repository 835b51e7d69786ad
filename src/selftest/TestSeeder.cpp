#include "selftest/TestSeeder.h"
#include "formats/Bencode.h"
#include <array>
#include <asio/write.hpp>

namespace vellum::selftest {

namespace {

using asio::ip::tcp;

constexpr qsizetype kHandshake = 68;           // bytes
constexpr std::size_t kLargestRead = 65536;    // bytes
constexpr std::int64_t kMetadataBlock = 16384; // bytes
constexpr char kUnchoke = 1, kBitfield = 5, kRequest = 6, kPiece = 7, kExtended = 20;
constexpr char kOurMetadataId = 2, kTheirMetadataId = 1;

QByteArray be32Bytes(std::uint32_t value) { return toByteArray(be32(value)); }

QByteArray message(char type, const QByteArray& content = {}) {
  return be32Bytes(std::uint32_t(content.size() + 1)) + type + content;
}

// One connection: what is answered to what came.
class Conversation {
public:
  explicit Conversation(const TestTorrent& torrent) : m_torrent(torrent) {}

  QByteArray answer(const QByteArray& came) {
    m_buffer += came;
    QByteArray out;
    if (!m_greeted && m_buffer.size() >= kHandshake) {
      m_buffer.remove(0, kHandshake);
      m_greeted = true;
      out += greeting();
    }
    while (m_greeted && m_buffer.size() >= 4) {
      const qsizetype length = qsizetype(rd32(asBytes(m_buffer), 0));
      if (m_buffer.size() < 4 + length) break;
      out += answerTo(m_buffer.mid(4, length));
      m_buffer.remove(0, 4 + length);
    }
    return out;
  }

private:
  QByteArray greeting() const {
    QByteArray reserved(8, 0);
    reserved[5] = 0x10; // the extension protocol
    const auto pieces = m_torrent.pieceCount();
    QByteArray bitfield((pieces + 7) / 8, '\xff');
    if (pieces % 8 != 0) bitfield.back() = char(0xff << (8 - pieces % 8));
    return "\x13"
           "BitTorrent protocol" +
           reserved + toByteArray(m_torrent.infoHash) + QByteArray(20, 1) +
           message(kExtended, QByteArray(1, 0) + "d1:md11:ut_metadatai2ee13:metadata_sizei" +
                                  QByteArray::number(m_torrent.infoRaw.size()) + "ee") +
           message(kBitfield, bitfield) + message(kUnchoke);
  }

  QByteArray answerTo(const QByteArray& frame) const {
    if (frame.size() == 13 && frame[0] == kRequest) return block(asBytes(frame));
    if (frame.size() >= 2 && frame[0] == kExtended && frame[1] == kOurMetadataId)
      return metadata(frame.mid(2));
    return {};
  }

  QByteArray block(ByteSpan request) const {
    const auto index = rd32(request, 1), begin = rd32(request, 5), length = rd32(request, 9);
    const qint64 from = qint64(index) * m_torrent.pieceLength + begin;
    if (from + length > m_torrent.payload.size()) return {};
    return message(kPiece,
                   be32Bytes(index) + be32Bytes(begin) + m_torrent.payload.mid(from, length));
  }

  QByteArray metadata(const QByteArray& request) const {
    const auto asked = BencodeParser(asBytes(request)).parse();
    const auto field = [&](const char* key) {
      const Bencode* value = asked ? asked->find(QString::fromLatin1(key)) : nullptr;
      return value ? value->integer() : std::nullopt;
    };
    const auto piece = field("piece");
    if (field("msg_type") != 0 || !piece || *piece < 0 ||
        *piece > m_torrent.infoRaw.size() / kMetadataBlock)
      return {};
    return message(kExtended, QByteArray(1, kTheirMetadataId) + "d8:msg_typei1e5:piecei" +
                                  QByteArray::number(qint64(*piece)) + "e10:total_sizei" +
                                  QByteArray::number(m_torrent.infoRaw.size()) + "ee" +
                                  m_torrent.infoRaw.mid(*piece * kMetadataBlock, kMetadataBlock));
  }

  const TestTorrent& m_torrent;
  QByteArray m_buffer;
  bool m_greeted = false;
};

Flow<> serve(std::shared_ptr<const TestTorrent> torrent, tcp::socket socket) {
  Conversation conversation(*torrent);
  std::array<char, kLargestRead> read{};
  for (;;) {
    const std::size_t size =
        co_await socket.async_read_some(asio::buffer(read), asio::use_awaitable);
    const QByteArray out = conversation.answer(QByteArray(read.data(), qsizetype(size)));
    co_await asio::async_write(socket, asio::buffer(out.data(), std::size_t(out.size())),
                               asio::use_awaitable);
  }
}

} // namespace

TestSeeder::TestSeeder(IoPool& pool, TestTorrent torrent)
    : m_listener(pool, [fixture = std::make_shared<const TestTorrent>(std::move(torrent))](
                           tcp::socket socket) { return serve(fixture, std::move(socket)); }) {}

} // namespace vellum::selftest
