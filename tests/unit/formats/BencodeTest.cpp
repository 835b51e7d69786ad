#include "formats/Bencode.h"
#include <gtest/gtest.h>
#include <string>

namespace vellum {
namespace {

std::optional<Bencode> parsed(const QByteArray& text) {
  return BencodeParser(asBytes(text)).parse();
}

QByteArray repeated(const char* text, qsizetype times) { return QByteArray(text).repeated(times); }

TEST(Bencode, IntegersHaveOneSignAndStringsTheirLength) {
  const auto numbers = parsed("li0ei42ei+5ei-0ei007ei9223372036854775807ei-9223372036854775808ee");
  ASSERT_TRUE(numbers);
  std::vector<std::int64_t> integers;
  for (const Bencode& each : *numbers->list()) integers.push_back(each.integer().value());
  EXPECT_EQ(integers, (std::vector<std::int64_t>{0, 42, 5, 0, 7, INT64_MAX, INT64_MIN}));

  const auto texts = parsed(QByteArray("l4:spam01:a0:2:\0\xFF"
                                       "e",
                                       19));
  ASSERT_TRUE(texts);
  QByteArrayList strings;
  for (const Bencode& each : *texts->list()) strings.append(toByteArray(*each.bytes()));
  EXPECT_EQ(strings, (QByteArrayList{"spam", "a", "", QByteArray("\0\xFF", 2)}));
}

TEST(Bencode, WhatIsMalformedOrCutGivesNothing) {
  for (const char* text :
       {"e", "x", "ie", "i-e", "i+e", "i+-5e", "i--5e", "i 5e", "i1.5e", "i9223372036854775808e",
        "i-9223372036854775809e", "-1:a", "1x:a", "1+:a", "9223372036854775807:a",
        "99999999999999999999:a", "d1:ae", "di1e1:ae", "dle1:ae"})
    EXPECT_FALSE(parsed(text)) << text;
  // Cut anywhere, though the memory goes on as if it were not.
  for (const std::string_view whole : {"i5e", "2:ab", "d4:infod1:al2:bbi-31ed0:leeeee"})
    for (std::size_t size = 0; size <= whole.size(); ++size)
      EXPECT_EQ(BencodeParser(asBytes(whole).first(size)).parse().has_value(), size == whole.size())
          << whole << " cut at " << size;
}

TEST(Bencode, TheParserStopsBehindItsValueAndKnowsTheLastInfoOnTop) {
  for (const auto& [text, end, info] :
       {std::tuple<std::string, std::size_t, std::string>{"4:spamrest", 6, ""},
        {"i1exx", 3, ""},
        {"d8:msg_typei1ee\x01raw", 15, ""},
        {"d4:infod1:ai1eee", 16, "d1:ai1ee"},
        {"d1:a1:b4:infole4:infode1:zlee", 29, "de"},
        {"d1:ad4:infodeee", 15, ""},
        {"ld4:infodeee", 12, ""},
        {"d4:Infodee", 10, ""},
        {"d7:\xEF\xBB\xBFinfodee", 13, ""}}) { // a byte order mark makes it another key
    BencodeParser parser{asBytes(text)};
    ASSERT_TRUE(parser.parse()) << text;
    EXPECT_EQ(parser.pos(), end) << text;
    const auto range = parser.infoRange();
    EXPECT_EQ(range ? text.substr(range->first, range->second - range->first) : "", info) << text;
  }
}

TEST(Bencode, KeysAreRepairedAndTheLastOfEqualsWins) {
  const auto dict = parsed("d2:a\xFFi1e2:a\xFEi2e1:bi3e1:bi4ee");
  ASSERT_TRUE(dict);
  EXPECT_EQ(dict->dict()->size(), 2U);
  EXPECT_EQ(dict->find(QStringLiteral("a\uFFFD"))->integer(), 2);
  EXPECT_EQ(dict->find(QStringLiteral("b"))->integer(), 4);
  EXPECT_EQ(dict->find(QStringLiteral("c")), nullptr);
  EXPECT_EQ(parsed("5:a\xC3\xA9\xC3z")->string(), QStringLiteral("aé\uFFFDz"));
  EXPECT_FALSE(parsed("i1e")->string());
}

TEST(Bencode, FortyLevelsAreRead) {
  const auto lists = [](qsizetype depth) { return repeated("l", depth) + repeated("e", depth); };
  EXPECT_TRUE(parsed(lists(40)));
  EXPECT_FALSE(parsed(lists(41)));
  EXPECT_FALSE(parsed(repeated("d0:", 40) + "de" + repeated("e", 40)));
  EXPECT_TRUE(parsed(repeated("l", 38) + "d0:0:e" + repeated("e", 38)));
  EXPECT_FALSE(parsed(repeated("l", 39) + "d0:0:e" + repeated("e", 39))) << "a key is a level";
}

} // namespace
} // namespace vellum
