#include "base/Text.h"
#include "base/Fmt.h"
#include <cmath>
#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(Text, ByteCountsReadAsInAFileManager) {
  using Case = std::pair<std::int64_t, const char*>;
  for (const auto& [bytes, text] :
       {Case{-1, "—"}, Case{0, "Zero KB"}, Case{1, "1 byte"}, Case{999, "999 bytes"},
        Case{1000, "1 KB"}, Case{1499, "1 KB"}, Case{10'000, "10 KB"}, Case{999'499, "999 KB"},
        Case{999'500, "1 MB"}, Case{24'649'999, "24.6 MB"}, Case{999'950'000, "1 GB"},
        Case{1'200'000'000, "1.2 GB"}, Case{1'254'000'000, "1.25 GB"},
        Case{1'254'000'000'000, "1.25 TB"}, Case{1'254'000'000'000'000, "1.25 PB"},
        Case{9'223'372'036'854'775'807, "9.22 EB"}})
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
  using Case = std::pair<const char*, const char*>;
  for (const auto& [html, text] :
       {Case{"<p>A&amp;B</p>", "A&B"}, Case{"<br>a<br>b<br />c<br\n/>d", "a\nb\nc\nd"},
        Case{"a<BR>b", "ab"}, Case{"&amp;lt; &amp;quot;", "&lt; \""},
        Case{"&#39;x&#39;&nbsp;&gt;", "'x' &gt;"}, Case{"1 <> 2 < 3", "1 <> 2 < 3"},
        Case{"<<b>a", "a"}, Case{"a <br> b<brr>c<br", "a \n bc<br"}})
    EXPECT_EQ(Fmt::stripHTML(QString::fromUtf8(html)), QString::fromUtf8(text)) << html;
  EXPECT_FALSE(Fmt::stripHTML(QStringLiteral(" <p> </p>\n")));
  EXPECT_FALSE(Fmt::stripHTML(std::nullopt));
}

} // namespace
} // namespace vellum
