#include "support/TestTorrent.h"
#include "base/Sha1.h"
#include <QUrl>
#include <algorithm>
#include <fstream>

namespace vellum::test {

namespace {

QByteArray bencoded(const QByteArray& text) { return QByteArray::number(text.size()) + ':' + text; }
QByteArray bencoded(const QString& text) { return bencoded(text.toUtf8()); }
QByteArray bencoded(std::int64_t value) { return 'i' + QByteArray::number(qint64(value)) + 'e'; }

QByteArray pieceHashes(ByteSpan payload, std::size_t pieceLength) {
  QByteArray hashes;
  for (std::size_t at = 0; at < payload.size(); at += pieceLength)
    hashes +=
        toByteArray(Sha1::of(payload.subspan(at, std::min(pieceLength, payload.size() - at))));
  return hashes;
}

QByteArray fileList(const std::vector<TestTorrent::Entry>& files) {
  QByteArray list("5:filesl");
  for (const auto& file : files) {
    list += "d6:length" + bencoded(file.size) + "4:pathl";
    for (const auto& component : file.path.split(u'/')) list += bencoded(component);
    list += "ee";
  }
  return list + 'e';
}

// Fills infoRaw and infoHash; `files` is the dictionary's part that tells single from multi-file.
void finish(TestTorrent& torrent, const QByteArray& files) {
  torrent.infoRaw =
      'd' + files + "4:name" + bencoded(torrent.name) + "12:piece length" +
      bencoded(torrent.pieceLength) + "6:pieces" +
      bencoded(pieceHashes(torrent.payload->bytes(), std::size_t(torrent.pieceLength))) + 'e';
  torrent.infoHash = Sha1::of(asBytes(torrent.infoRaw));
}

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

TestTorrent TestTorrent::make(const QString& name, const std::vector<TestFile>& files,
                              std::int64_t pieceLength) {
  TestTorrent torrent{.name = name, .pieceLength = pieceLength};
  ByteVector all;
  for (const auto& file : files) {
    torrent.files.push_back(
        {file.path, std::int64_t(all.size()), std::int64_t(file.content.size())});
    all.insert(all.end(), file.content.begin(), file.content.end());
  }
  torrent.payload = Payload::fromBytes(std::move(all));
  finish(torrent, fileList(torrent.files));
  return torrent;
}

TestTorrent TestTorrent::fromDisk(const std::filesystem::path& path, std::int64_t pieceLength) {
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
  TestTorrent torrent{.name = name, .pieceLength = pieceLength};
  torrent.payload = Payload::fromFile(path);
  const auto size = std::int64_t(torrent.payload->bytes().size());
  torrent.files.push_back({name, 0, size});
  finish(torrent, "6:length" + bencoded(size));
  return torrent;
}

ByteSpan TestTorrent::fileBytes(std::size_t index) const {
  const auto& file = files.at(index);
  return payload->bytes().subspan(std::size_t(file.offset), std::size_t(file.size));
}

std::int64_t TestTorrent::pieceCount() const {
  return (std::int64_t(payload->bytes().size()) + pieceLength - 1) / pieceLength;
}

QByteArray TestTorrent::torrentFile(const QStringList& trackers) const {
  QByteArray file("d");
  if (!trackers.isEmpty()) {
    file += "8:announce" + bencoded(trackers.front()) + "13:announce-listl";
    for (const auto& tracker : trackers) file += 'l' + bencoded(tracker) + 'e';
    file += 'e';
  }
  return file + "4:info" + infoRaw + 'e';
}

QString TestTorrent::magnet(const QStringList& trackers, const QStringList& peers) const {
  const auto escaped = [](const QString& text) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
  };
  auto link = QStringLiteral("magnet:?xt=urn:btih:") + toHex(infoHash) + QStringLiteral("&dn=") +
              escaped(name);
  for (const auto& tracker : trackers) link += QStringLiteral("&tr=") + escaped(tracker);
  for (const auto& peer : peers) link += QStringLiteral("&x.pe=") + peer;
  return link;
}

} // namespace vellum::test
