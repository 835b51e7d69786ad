// The payload of a session on disk: one flat file, piece N at N times the piece length.
#pragma once
#include "engine/PieceBuf.h"
#include <QString>

namespace vellum {

// Lives on its session's strand. No operation reports an error in words; without a file writes go
// nowhere and reads give nothing.
class SessionStorage final : public PieceStore {
public:
  explicit SessionStorage(QString directory) : m_directory(std::move(directory)) {}
  ~SessionStorage() override { close(); }
  SessionStorage(const SessionStorage&) = delete;
  SessionStorage& operator=(const SessionStorage&) = delete;

  static QString payloadIn(const QString& directory);

  const QString& directory() const { return m_directory; }
  void makeDirectory() const;
  // Creates or reopens "payload.dat" and makes it `total` bytes long; what is in it stays, and is
  // not believed. While it is open it counts as in use (storage/HeldFile.h).
  void open(std::int64_t total);
  void close();
  bool isOpen() const { return m_file >= 0; }

  bool write(std::int64_t offset, ByteSpan bytes) override;
  // True if all of `into` was filled.
  bool read(std::int64_t offset, std::span<std::byte> into) override;
  // The bytes read, up to the end of the file; 0 for none.
  std::size_t readSome(std::int64_t offset, std::span<std::byte> into) const;

private:
  QString m_directory;
  int m_file = -1;
};

} // namespace vellum
