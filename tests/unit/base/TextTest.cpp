#include "base/Text.h"
#include "base/Fmt.h"
#include <cmath>
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(Text, ByteCountsReadAsInAFileManager) {
  const std::pair<std::int64_t, const char*> cases[] = {{-1, "—"},
                                                        {0, "Zero KB"},
                                                        {1, "1 byte"},
                                                        {999, "999 bytes"},
                                                        {1000, "1 KB"},
                                                        {1499, "1 KB"},
                                                        {10'000, "10 KB"},
                                                        {999'499, "999 KB"},
                                                        {999'500, "1 MB"},
                                                        {24'649'999, "24.6 MB"},
                                                        {999'950'000, "1 GB"},
                                                        {1'200'000'000, "1.2 GB"},
                                                        {1'254'000'000, "1.25 GB"},
                                                        {1'254'000'000'000, "1.25 TB"},
                                                        {1'254'000'000'000'000, "1.25 PB"},
                                                        {9'223'372'036'854'775'807, "9.22 EB"}};
  for (const auto& [bytes, text] : cases)
    EXPECT_EQ(formatByteCount(bytes), QString::fromUtf8(text)) << bytes;
}

TEST(Text, NamesFromOutsideNeitherForgeLinesNorSpeakToTheTerminal) {
  EXPECT_EQ(printable(QString::fromUtf8("a\nURL b\r\t\x1b[31m\xC2\x9B\x7F é")),
            QString::fromUtf8("a�URL b���[31m�� é"));
  for (const char16_t c : {0x2028, 0x2029, 0x202A, 0x202E, 0x2066, 0x2069}) // lines, directions
    EXPECT_EQ(printable(QChar(c)), QChar(QChar::ReplacementCharacter)) << std::hex << int(c);
  for (const char16_t c : {0x200D, 0x202F, 0x2064, 0x206A})
    EXPECT_EQ(printable(QChar(c)), QChar(c)) << std::hex << int(c);
}

TEST(Text, AStrangersNameFitsOneLine) {
  EXPECT_EQ(oneLine(QString::fromUtf8(" a\r\n b\t\xE2\x80\xAE"
                                      "c ")),
            QString::fromUtf8("a b �c"));
  const QString fits(300, u'x');
  EXPECT_EQ(oneLine(fits), fits);
  EXPECT_EQ(oneLine(fits + u'x'), fits.chopped(1) + QChar(0x2026));
  EXPECT_EQ(shortened(QStringLiteral("ab😀cd"), 4), QStringLiteral("ab…")); // no half of a face
}

TEST(Text, ANumberIsDigitsWithASignAndNothingElse) {
  const std::pair<const char*, std::optional<qint64>> cases[] = {
      {"0", 0},   {"+5", 5}, {"-19", -19}, {"9223372036854775807", INT64_MAX},
      {"", {}},   {"-", {}}, {" 1", {}},   {"9223372036854775808", {}},
      {"1a", {}}, {"٣", {}}, {"+-1", {}},  {"-9223372036854775809", {}}};
  for (const auto& [text, number] : cases)
    EXPECT_EQ(parseInt64(QString::fromUtf8(text)), number) << text;
}

TEST(Fmt, TimesReadAsOnAPlayer) {
  const std::pair<double, const char*> cases[] = {
      {-1, "0:00"}, {NAN, "0:00"},      {INFINITY, "0:00"}, {0x1p53, "0:00"},    {59.9, "0:59"},
      {60, "1:00"}, {3599.99, "59:59"}, {3600, "1:00:00"},  {36'061, "10:01:01"}};
  for (const auto& [seconds, text] : cases)
    EXPECT_EQ(Fmt::time(seconds), QLatin1String(text)) << seconds;
}

TEST(Fmt, MarkupBecomesPlainText) {
  const std::pair<const char*, const char*> cases[] = {{"<p>A&amp;B</p>", "A&B"},
                                                       {"<br>a<br>b<br />c<br\n/>d", "a\nb\nc\nd"},
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

} // namespace
} // namespace vellum
