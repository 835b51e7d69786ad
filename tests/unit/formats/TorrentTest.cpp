#include "base/Sha1.h"
#include "formats/InfoDictionary.h"
#include "formats/InfoWriter.h"
#include "formats/TorrentMetadata.h"
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace vellum {
namespace {

constexpr auto kMax = std::numeric_limits<std::int64_t>::max();

std::string text(const std::string& value) { return std::to_string(value.size()) + ":" + value; }

// An info dictionary of `pieces` bytes of hashes, each of a letter of its own, before the rest of
// its keys.
std::string info(const std::string& rest, std::size_t pieces = 20, std::int64_t pieceLength = 16) {
  std::string hashes;
  for (std::size_t i = 0; i < pieces; ++i) hashes += static_cast<char>('a' + i / 20);
  return "d12:piece lengthi" + std::to_string(pieceLength) + "e6:pieces" + text(hashes) + rest +
         "e";
}

std::string file(std::int64_t length, const std::string& rest = {}) {
  return "d6:lengthi" + std::to_string(length) + "e" + rest + "e";
}

std::string list(const std::string& files) { return "5:filesl" + files + "e"; }

std::optional<TorrentMeta> metaOf(const std::string& infoRaw) {
  return TorrentMeta::parse(asBytes(infoRaw));
}

TorrentInfo shown(const std::string& torrent) {
  return TorrentMetadata::parseTorrent(asBytes(torrent));
}

TEST(InfoWriter, WritesEitherFormByteForByte) {
  const QByteArray hashes = QByteArray::fromHex("a9993e364706816aba3e25717850c26c9cd0d89d"   // abc
                                                "600ccd1b71569232d01d110bc63e906beab04d8c"); // de
  const QByteArray pieces = "12:piece lengthi3e6:pieces40:" + hashes + "e";
  const ByteSpan payload = asBytes(std::string_view("abcde"));
  EXPECT_EQ(writeInfo(QStringLiteral("ü.mkv"), 3, payload),
            QByteArray("d6:lengthi5e4:name6:ü.mkv") + pieces);
  EXPECT_EQ(
      writeInfo(QStringLiteral("N"), {{QStringLiteral("a/b"), 5}, {QString(), 0}}, 3, payload),
      QByteArray("d5:filesld6:lengthi5e4:pathl1:a1:beed6:lengthi0e4:pathl0:eee4:name1:N") + pieces);
}

TEST(Torrent, BothReadersAgreeOnNameAndFiles) {
  const auto printed = [](const std::vector<TorrentFileEntry>& files) {
    std::string out;
    for (const auto& [path, size] : files)
      out += path.toStdString() + ' ' + std::to_string(size) + ';';
    return out;
  };
  const std::pair<std::string, std::string> cases[] = {
      {"4:name5:a.mkv6:lengthi5e", "a.mkv 5;"},
      {"4:name1:N5:filesde6:lengthi9e", "N 9;"},
      {"4:name1:N6:lengthi9e" + list(file(2, "4:pathl3:sub5:f.mkve") + file(3, "4:pathl1:ge")),
       "N/sub/f.mkv 2;N/g 3;"},
      {"4:name1:N" + list("de1:xi7ed4:pathl1:aeed6:length1:5e" + file(4)), "N 4;"},
      {"4:name1:x10:name.utf-81:N" + list(file(1, "10:path.utf-8l1:ue4:pathl1:pe")), "N/u 1;"},
      {"4:name1:N10:name.utf-8i1e" + list(file(1, "10:path.utf-8i7e4:pathl1:pe")), "N 1;"},
      {"4:name1:N" + list(file(1, "4:pathl1:ai1e1:be")), "N/a/b 1;"},
      {"6:lengthi1e", "Unnamed 1;"},
  };
  for (const auto& [rest, files] : cases) {
    const auto meta = metaOf(info(rest));
    ASSERT_TRUE(meta) << rest;
    EXPECT_EQ(printed(meta->files), files) << rest;
    const TorrentInfo light = shown("d4:info" + info(rest) + "e");
    const bool isNameless = meta->name == QStringLiteral("Unnamed");
    EXPECT_EQ(printed(light.files), isNameless ? "Unnamed torrent 1;" : files) << rest;
  }
}

TEST(Torrent, OffsetsFollowTheFilesThatStay) {
  const auto meta = metaOf(info(list(file(10) + "d4:pathlee" + file(0) + file(7)), 40));
  ASSERT_TRUE(meta);
  EXPECT_EQ(meta->offsets, (std::vector<std::int64_t>{0, 10, 10}));
  EXPECT_EQ(meta->total, 17);
  ASSERT_EQ(meta->pieceCount(), 2);
  EXPECT_EQ(toByteArray(meta->hashes[0]), QByteArray(20, 'a'));
  EXPECT_EQ(toByteArray(meta->hashes[1]), QByteArray(20, 'b'));
}

TEST(Torrent, TheEngineRefusesWhatItCannotKeep) {
  const std::string one = "6:lengthi32e";
  EXPECT_TRUE(metaOf(info(one, 40))) << "exactly covered";
  EXPECT_TRUE(metaOf(info(one, 60))) << "a surplus of hashes";
  EXPECT_TRUE(metaOf(info("6:lengthi2e", 40, 1))) << "the smallest pieces";
  const std::pair<const char*, std::string> refused[] = {
      {"one byte too many", info("6:lengthi33e", 40)},
      {"half a hash", info(one, 41)},
      {"piece length 0", info(one, 40, 0)},
      {"no piece length", "d6:pieces0:6:lengthi0ee"},
      {"piece length of a wrong kind", "d12:piece length2:166:pieces0:6:lengthi0ee"},
      {"no pieces", "d12:piece lengthi16e6:lengthi0ee"},
      {"pieces of a wrong kind", "d12:piece lengthi16e6:piecesi0e6:lengthi0ee"},
      {"no files", info("4:name1:N")},
      {"sizes cancel out", info(list(file(-16) + file(16)))},
      {"sum overflows", info(list(file(kMax) + file(kMax)), 40)},
      {"capacity overflows", info("6:lengthi1e", 40, kMax)},
      {"not a dictionary", "le"},
  };
  for (const auto& [what, raw] : refused) EXPECT_FALSE(metaOf(raw)) << what;
}

TEST(Torrent, TheInspectorShowsWhatTheEngineRefuses) {
  const auto sizes = [](std::int64_t a, std::int64_t b) {
    return shown("d4:info" + info(list(file(a) + file(b))) + "e").totalSize();
  };
  EXPECT_EQ(sizes(-5, 16), 11);
  EXPECT_EQ(sizes(kMax, kMax), kMax);
  EXPECT_EQ(sizes(-kMax, -kMax), -kMax - 1);
  EXPECT_TRUE(shown("d4:info" + info(list({})) + "e").files.empty());
}

TEST(Torrent, ALongNameBeforeManyFilesIsRefused) {
  std::string files;
  for (int i = 0; i < 8; ++i) files += file(0); // each with its name and a separator
  const auto raw = [&](std::size_t size) {
    return info("4:name" + text(std::string(size, 'N')) + list(files));
  };
  EXPECT_TRUE(metaOf(raw(kMostPathText / 8 - 1)));
  EXPECT_FALSE(metaOf(raw(kMostPathText / 8)));
  EXPECT_THROW(shown("d4:info" + raw(kMostPathText / 8) + "e"), TorrentParseError);
}

TEST(Torrent, HashAndTrackersAreTakenAsTheyStandAndTrackersSortedForTheEye) {
  // Neither sorted nor free of duplicates: encoding it anew would change the hash.
  const std::string raw = "d6:pieces20:hhhhhhhhhhhhhhhhhhhh1:zi007e1:zi+1e6:lengthi3e"
                          "12:piece lengthi16ee";
  const std::string torrent = "d8:announce1:c13:announce-listll1:bi3e1:ce1:xll1:nee0:l1:aee4:info" +
                              raw + "1:z0:e trailing bytes";
  const auto full = TorrentMeta::parseTorrentFile(asBytes(torrent));
  ASSERT_TRUE(full);
  EXPECT_EQ(full->hash, Sha1::of(asBytes(raw)));
  EXPECT_EQ(full->trackers.join(u' '), QStringLiteral("c b c a"));
  const TorrentInfo light = shown(torrent);
  EXPECT_EQ(light.infoHash, toHex(full->hash));
  EXPECT_EQ(light.magnet, makeMagnet(light.infoHash, light.name));
  EXPECT_EQ(light.trackers.join(u' '), QStringLiteral("a b c"));
}

TEST(Torrent, WhatIsNoTorrentFailsWithTheOneError) {
  for (const std::string torrent : {"", "le", "de", "i1e", "d4:infoi1ee", "d1:ad4:infodeee",
                                    "d4:infod6:lengthi0e12:piece lengthi1e6:pieces0:e"}) {
    EXPECT_THROW(shown(torrent), TorrentParseError) << torrent;
    EXPECT_FALSE(TorrentMeta::parseTorrentFile(asBytes(torrent))) << torrent;
  }
  EXPECT_EQ(TorrentParseError().errorDescription(), QStringLiteral("Not a valid .torrent file"));
}

} // namespace
} // namespace vellum
