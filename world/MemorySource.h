// A torrent in memory, whose bytes arrive when a test says so.
#pragma once
#include "streaming/StreamSource.h"
#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace vellum::world {

// Answers on a strand, as a session does. What steers and asks it may be called from any thread.
class MemorySource final : public StreamSource {
public:
  static constexpr std::int64_t kPiece = 16384; // bytes; what arrives is rounded out to pieces

  // The files lie one behind the other in `payload`, of which nothing is there yet.
  MemorySource(Strand strand, ByteVector payload, std::vector<TorrentFileEntry> files)
      : m_strand(std::move(strand)), m_payload(std::move(payload)), m_files(std::move(files)),
        m_had(m_payload.size() / kPiece + 1) {}

  void arrive(std::int64_t abs, std::int64_t length) {
    const std::lock_guard lock(m_mutex);
    for (auto piece = abs / kPiece; piece <= (abs + length - 1) / kPiece; ++piece)
      m_had[static_cast<std::size_t>(piece)] = true;
  }
  void arriveAll() { arrive(0, static_cast<std::int64_t>(m_payload.size())); }
  void stop() {
    const std::lock_guard lock(m_mutex);
    m_isStopped = true;
  }
  // The most bytes that one read gives; with 0 every read fails.
  void limitReads(std::size_t bytes) {
    const std::lock_guard lock(m_mutex);
    m_longestRead = bytes;
  }

  // False if the server has not asked hasRange() that often within 20 s.
  bool waitForQuestions(int count) {
    std::unique_lock lock(m_mutex);
    return m_asked.wait_for(lock, std::chrono::seconds(20), [&] { return m_questions >= count; });
  }
  std::vector<std::int64_t> playheads() {
    const std::lock_guard lock(m_mutex);
    return m_playheads;
  }
  std::int64_t bytesRead() {
    const std::lock_guard lock(m_mutex);
    return m_bytesRead;
  }
  ByteSpan bytes(std::int64_t abs, std::int64_t length) const {
    return ByteSpan(m_payload).subspan(static_cast<std::size_t>(abs),
                                       static_cast<std::size_t>(length));
  }

  QString key() const override { return QString(40, u'a'); }
  Flow<Files> filesAsync() override {
    return onStrand(
        [this] { return std::make_shared<const std::vector<TorrentFileEntry>>(m_files); });
  }
  Flow<std::optional<FileRange>> fileRangeAsync(std::int64_t file) override {
    return onStrand([this, file] { return rangeOf(file); });
  }
  Flow<bool> hasRangeAsync(std::int64_t abs, std::int64_t length) override {
    return onStrand([=, this] { return hasRange(abs, length); });
  }
  Flow<std::size_t> readAsync(std::int64_t abs, std::span<std::byte> into) override {
    return onStrand([=, this] { return read(abs, into); });
  }
  void setPlayhead(std::int64_t pos) override {
    const std::lock_guard lock(m_mutex);
    m_playheads.push_back(pos);
  }
  Flow<bool> isStoppedAsync() override {
    return onStrand([this] { return m_isStopped; });
  }

private:
  template <class F>
  Flow<std::invoke_result_t<F&>> onStrand(F f) {
    return asyncOn(m_strand, [this, f]() mutable {
      const std::lock_guard lock(m_mutex);
      return f();
    });
  }

  std::optional<FileRange> rangeOf(std::int64_t file) const {
    if (file < 0 || file >= static_cast<std::int64_t>(m_files.size())) return std::nullopt;
    FileRange range;
    for (const auto& entry : std::span(m_files).first(static_cast<std::size_t>(file)))
      range.offset += entry.size;
    range.length = m_files[static_cast<std::size_t>(file)].size;
    return range;
  }
  bool hasRange(std::int64_t abs, std::int64_t length) {
    ++m_questions;
    m_asked.notify_all();
    const auto first = m_had.begin() + abs / kPiece;
    const auto last = m_had.begin() + (abs + length - 1) / kPiece;
    return std::find(first, last + 1, false) == last + 1;
  }
  std::size_t read(std::int64_t abs, std::span<std::byte> into) {
    const auto from = ByteSpan(m_payload).subspan(static_cast<std::size_t>(abs));
    const auto size = std::min({into.size(), from.size(), m_longestRead});
    std::copy_n(from.begin(), size, into.begin());
    m_bytesRead += static_cast<std::int64_t>(size);
    return size;
  }

  const Strand m_strand;
  const ByteVector m_payload;
  const std::vector<TorrentFileEntry> m_files;
  std::mutex m_mutex; // guards what follows
  std::condition_variable m_asked;
  std::vector<bool> m_had; // one per piece
  std::vector<std::int64_t> m_playheads;
  std::size_t m_longestRead = SIZE_MAX;
  std::int64_t m_bytesRead = 0;
  int m_questions = 0;
  bool m_isStopped = false;
};

} // namespace vellum::world
