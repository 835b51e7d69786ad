#include "streaming/StreamConnection.h"
#include "streaming/HttpAnswer.h"
#include <algorithm>
#include <array>
#include <utility>

namespace vellum {

Flow<> StreamConnection::run() {
  m_socket.non_blocking(true);
  auto request = co_await readRequest();
  if (!request) co_return;
  auto body = co_await respond(*std::exchange(request, std::nullopt));
  if (body) co_await sendBody(*std::move(body));
  // Closing with unread bytes in the socket would reset it, and the client lose the answer.
  if (!isClientGone()) m_socket.shutdown(asio::ip::tcp::socket::shutdown_send);
}

Flow<std::optional<HttpRequest>> StreamConnection::readRequest() {
  constexpr std::string_view kBlankLine = "\r\n\r\n";
  std::string buffer;
  while (buffer.size() <= kLongestHead) {
    co_await m_socket.async_wait(asio::ip::tcp::socket::wait_read, asio::use_awaitable);
    const std::size_t held = buffer.size();
    readSome(buffer);
    const auto end = buffer.find(kBlankLine, held < 3 ? 0 : held - 3);
    if (end != std::string::npos)
      co_return HttpRequest::parse(std::string_view(buffer).substr(0, end));
  }
  co_return std::nullopt;
}

// Appends what the socket holds; throws at its end. The room to read into stands on the stack, so
// that a client that says nothing costs nothing.
void StreamConnection::readSome(std::string& buffer) {
  std::array<char, kReadSize> room;
  asio::error_code error;
  const std::size_t got = m_socket.read_some(asio::buffer(room), error);
  if (error && error != asio::error::would_block) throw asio::system_error(error);
  buffer.append(room.data(), got);
}

Flow<std::optional<StreamConnection::Body>> StreamConnection::respond(HttpRequest request) {
  if (!request.isReadable()) co_return co_await refuse(answers::methodNotAllowed());
  const auto source =
      request.isForLoopback() && request.path.size() >= 2 ? m_findSource(request.path[0]) : nullptr;
  const auto index = source ? parseInteger(request.path[1]) : std::nullopt;
  const auto file = index ? co_await source->fileRangeAsync(*index) : std::nullopt;
  if (!file || file->length < 1) co_return co_await refuse(answers::notFound());
  const auto range = parseRange(request.range, file->length);
  if (!range) co_return co_await refuse(answers::rangeNotSatisfiable(file->length));
  const auto files = co_await source->filesAsync();
  const auto at = static_cast<std::size_t>(*index);
  const QString path = files && at < files->size() ? (*files)[at].path : QString();
  co_await send(
      answers::head(*range, file->length, answers::mime(path), request.range.has_value()));
  if (request.method != "GET") co_return std::nullopt;
  co_return Body{source, *file, *range};
}

Flow<std::optional<StreamConnection::Body>> StreamConnection::refuse(std::string answer) {
  co_await send(answer);
  co_return std::nullopt;
}

Flow<> StreamConnection::sendBody(Body body) {
  const auto& [source, file, range] = body;
  const auto chunk = std::make_unique_for_overwrite<std::byte[]>(
      static_cast<std::size_t>(std::min(kChunk, range.length())));
  std::int64_t pos = range.start;
  while (pos <= range.end) {
    source->setPlayhead(pos);
    const std::int64_t size = std::min(kChunk, range.end - pos + 1);
    if (!co_await waitFor(*source, file.offset, pos, size)) co_return;
    const std::span room(chunk.get(), static_cast<std::size_t>(size));
    const std::size_t got = co_await source->readAsync(file.offset + pos, room);
    if (got == 0) co_return;
    co_await send({reinterpret_cast<const char*>(chunk.get()), got});
    pos += static_cast<std::int64_t>(got);
    // A reader that takes everything at once must not keep the others waiting.
    co_await asio::post(asio::use_awaitable);
  }
}

Flow<bool> StreamConnection::waitFor(StreamSource& source, std::int64_t offset, std::int64_t pos,
                                     std::int64_t size) {
  if (co_await source.isStoppedAsync()) co_return false;
  for (int polls = 1; !co_await source.hasRangeAsync(offset + pos, size); ++polls) {
    if (isClientGone() || co_await source.isStoppedAsync()) co_return false;
    co_await sleepFor(kPoll);
    if (polls % kPollsPerNudge == 0) source.setPlayhead(pos);
  }
  co_return true;
}

// Takes and drops what the client still says, to see whether the end of its stream stands behind.
bool StreamConnection::isClientGone() {
  std::array<char, 4096> dropped{};
  for (int i = 0; i < 16; ++i) {
    asio::error_code error;
    m_socket.read_some(asio::buffer(dropped), error);
    if (error == asio::error::would_block) return false;
    if (error) return true;
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
