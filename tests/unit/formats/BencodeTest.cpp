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

std::string lists(std::size_t depth) { return repeated("l", depth) + repeated("e", depth); }

TEST(Bencode, IntegersAreDecimalWithOneSignAndFit64Bits) {
  const std::pair<const char*, std::optional<std::int64_t>> cases[] = {
      {"i0e", 0},
      {"i42e", 42},
      {"i+5e", 5},
      {"i-0e", 0},
      {"i007e", 7},
      {"i9223372036854775807e", INT64_MAX},
      {"i-9223372036854775808e", INT64_MIN},
      {"i9223372036854775808e", {}},
      {"i-9223372036854775809e", {}},
      {"ie", {}},
      {"i-e", {}},
      {"i+e", {}},
      {"i+-5e", {}},
      {"i--5e", {}},
      {"i 5e", {}},
      {"i1.5e", {}},
      {"i0x5e", {}},
      {"i5", {}},
  };
  for (const auto& [text, expected] : cases) {
    const auto value = parsed(text);
    EXPECT_EQ(value ? value->integer() : std::nullopt, expected) << text;
    EXPECT_EQ(value.has_value(), expected.has_value()) << text;
  }
}

TEST(Bencode, ByteStringsEndWithinTheInput) {
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"4:spam", "spam"},
      {"01:a", "a"},
      {"0:", ""},
      {"2:\0\xFF"s, "\0\xFF"s},
      {"3:ab", {}},
      {"-1:a", {}},
      {"4", {}},
      {"1x:a", {}},
      {"1+:a", {}},
      {"9223372036854775807:a", {}},
      {"99999999999999999999:a", {}},
  };
  for (const auto& [text, expected] : cases) {
    const auto value = parsed(text);
    ASSERT_EQ(value.has_value(), expected.has_value()) << text;
    if (value) {
      EXPECT_EQ(*value->bytes(), toVector(asBytes(*expected))) << text;
    }
  }
}

TEST(Bencode, BrokenInputGivesNothing) {
  for (const char* text : {"", "d", "l", "e", "x", "d1:a", "d1:ae", "di1e1:ae", "dle1:ae", "l1:a",
                           "d1:ai1e", "li1e", " i1e"})
    EXPECT_FALSE(parsed(text)) << text;
}

TEST(Bencode, TheParserStopsBehindTheFirstValue) {
  for (const auto& [text, end] : {std::pair{"4:spamrest", 6U},
                                  {"dee", 2U},
                                  {"i1exx", 3U},
                                  {"d8:msg_typei1ee\x01raw", 15U},
                                  {"lelele", 2U}}) {
    BencodeParser parser{asBytes(std::string_view(text))};
    EXPECT_TRUE(parser.parse()) << text;
    EXPECT_EQ(parser.pos(), end) << text;
  }
}

TEST(Bencode, FortyLevelsAreRead) {
  EXPECT_TRUE(parsed(lists(40)));
  EXPECT_FALSE(parsed(lists(41)));
  EXPECT_TRUE(parsed(repeated("l", 39) + "de" + repeated("e", 39)));
  EXPECT_FALSE(parsed(repeated("l", 39) + "d1:a1:be" + repeated("e", 39)));
  EXPECT_FALSE(BencodeParser(asBytes(std::string_view("le"))).parse(40));
}

TEST(Bencode, TheInfoRangeIsThatOfTheLastTopLevelInfo) {
  const std::pair<std::string, std::optional<std::string>> cases[] = {
      {"d4:infod1:ai1eee", "d1:ai1ee"},
      {"d4:info3:olde", "3:old"},
      {"d1:a1:b4:infole4:infodee", "de"},
      {"d1:ad4:infodeee", {}},
      {"ld4:infodeee", {}},
      {"d4:Infodee", {}},
      {"d7:\xEF\xBB\xBFinfodee", {}}, // a byte order mark makes it another key
  };
  for (const auto& [text, expected] : cases) {
    BencodeParser parser{asBytes(text)};
    ASSERT_TRUE(parser.parse()) << text;
    const auto range = parser.infoRange();
    ASSERT_EQ(range.has_value(), expected.has_value()) << text;
    if (range) {
      EXPECT_EQ(text.substr(range->first, range->second - range->first), *expected);
    }
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

// Each would take minutes, or the stack, if a scan began anew for every byte.
TEST(Bencode, MegabytesOfMaliceAreReadInOnePass) {
  constexpr std::size_t kMany = 4U << 20U;
  for (const char* unit : {"l", "d", "i", "1", "i1", "9:", "0:", "d0:", "le", "i1e"}) {
    EXPECT_FALSE(parsed("l" + repeated(unit, kMany / 2))) << unit;
  }
  EXPECT_EQ(parsed("l" + repeated("0:", kMany / 2) + "e")->list()->size(), kMany / 2);
  EXPECT_EQ(parsed("d" + repeated("0:0:", kMany / 4) + "e")->dict()->size(), 1U);
}

} // namespace
} // namespace vellum
