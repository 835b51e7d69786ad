#include "streaming/StreamConnection.h"
#include "streaming/HttpAnswer.h"
#include <algorithm>
#include <limits>

namespace vellum {

Flow<> StreamConnection::run() {
  m_socket.non_blocking(true);
  const std::string head = co_await readHead();
  if (!head.empty())
    co_await respond(HttpRequest::parse(head));
}

// Everything before the blank line; empty if the client broke off or said too much.
Flow<std::string> StreamConnection::readHead() {
  constexpr std::string_view kBlankLine = "\r\n\r\n";
  std::string buffer;
  while (buffer.size() <= kLongestHead) {
    const std::size_t held = buffer.size();
    buffer.resize(held + kReadSize);
    const std::size_t got = co_await m_socket.async_read_some(
        asio::buffer(buffer.data() + held, kReadSize), asio::use_awaitable);
    buffer.resize(held + got);
    const auto end = buffer.find(kBlankLine, held < 3 ? 0 : held - 3);
    if (end != std::string::npos)
      co_return buffer.substr(0, end);
    buffer.shrink_to_fit(); // an idle client costs what it sent
  }
  co_return std::string();
}

Flow<> StreamConnection::respond(HttpRequest request) {
  if (!request.isReadable())
    co_return co_await send(answers::methodNotAllowed());
  const auto source =
      request.isForLoopback() && request.path.size() >= 2 ? m_findSource(request.path[0]) : nullptr;
  const auto index = source ? parseInteger(request.path[1]) : std::nullopt;
  const auto file = index ? co_await source->fileRangeAsync(*index) : std::nullopt;
  if (!file || file->length < 1)
    co_return co_await send(answers::notFound());
  const auto range = parseRange(request.range, file->length);
  if (!range)
    co_return co_await send(answers::rangeNotSatisfiable(file->length));

  const auto files = co_await source->filesAsync();
  const auto at = static_cast<std::size_t>(*index);
  const QString path = at < files.size() ? files[at].path : QString();
  co_await send(
      answers::head(*range, file->length, answers::mime(path), request.range.has_value()));
  if (request.method == "GET")
    co_await sendBody(source, *file, *range);
}

Flow<> StreamConnection::sendBody(std::shared_ptr<StreamSource> source, FileRange file,
                                  ByteRange range) {
  std::vector<std::byte> chunk(static_cast<std::size_t>(std::min(kChunk, range.length())));
  std::int64_t pos = range.start;
  while (pos <= range.end) {
    source->setPlayhead(pos);
    const std::int64_t size = std::min(kChunk, range.end - pos + 1);
    if (!co_await waitFor(*source, file.offset, pos, size))
      co_return;
    const auto room = std::span(chunk).first(static_cast<std::size_t>(size));
    const std::size_t got = co_await source->readAsync(file.offset + pos, room);
    if (got == 0)
      co_return;
    co_await send({reinterpret_cast<const char*>(chunk.data()), got});
    pos += static_cast<std::int64_t>(got);
    // A reader that takes everything at once must not keep the others waiting.
    co_await asio::post(asio::use_awaitable);
  }
}

Flow<bool> StreamConnection::waitFor(StreamSource& source, std::int64_t offset, std::int64_t pos,
                                     std::int64_t size) {
  if (co_await source.isStoppedAsync())
    co_return false;
  for (int polls = 1; !co_await source.hasRangeAsync(offset + pos, size); ++polls) {
    if (isClientGone() || co_await source.isStoppedAsync())
      co_return false;
    co_await sleepFor(kPoll);
    if (polls % kPollsPerNudge == 0)
      source.setPlayhead(pos);
  }
  co_return true;
}

// Takes and drops what the client still says, to see whether the end of its stream stands behind.
bool StreamConnection::isClientGone() {
  std::array<char, 4096> dropped{};
  for (int i = 0; i < 16; ++i) {
    asio::error_code error;
    m_socket.read_some(asio::buffer(dropped), error);
    if (error == asio::error::would_block)
      return false;
    if (error)
      return true;
  }
  return false;
}

// As much in one call as the socket takes: Asio's own composed write stops at 64 KiB.
Flow<> StreamConnection::send(std::span<const char> bytes) {
  while (!bytes.empty()) {
    asio::error_code error;
    const std::size_t sent = m_socket.write_some(asio::buffer(bytes.data(), bytes.size()), error);
    if (error && error != asio::error::would_block) throw asio::system_error(error);
    bytes = bytes.subspan(sent);
    if (!bytes.empty())
      co_await m_socket.async_wait(asio::ip::tcp::socket::wait_write, asio::use_awaitable);
  }
}

} // namespace vellum
