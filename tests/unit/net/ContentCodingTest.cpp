#include "net/ContentCoding.h"
#include "net/NetError.h"
#include "support/Gzip.h"
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

TEST(ContentCoding, UnpacksWhatWasOfferedAndNoMoreThanIsWanted) {
  const QByteArray packed = gzip("{}"), large(1 << 20, 'x');
  struct Case {
    QByteArray body;
    const char* coding;
    QByteArray plain;
  };
  for (const auto& [body, coding, plain] :
       {Case{packed, "gzip", "{}"}, Case{packed, " X-GZIP", "{}"}, Case{packed, "", packed},
        Case{"abc", "br", "abc"}, Case{"", "gzip", ""}, Case{packed + packed, "gzip", "{}{}"},
        Case{packed + "\x1f", "gzip", "{}"}, Case{packed + "behind", "gzip", "{}"},
        Case{packed + "\x1f.", "gzip", "{}"}, Case{packed + ".\x8b", "gzip", "{}"},
        Case{gzip(large), "gzip", large}})
    EXPECT_EQ(unpacked(body, coding, large.size()), plain) << coding;
  for (const QByteArray& broken :
       {QByteArray("{}"), packed.chopped(1), packed.first(3), packed.first(12) + "xxxx",
        packed + packed.chopped(1), packed + "\x1f\x8b", qCompress("{}").mid(4)})
    EXPECT_THROW(unpacked(broken, "gzip", 100), NetError) << broken.toHex().toStdString();
}

TEST(ContentCoding, EndsAtTheLimitHoweverSmallTheAnswerIs) {
  const QByteArray packed = gzip(QByteArray(100 << 20, '\0'));
  ASSERT_LT(packed.size(), 1 << 20);
  try {
    unpacked(packed, "gzip", (100 << 20) - 1);
    ADD_FAILURE();
  } catch (const NetError& error) {
    EXPECT_EQ(error.reason(), NetError::Reason::TooLarge);
  }
  EXPECT_EQ(unpacked(packed, "gzip", 100 << 20).size(), 100 << 20);
}

} // namespace
} // namespace vellum::test
