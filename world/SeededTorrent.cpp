#include "world/SeededTorrent.h"
#include "base/Sha1.h"
#include "formats/InfoWriter.h"
#include <QUrl>
#include <algorithm>
#include <fstream>

namespace vellum::world {

namespace {

ByteVector readAll(const std::filesystem::path& path) {
  ByteVector bytes(std::filesystem::file_size(path));
  std::ifstream in(path, std::ios::binary);
  in.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (!in)
    throw std::filesystem::filesystem_error("read", path,
                                            std::make_error_code(std::errc::io_error));
  return bytes;
}

} // namespace

SeededTorrent SeededTorrent::make(const QString& name, const std::vector<TestFile>& files,
                                  std::int64_t pieceLength) {
  SeededTorrent torrent{.name = name, .pieceLength = pieceLength};
  ByteVector all;
  std::vector<WrittenFile> written;
  for (const auto& file : files) {
    written.push_back({file.path, std::int64_t(file.content.size())});
    torrent.files.push_back(
        {file.path, std::int64_t(all.size()), std::int64_t(file.content.size())});
    all.insert(all.end(), file.content.begin(), file.content.end());
  }
  torrent.payload = Payload::fromBytes(std::move(all));
  torrent.infoRaw = writeInfo(name, written, pieceLength, torrent.payload->bytes());
  torrent.infoHash = Sha1::of(asBytes(torrent.infoRaw));
  return torrent;
}

SeededTorrent SeededTorrent::fromDisk(const std::filesystem::path& path, std::int64_t pieceLength) {
  const auto name = QString::fromStdString(path.filename().string());
  if (std::filesystem::is_directory(path)) {
    std::vector<TestFile> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
      if (entry.is_regular_file())
        files.push_back({QString::fromStdString(entry.path().lexically_relative(path).string()),
                         readAll(entry.path())});
    std::ranges::sort(files, {}, &TestFile::path);
    return make(name, files, pieceLength);
  }
  SeededTorrent torrent{.name = name, .pieceLength = pieceLength};
  torrent.payload = Payload::fromFile(path);
  const ByteSpan bytes = torrent.payload->bytes();
  torrent.files.push_back({name, 0, std::int64_t(bytes.size())});
  torrent.infoRaw = writeInfo(name, pieceLength, bytes);
  torrent.infoHash = Sha1::of(asBytes(torrent.infoRaw));
  return torrent;
}

ByteSpan SeededTorrent::fileBytes(std::size_t index) const {
  const auto& file = files.at(index);
  return payload->bytes().subspan(std::size_t(file.offset), std::size_t(file.size));
}

std::int64_t SeededTorrent::pieceCount() const {
  return (std::int64_t(payload->bytes().size()) + pieceLength - 1) / pieceLength;
}

QByteArray SeededTorrent::torrentFile(const QStringList& trackers) const {
  QByteArray file("d");
  if (!trackers.isEmpty()) {
    file += "8:announce" + bencoded(trackers.front()) + "13:announce-listl";
    for (const auto& tracker : trackers) file += 'l' + bencoded(tracker) + 'e';
    file += 'e';
  }
  return file + "4:info" + infoRaw + 'e';
}

QString SeededTorrent::magnet(const QStringList& trackers, const QStringList& peers) const {
  const auto escaped = [](const QString& text) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
  };
  auto link = QStringLiteral("magnet:?xt=urn:btih:") + toHex(infoHash) + QStringLiteral("&dn=") +
              escaped(name);
  for (const auto& tracker : trackers) link += QStringLiteral("&tr=") + escaped(tracker);
  for (const auto& peer : peers) link += QStringLiteral("&x.pe=") + peer;
  return link;
}

} // namespace vellum::world
