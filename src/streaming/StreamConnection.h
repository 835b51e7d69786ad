// One connection of the stream server: one request, one answer.
#pragma once
#include "base/Flow.h"
#include "streaming/HttpRequest.h"
#include "streaming/StreamSource.h"
#include <asio/ip/tcp.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace vellum {

// Lives on the strand of its socket, as long as its coroutine runs. Holds what an unfinished head
// says, or one chunk of a body, never both.
class StreamConnection {
public:
  static constexpr std::size_t kReadSize = 16384;    // bytes asked of the socket at a time
  static constexpr std::size_t kLongestHead = 32768; // bytes; longer heads are not answered
  static constexpr std::int64_t kChunk = 262144;     // bytes
  static constexpr std::chrono::milliseconds kPoll{100};
  static constexpr int kPollsPerNudge = 20; // the playhead is set anew every two seconds of waiting

  // The source registered under a key, or nullptr.
  using FindSource = std::function<std::shared_ptr<StreamSource>(const std::string& key)>;

  StreamConnection(asio::ip::tcp::socket socket, FindSource findSource)
      : m_socket(std::move(socket)), m_findSource(std::move(findSource)) {}

  // Ends with the connection; the caller keeps it alive meanwhile. Throws asio::system_error when
  // the client is gone or the coroutine was cancelled.
  Flow<> run();

private:
  struct Body {
    std::shared_ptr<StreamSource> source;
    FileRange file;
    ByteRange range;
  };

  // Nothing if the client said too much.
  Flow<std::optional<HttpRequest>> readRequest();
  // Sends the head of the answer; gives the body that it promises, if any.
  Flow<std::optional<Body>> respond(HttpRequest request);
  Flow<std::optional<Body>> refuse(std::string answer);
  Flow<> sendBody(Body body);
  // False if the client or the source is gone before the bytes are there.
  Flow<bool> waitFor(StreamSource& source, std::int64_t offset, std::int64_t pos,
                     std::int64_t size);
  Flow<> send(std::span<const char> bytes);
  void readSome(std::string& buffer);
  bool isClientGone();

  asio::ip::tcp::socket m_socket;
  FindSource m_findSource;
};

} // namespace vellum
