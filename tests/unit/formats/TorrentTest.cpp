#include "base/Sha1.h"
#include "formats/TorrentMetadata.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace vellum {
namespace {

using Files = std::vector<TorrentFileEntry>;

std::string text(const std::string& value) { return std::to_string(value.size()) + ":" + value; }

// An info dictionary of `pieces` bytes of hashes before the rest of its keys.
std::string info(const std::string& rest, std::size_t pieces = 20, int pieceLength = 16) {
  return "d12:piece lengthi" + std::to_string(pieceLength) + "e6:pieces" +
         text(std::string(pieces, 'h')) + rest + "e";
}

std::string file(std::int64_t length, const std::string& rest) {
  return "d6:lengthi" + std::to_string(length) + "e" + rest + "e";
}

std::optional<TorrentMeta> metaOf(const std::string& infoRaw) {
  return TorrentMeta::parse(asBytes(infoRaw));
}

TorrentInfo shown(const std::string& torrent) {
  return TorrentMetadata::parseTorrent(asBytes(torrent));
}

TEST(Torrent, BothReadersAgreeOnNameAndFiles) {
  const struct {
    const char* what;
    std::string rest;
    Files files;
  } cases[] = {
      {"single", "4:name5:a.mkv6:lengthi5e", {{QStringLiteral("a.mkv"), 5}}},
      {"folders",
       "4:name1:N5:filesl" + file(2, "4:pathl3:sub5:f.mkve") + file(3, "4:pathl1:ge") + "e",
       {{QStringLiteral("N/sub/f.mkv"), 2}, {QStringLiteral("N/g"), 3}}},
      {"files before length",
       "4:name1:N6:lengthi9e5:filesl" + file(1, "4:pathl1:ae") + "e",
       {{QStringLiteral("N/a"), 1}}},
      {"files no list", "4:name1:N6:lengthi9e5:filesde", {{QStringLiteral("N"), 9}}},
      {"no length dropped",
       "4:name1:N5:fileslde1:xd4:pathl1:aee" + file(4, "4:pathl1:be") + "e",
       {{QStringLiteral("N/b"), 4}}},
      {"utf-8 preferred",
       "4:name1:x10:name.utf-81:N5:filesl" + file(1, "10:path.utf-8l1:ue4:pathl1:pe") + "e",
       {{QStringLiteral("N/u"), 1}}},
      {"utf-8 of a wrong kind",
       "4:name1:N10:name.utf-8i1e5:filesl" + file(1, "10:path.utf-8i7e4:pathl1:pe") + "e",
       {{QStringLiteral("N"), 1}}},
      {"odd components",
       "4:name1:N5:filesl" + file(1, "4:pathl1:ai1e1:be") + "e",
       {{QStringLiteral("N/a/b"), 1}}},
      {"no path", "4:name1:N5:filesl" + file(1, "") + "e", {{QStringLiteral("N"), 1}}},
  };
  for (const auto& [what, rest, files] : cases) {
    const auto meta = metaOf(info(rest));
    ASSERT_TRUE(meta) << what;
    EXPECT_EQ(meta->files, files) << what;
    EXPECT_EQ(shown("d4:info" + info(rest) + "e").files, files) << what;
  }
  const std::string nameless = info("6:lengthi1e");
  EXPECT_EQ(metaOf(nameless)->name, QStringLiteral("Unnamed"));
  EXPECT_EQ(shown("d4:info" + nameless + "e").name, QStringLiteral("Unnamed torrent"));
}

TEST(Torrent, OffsetsFollowTheFilesThatStay) {
  const auto meta = metaOf(
      info("5:filesl" + file(10, "") + "d4:pathlee" + file(0, "") + file(7, "") + "e", 41 - 1));
  ASSERT_TRUE(meta);
  EXPECT_EQ(meta->offsets, (std::vector<std::int64_t>{0, 10, 10}));
  EXPECT_EQ(meta->total, 17);
  EXPECT_EQ(meta->pieceLength, 16);
  ASSERT_EQ(meta->pieceCount(), 2);
  EXPECT_TRUE(std::all_of(meta->hashes[1].begin(), meta->hashes[1].end(),
                          [](std::byte b) { return b == std::byte{'h'}; }));
}

TEST(Torrent, TheEngineRefusesWhatItCannotKeep) {
  constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
  const std::string one = "6:lengthi32e";
  const auto twoFiles = [](std::int64_t a, std::int64_t b) {
    return "5:filesl" + file(a, "") + file(b, "") + "e";
  };
  EXPECT_TRUE(metaOf(info(one, 40))) << "exactly covered";
  EXPECT_TRUE(metaOf(info(one, 60))) << "a surplus of hashes";
  const std::pair<const char*, std::string> refused[] = {
      {"one byte too many", info("6:lengthi33e", 40)},
      {"half a hash", info(one, 41)},
      {"piece length 0", info(one, 40, 0)},
      {"negative piece length", info(one, 40, -16)},
      {"no pieces", "d12:piece lengthi16e6:lengthi1ee"},
      {"no files", info("4:name1:N")},
      {"empty files", info("5:filesle6:lengthi5e")},
      {"negative size", info("6:lengthi-1e")},
      {"sizes cancel out", info(twoFiles(-16, 16))},
      {"sum overflows", info(twoFiles(kMax, kMax), 40)},
      {"capacity overflows", "d12:piece lengthi" + std::to_string(kMax) + "e6:pieces" +
                                 text(std::string(40, 'h')) + "6:lengthi1ee"},
      {"not a dictionary", "le"},
      {"empty", "de"},
      {"nothing", ""},
      {"truncated", info(one, 40).substr(0, 60)},
  };
  for (const auto& [what, raw] : refused) EXPECT_FALSE(metaOf(raw)) << what;

  EXPECT_TRUE(shown("d4:info" + info("5:filesle") + "e").files.empty());
  EXPECT_EQ(shown("d4:info" + info(twoFiles(kMax, kMax)) + "e").totalSize(), kMax);
  EXPECT_EQ(shown("d4:info" + info(twoFiles(-kMax, -kMax)) + "e").totalSize(), -kMax - 1);
}

// 8 MiB that would unfold to a terabyte of paths.
TEST(Torrent, ALongNameBeforeManyFilesIsRefused) {
  std::string files;
  for (int i = 0; i < 250'000; ++i) files += "d6:lengthi0ee";
  const std::string raw =
      info("4:name" + text(std::string(4U << 20U, 'N')) + "5:filesl" + files + "e");
  EXPECT_FALSE(metaOf(raw));
  EXPECT_THROW(shown("d4:info" + raw + "e"), TorrentParseError);
}

TEST(Torrent, TheHashIsTakenOverTheBytesAsTheyStand) {
  // Neither sorted nor free of duplicates: encoding it anew would change the hash.
  const std::string raw = "d6:pieces20:hhhhhhhhhhhhhhhhhhhh1:zi007e1:zi+1e6:lengthi3e"
                          "12:piece lengthi16ee";
  const std::string torrent = "d4:info" + raw + "8:announce1:te trailing bytes";
  const auto full = TorrentMeta::parseTorrentFile(asBytes(torrent));
  ASSERT_TRUE(full);
  EXPECT_EQ(full->hash, Sha1::of(asBytes(raw)));
  EXPECT_EQ(shown(torrent).infoHash, toHex(full->hash));
  EXPECT_EQ(shown("d4:infodee").infoHash,
            QStringLiteral("600ccd1b71569232d01d110bc63e906beab04d8c"));
}

TEST(Torrent, TrackersAreSortedForTheEyeAndInFileOrderForTheEngine) {
  const std::string torrent = "d8:announce1:c13:announce-listll1:bi3e1:ce1:xll1:nee0:l1:aee4:info" +
                              info("6:lengthi1e") + "e";
  const auto list = [](const char* letters) { return QString::fromLatin1(letters).split(u' '); };
  EXPECT_EQ(TorrentMeta::parseTorrentFile(asBytes(torrent))->trackers, list("c b c a"));
  EXPECT_EQ(shown(torrent).trackers, list("a b c"));
}

TEST(Torrent, WhatIsNoTorrentFailsWithTheOneError) {
  for (const char* torrent :
       {"", "le", "de", "i1e", "d4:infoi1ee", "d1:ad4:infodeee", "d4:infod"}) {
    EXPECT_THROW(shown(torrent), TorrentParseError) << torrent;
    EXPECT_FALSE(TorrentMeta::parseTorrentFile(asBytes(std::string_view(torrent)))) << torrent;
  }
  EXPECT_EQ(TorrentParseError().errorDescription(), QStringLiteral("Not a valid .torrent file"));
}

} // namespace
} // namespace vellum
