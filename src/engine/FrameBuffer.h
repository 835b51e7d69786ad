// Received bytes of one peer, and the length-prefixed frames in them (BEP 3), parsed in place.
#pragma once
#include "base/Bytes.h"
#include <optional>

namespace vellum {

// Lives on its session's strand. Memory is bounded whatever a peer announces: of a long frame only
// the bytes that could matter are kept, the rest is dropped as it arrives.
class FrameBuffer {
public:
  static constexpr std::size_t kReadSize = 65536;         // bytes asked of the socket at a time
  static constexpr std::size_t kLargestFrame = 4194304;   // bytes; a longer one is hostile
  static constexpr std::size_t kAlwaysKept = 32768;       // frames up to this size are kept whole
  static constexpr std::size_t kLargestExtended = 262144; // longer extended messages are dropped

  struct Frame {
    std::uint8_t id = 0;
    ByteSpan body;            // what was kept of it; valid until the next call of prepare()
    std::size_t bodySize = 0; // bytes that the peer sent
    bool isWhole() const { return body.size() == bodySize; }
  };
  enum class State { Waiting, Ready, TooLong };

  // Room for at least kReadSize bytes; valid until the next call.
  std::span<std::byte> prepare();
  // The first `size` bytes of the room were filled.
  void commit(std::size_t size);

  // The first `size` received bytes, consumed; nothing until they are there.
  std::optional<ByteSpan> take(std::size_t size);

  // Moves to the next frame that is there (keep-alives are passed over). `bitfieldBytes` is how
  // much of a bitfield can matter.
  State next(Frame& frame, std::size_t bitfieldBytes);

private:
  std::size_t keptOf(std::uint8_t id, std::size_t frameSize, std::size_t bitfieldBytes) const;
  void dropSkipped();

  ByteVector m_data;
  std::size_t m_begin = 0;
  std::size_t m_end = 0;
  std::size_t m_skip = 0; // bytes still to come that nobody wants
};

} // namespace vellum
