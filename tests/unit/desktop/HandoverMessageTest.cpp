#include "desktop/linux/HandoverMessage.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

using handover::Arrival;

TEST(HandoverMessage, ArrivesWholeHoweverItIsCut) {
  const QStringList links{QStringLiteral("magnet:?xt=1"), QStringLiteral("/tmp/Ünïcode.torrent")};
  for (const QStringList& sent : {links, QStringList()}) {
    const QByteArray bytes = handover::encode(sent).value();
    for (qsizetype cut = 0; cut < bytes.size(); ++cut)
      EXPECT_EQ(handover::arrival(bytes.first(cut)), Arrival::Incomplete) << cut;
    ASSERT_EQ(handover::arrival(bytes), Arrival::Complete);
    EXPECT_EQ(handover::decode(bytes), sent);
    EXPECT_EQ(handover::arrival(bytes + 'x'), Arrival::Wrong);
  }
}

TEST(HandoverMessage, IsBoundedOnBothSides) {
  const QString longest(handover::kLargest - 1, u'a');
  EXPECT_EQ(handover::arrival(handover::encode({longest}).value()), Arrival::Complete);
  EXPECT_FALSE(handover::encode({longest, QStringLiteral("b")}));
  EXPECT_EQ(handover::arrival(QByteArray("\x00\x01\x00\x00", 4)), Arrival::Incomplete);
  EXPECT_EQ(handover::arrival(QByteArray("\x00\x01\x00\x01", 4)), Arrival::Wrong);
  EXPECT_EQ(handover::arrival(QByteArray("\xff\xff\xff\xff", 4)), Arrival::Wrong);
  EXPECT_EQ(handover::arrival(QByteArray("\x00\x00\x00\x01z", 5)), Arrival::Wrong); // no end
}

} // namespace
} // namespace vellum
