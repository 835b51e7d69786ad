#include "net/ContentCoding.h"
#include "net/NetError.h"
#include "support/Gzip.h"
#include <gtest/gtest.h>

namespace vellum::test {
namespace {

TEST(ContentCoding, UnpacksWhatWasOfferedAndNoMoreThanIsWanted) {
  const QByteArray packed = gzip("{}"), large(1 << 20, 'x');
  using Case = std::tuple<QByteArray, const char*, QByteArray>;
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
  EXPECT_THROW(unpacked(gzip(large), "gzip", large.size() - 1), NetError);
}

} // namespace
} // namespace vellum::test
