#include "formats/Bencode.h"
#include <gtest/gtest.h>
#include <string>

namespace vellum {
namespace {

using namespace std::string_literals;

std::optional<Bencode> parsed(const std::string& text) {
  return BencodeParser(asBytes(text)).parse();
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string out;
  for (std::size_t i = 0; i < times; ++i) out += text;
  return out;
}

TEST(Bencode, IntegersHaveOneSignAndStringsTheirLength) {
  for (const auto& [text, expected] : {std::pair("i0e", std::int64_t{0}),
                                       {"i42e", 42},
                                       {"i+5e", 5},
                                       {"i-0e", 0},
                                       {"i007e", 7},
                                       {"i9223372036854775807e", INT64_MAX},
                                       {"i-9223372036854775808e", INT64_MIN}}) {
    const auto value = parsed(text);
    EXPECT_EQ(value ? value->integer() : std::nullopt, expected) << text;
  }
  for (const auto& [text, expected] :
       {std::pair("4:spam"s, "spam"s), {"01:a", "a"}, {"0:", ""}, {"2:\0\xFF"s, "\0\xFF"s}}) {
    const auto value = parsed(text);
    ASSERT_TRUE(value && value->bytes() != nullptr) << text;
    EXPECT_EQ(*value->bytes(), toVector(asBytes(expected))) << text;
  }
}

TEST(Bencode, WhatIsMalformedOrCutGivesNothing) {
  for (const char* text :
       {"e", "x", "ie", "i-e", "i+e", "i+-5e", "i--5e", "i 5e", "i1.5e", "i9223372036854775808e",
        "i-9223372036854775809e", "-1:a", "1x:a", "1+:a", "9223372036854775807:a",
        "99999999999999999999:a", "d1:ae", "di1e1:ae", "dle1:ae"})
    EXPECT_FALSE(parsed(text)) << text;
  // Cut anywhere, though the memory goes on as if it were not.
  const std::string whole = "d4:infod1:al2:bbi-31ed0:leeeee";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    const bool isWhole = size == whole.size();
    EXPECT_EQ(BencodeParser(asBytes(whole).first(size)).parse().has_value(), isWhole) << size;
  }
}

TEST(Bencode, TheParserStopsBehindItsValueAndKnowsTheLastInfoOnTop) {
  const struct {
    std::string text;
    std::size_t end;
    std::optional<std::string> info = {};
  } cases[] = {
      {"4:spamrest", 6},
      {"i1exx", 3},
      {"lelele", 2},
      {"d8:msg_typei1ee\x01raw", 15},
      {"d4:infod1:ai1eee", 16, "d1:ai1ee"},
      {"d1:a1:b4:infole4:infode1:zlee", 29, "de"},
      {"d1:ad4:infodeee", 15},
      {"ld4:infodeee", 12},
      {"d4:Infodee", 10},
      {"d7:\xEF\xBB\xBFinfodee", 13}, // a byte order mark makes it another key
  };
  for (const auto& [text, end, info] : cases) {
    BencodeParser parser{asBytes(text)};
    ASSERT_TRUE(parser.parse()) << text;
    EXPECT_EQ(parser.pos(), end) << text;
    const auto range = parser.infoRange();
    ASSERT_EQ(range.has_value(), info.has_value()) << text;
    if (!range) continue;
    EXPECT_EQ(text.substr(range->first, range->second - range->first), *info) << text;
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
  const auto lists = [](std::size_t depth) { return repeated("l", depth) + repeated("e", depth); };
  EXPECT_TRUE(parsed(lists(40)));
  EXPECT_FALSE(parsed(lists(41)));
  EXPECT_FALSE(parsed(repeated("d0:", 40) + "de" + repeated("e", 40)));
  EXPECT_TRUE(parsed(repeated("l", 39) + "de" + repeated("e", 39)));
  EXPECT_FALSE(parsed(repeated("l", 39) + "d0:0:e" + repeated("e", 39))) << "a key is a level";
}

// Each would take minutes, or the stack, if a scan began anew for every byte.
TEST(Bencode, MegabytesOfMaliceAreReadInOnePass) {
  constexpr std::size_t kMany = 1U << 20U;
  for (const char* unit : {"l", "d", "i", "1", "i1", "9:", "0:", "d0:", "le", "i1e"})
    EXPECT_FALSE(parsed("l" + repeated(unit, kMany))) << unit;
  EXPECT_EQ(parsed("l" + repeated("0:", kMany) + "e")->list()->size(), kMany);
  EXPECT_EQ(parsed("d" + repeated("0:0:", kMany) + "e")->dict()->size(), 1U);
}

} // namespace
} // namespace vellum
