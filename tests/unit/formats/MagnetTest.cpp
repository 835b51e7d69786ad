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

TEST(Magnet, AQueryIsItsItemsInOrderWithOrWithoutValues) {
  const auto items = queryItems(QStringLiteral("?a=b&%63&=d&e=&&f=g=h#i=j?k"));
  QStringList shown;
  for (const auto& [name, value] : items.value_or(std::vector<QueryItem>{}))
    shown += name + (value ? u'=' + *value : QString());
  EXPECT_EQ(shown.join(u' '), QStringLiteral("a=b c =d e=  f=g=h"));
  EXPECT_FALSE(queryItems(QStringLiteral("a=b#?c=d")));
}

TEST(Magnet, AHashIsFoundOrTheLinkRefused) {
  for (const char* link :
       {" \n magnet:?dn=x&xt=URN:Btih:HASH#end\n", "magnet:?x%74=urn%3Abtih%3aHASH&xt=nonsense",
        "magnet:?xt=urn:btih:AERUKZ4JVPG66AJDIVTYTK6N54ASGRLH",
        "magnet:?xt=urn:btih:aerukz4jvpg66ajdivtytk6n54asgrlh"}) {
    const auto torrent = parsed(link);
    EXPECT_EQ(torrent ? torrent->infoHash : QString(), kLower) << link;
  }
  for (const char* link :
       {"", "magnet:", "magnet:?xt", "MAGNET:?xt=urn:btih:HASH",
        "http://127.0.0.1/?xt=urn:btih:HASH", "magnet:xt=urn:btih:HASH", "magnet:?XT=urn:btih:HASH",
        "magnet:?xt&xt=urn:btih:HASH", "magnet:?xt=urn:sha1:HASH&xt=urn:btih:HASH",
        "magnet:?xt=HASH", "magnet:?xt=urn:btih:HASH0",
        "magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef0123456g",
        "magnet:?xt=urn:btih:0123456789abcdef0123456789abcdef",
        "magnet:?xt=urn:btih:AERUKZ4JVPG66AJDIVTYTK6N54ASGRL1"})
    EXPECT_FALSE(parsed(link)) << link;
}

TEST(Magnet, TheNameFallsBackToTheHashAsItWasGiven) {
  for (const auto& [rest, name] :
       {std::pair("", kUpper),
        {"&dn", kUpper},
        {"&dn=&dn=second", QString()},
        {"&dn=a%20b+c%26d=e", QStringLiteral("a b+c&d=e")},
        {"&dn=%C3%A9é%FF", QStringLiteral("éé\uFFFD")},
        {"&dn=50% of%2", QStringLiteral("50% of%2")},
        {"&dn=%09%4a%4f%4A%4F", QStringLiteral("\tJOJO")},
        {"&dn=%4/%4:%4@%4G%4`%4g%g4", QStringLiteral("%4/%4:%4@%4G%4`%4g%g4")}})
    EXPECT_EQ(parsed((std::string("magnet:?xt=urn:btih:HASH") + rest).c_str())->name, name) << rest;
}

TEST(Magnet, TrackersKeepTheirOrderAndTheirDoubles) {
  const auto torrent = parsed(" magnet:?tr=b%3A1&xt=urn:btih:HASH&tr&tr=a&tr=&tr=b:1&Tr=x ");
  ASSERT_TRUE(torrent);
  EXPECT_EQ(torrent->trackers, QStringLiteral("b:1,a,,b:1").split(u','));
  EXPECT_EQ(torrent->magnet, QStringLiteral("magnet:?tr=b%3A1&xt=urn:btih:") + kUpper +
                                 QStringLiteral("&tr&tr=a&tr=&tr=b:1&Tr=x"));
}

TEST(Magnet, AMadeLinkIsEscapedWhollyAndReadBack) {
  const QString name = QStringLiteral("\uFEFFA b&c=d#é-._~%41+/日");
  const QString link = makeMagnet(kUpper, name);
  const QString head = QStringLiteral("magnet:?xt=urn%3Abtih%3A") + kUpper +
                       QStringLiteral("&dn=%EF%BB%BFA%20b%26c%3Dd%23%C3%A9%2D%2E%5F%7E%2541%2B%2F"
                                      "%E6%97%A5&tr=udp%3A%2F%2F");
  EXPECT_EQ(link.left(head.size()), head);
  const auto torrent = TorrentMetadata::parseMagnet(link);
  ASSERT_TRUE(torrent);
  EXPECT_EQ(torrent->infoHash, kLower);
  EXPECT_EQ(torrent->name, name);
  EXPECT_EQ(torrent->trackers, addresses::defaultTrackers());
}

} // namespace
} // namespace vellum
