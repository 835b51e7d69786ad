#include "base/Text.h"
#include "base/Bytes.h"
#include "base/Fmt.h"
#include <cmath>
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(Text, ByteCountsReadAsInAFileManager) {
  const std::pair<std::int64_t, const char*> cases[] = {
      {-1, "—"},
      {0, "Zero KB"},
      {1, "1 byte"},
      {999, "999 bytes"},
      {1000, "1 KB"},
      {1499, "1 KB"},
      {999'499, "999 KB"},
      {999'500, "1 MB"},
      {24'600'000, "24.6 MB"},
      {999'950'000, "1 GB"},
      {1'250'000'000, "1.25 GB"},
      {9'223'372'036'854'775'807, "9.22 EB"},
  };
  for (const auto& [bytes, text] : cases)
    EXPECT_EQ(formatByteCount(bytes), QString::fromUtf8(text)) << bytes;
}

TEST(Text, NamesFromOutsideNeitherForgeLinesNorSpeakToTheTerminal) {
  EXPECT_EQ(printable(QString::fromUtf8("a\nURL b\r\t\x1b[31m\xC2\x9B\x7F \xE2\x80\xA8é")),
            QString::fromUtf8("a�URL b���[31m�� �é"));
}

TEST(Text, AStrangersNameFitsOneLine) {
  EXPECT_EQ(oneLine(QString::fromUtf8(" a\r\n b\t\xE2\x80\xAE"
                                      "c ")),
            QString::fromUtf8("a b �c"));
  EXPECT_EQ(oneLine(QString(100'000, u'x')), QString(299, u'x') + QChar(0x2026));
}

TEST(Fmt, TimesReadAsOnAPlayer) {
  const std::pair<double, const char*> cases[] = {
      {-1, "0:00"}, {NAN, "0:00"},      {INFINITY, "0:00"}, {0.9, "0:00"},        {59.9, "0:59"},
      {60, "1:00"}, {3599.99, "59:59"}, {3600, "1:00:00"},  {36'061, "10:01:01"}, {1e300, "0:00"}};
  for (const auto& [seconds, text] : cases)
    EXPECT_EQ(Fmt::time(seconds), QLatin1String(text)) << seconds;
}

TEST(Fmt, MarkupBecomesPlainText) {
  const std::pair<const char*, const char*> cases[] = {{"<p>A&amp;B</p>", "A&B"},
                                                       {"a<br>b<br />c<br\n/>d", "a\nb\nc\nd"},
                                                       {"a<BR>b", "ab"},
                                                       {"&amp;lt; &amp;quot;", "&lt; \""},
                                                       {"&#39;x&#39;&nbsp;&gt;", "'x' &gt;"},
                                                       {"1 <> 2 < 3", "1 <> 2 < 3"},
                                                       {"<<b>a", "a"},
                                                       {"x<unclosed", "x<unclosed"},
                                                       {"a <br> b<brr>c<br", "a \n bc<br"}};
  for (const auto& [html, text] : cases)
    EXPECT_EQ(Fmt::stripHTML(QString::fromUtf8(html)), QString::fromUtf8(text)) << html;
  EXPECT_FALSE(Fmt::stripHTML(QStringLiteral(" <p> </p>\n")));
  EXPECT_FALSE(Fmt::stripHTML(std::nullopt));
  // In no time at all:
  EXPECT_EQ(Fmt::stripHTML(QString(1 << 20, u'<'))->size(), 1 << 20);
  EXPECT_EQ(Fmt::stripHTML(QStringLiteral("&amp;").repeated(3 << 20))->size(), 3 << 20);
}

TEST(Bytes, AnInfoHashIsExactlyFortyHexadecimalDigits) {
  const QString digits = QStringLiteral("00ff").repeated(10);
  ASSERT_TRUE(hash20FromHex(digits));
  EXPECT_EQ(toHex(*hash20FromHex(digits.toUpper())), digits);
  for (const QString& bad : {digits.chopped(1), digits + u'0', QStringLiteral("0g").repeated(20),
                             QStringLiteral("+1").repeated(20), QString()})
    EXPECT_FALSE(hash20FromHex(bad)) << bad.toStdString();
}

TEST(Bytes, BigEndianBothWays) {
  std::array<std::byte, 8> out{};
  putBe64(out, 0x0102030405060708);
  EXPECT_EQ(toHex(out), QStringLiteral("0102030405060708"));
  EXPECT_EQ(rd64(out, 0), 0x0102030405060708U);
  EXPECT_EQ(rd32(out, 2), 0x03040506U);
}

} // namespace
} // namespace vellum
