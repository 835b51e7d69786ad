#include "base/Addresses.h"
#include "formats/TorrentMetadata.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

const QString kUpper = QStringLiteral("0123456789ABCDEF0123456789ABCDEF01234567");
const QString kLower = kUpper.toLower();

// `link` with "HASH" for 40 hexadecimal digits.
std::optional<TorrentInfo> parsed(const char* link) {
  return TorrentMetadata::parseMagnet(
      QString::fromUtf8(link).replace(QStringLiteral("HASH"), kUpper));
}

TEST(Magnet, AHashIsFoundOrTheLinkRefused) {
  const std::pair<const char*, bool> cases[] = {
      {"magnet:?xt=urn:btih:HASH", true},
      {" \n magnet:?xt=urn:btih:HASH\n", true},
      {"magnet:?dn=x&xt=URN:Btih:HASH#end", true},
      {"magnet:?xt=urn%3Abtih%3aHASH", true},
      {"magnet:?x%74=urn:btih:HASH", true},
      {"magnet:?xt=urn:btih:HASH&xt=nonsense", true},
      {"MAGNET:?xt=urn:btih:HASH", false},
      {"magnet?xt=urn:btih:HASH", false},
      {"magnet:xt=urn:btih:HASH", false},
      {"magnet:", false},
      {"magnet:?", false},
      {"magnet:?XT=urn:btih:HASH", false},
      {"magnet:?xt", false},
      {"magnet:?xt=", false},
      {"magnet:?xt&xt=urn:btih:HASH", false},
      {"magnet:?xt=urn:sha1:HASH&xt=urn:btih:HASH", false},
      {"magnet:?xt=HASH", false},
      {"magnet:?xt=urn:btih:HASH0", false},
      {"magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef0123456g", false},
      {"magnet:?xt=urn:btih:0123456789abcdef0123456789abcde", false},
      {"magnet:?#xt=urn:btih:HASH", false},
      {"http://127.0.0.1/?xt=urn:btih:HASH", false},
      {"", false},
  };
  for (const auto& [link, good] : cases) {
    const auto torrent = parsed(link);
    ASSERT_EQ(torrent.has_value(), good) << link;
    if (good) {
      EXPECT_EQ(torrent->infoHash, kLower) << link;
    }
  }
}

TEST(Magnet, TheNameFallsBackToTheHashAsItWasGiven) {
  const auto name = [](const char* rest) {
    return parsed((std::string("magnet:?xt=urn:btih:HASH") + rest).c_str())->name;
  };
  EXPECT_EQ(name(""), kUpper);
  EXPECT_EQ(name("&dn"), kUpper);
  EXPECT_EQ(name("&dn=&dn=second"), QString());
  EXPECT_EQ(name("&dn=a%20b+c%26d=e"), QStringLiteral("a b+c&d=e"));
  EXPECT_EQ(name("&dn=%C3%A9é%FF"), QStringLiteral("éé\uFFFD"));
  EXPECT_EQ(name("&dn=50% of%2"), QStringLiteral("50% of%2"));
}

TEST(Magnet, TrackersKeepTheirOrderAndTheirDoubles) {
  const auto torrent = parsed(" magnet:?tr=b%3A1&xt=urn:btih:HASH&tr&tr=a&tr=&tr=b:1&Tr=x ");
  ASSERT_TRUE(torrent);
  EXPECT_EQ(torrent->trackers, QStringLiteral("b:1,a,,b:1").split(u','));
  EXPECT_TRUE(torrent->files.empty());
  EXPECT_FALSE(torrent->fileUrl);
  EXPECT_EQ(torrent->magnet, QStringLiteral("magnet:?tr=b%3A1&xt=urn:btih:") + kUpper +
                                 QStringLiteral("&tr&tr=a&tr=&tr=b:1&Tr=x"));
}

TEST(Magnet, Base32IsReadAsItsRfcHasIt) {
  const std::pair<const char*, std::optional<const char*>> cases[] = {
      {"", ""},
      {"MY", "66"},
      {"mzxw6", "666f6f"},
      {"MZXW6YTB", "666f6f6261"},
      {"A", ""},
      {"MZXW6YQ=", {}},
      {"MZXW1", {}},
      {"MZXW8", {}},
      {"MZ XW", {}},
      {"77777777777777777777777777777777", "ffffffffffffffffffffffffffffffffffffffff"},
  };
  for (const auto& [text, hex] : cases) {
    const auto result = TorrentMetadata::base32ToHex(QString::fromLatin1(text));
    ASSERT_EQ(result.has_value(), hex.has_value()) << text;
    if (hex) {
      EXPECT_EQ(*result, QString::fromLatin1(*hex)) << text;
    }
  }
  EXPECT_EQ(parsed("magnet:?xt=urn:btih:AERUKZ4JVPG66AJDIVTYTK6N54ASGRLH")->infoHash, kLower);
  EXPECT_EQ(parsed("magnet:?xt=urn:btih:aerukz4jvpg66ajdivtytk6n54asgrlh")->name, kLower);
  EXPECT_FALSE(parsed("magnet:?xt=urn:btih:AERUKZ4JVPG66AJDIVTYTK6N54ASGRL1"));
}

TEST(Magnet, AMadeLinkIsEscapedWhollyAndReadBack) {
  const QString name = QStringLiteral("\uFEFFA b&c=d#é-._~%41+/日");
  const QString link = makeMagnet(kUpper, name);
  const QString head = QStringLiteral("magnet:?xt=urn%3Abtih%3A") + kUpper +
                       QStringLiteral("&dn=%EF%BB%BFA%20b%26c%3Dd%23%C3%A9%2D%2E%5F%7E%2541%2B%2F"
                                      "%E6%97%A5&tr=udp%3A%2F%2F");
  EXPECT_EQ(link.left(head.size()), head);
  EXPECT_EQ(link.count(QStringLiteral("&tr=")), 4);
  EXPECT_TRUE(link.endsWith(QStringLiteral("%3A6969%2Fannounce")));

  const auto torrent = TorrentMetadata::parseMagnet(link);
  ASSERT_TRUE(torrent);
  EXPECT_EQ(torrent->infoHash, kLower);
  EXPECT_EQ(torrent->name, name);
  EXPECT_EQ(torrent->trackers, addresses::defaultTrackers());
}

} // namespace
} // namespace vellum
