#include "playback/SubtitleTimeline.h"
#include <ctime>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace vellum {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// "start..end text", one cue after the other; a line feed is "/".
std::string written(const SubtitleCues& cues) {
  QStringList list;
  for (const SubtitleCue& cue : cues)
    list << QStringLiteral("%1..%2 ").arg(cue.start).arg(cue.end) + cue.text;
  return list.join(u'|').replace(u'\n', u'/').toStdString();
}

TEST(SubtitleParserTest, ReadsTimes) {
  const std::pair<const char*, double> times[] = {
      {"00:01", 1},         {"01:02:03,5", 3723.5}, {" \t0:00:01.25\t ", 1.25},
      {"1:90:90", 9090},    {"00:-1", -1},          {"-1:+5", -55},
      {":1::2:", 62},       {"0:1e2", 100},         {"0:0x1p4", 16},
      {"0:inf", kInfinity}, {"0:1e999", kInfinity}, {"0:.5", 0.5}};
  for (const auto& [written, seconds] : times)
    EXPECT_EQ(SubtitleParser::parseTime(text(written)), seconds) << written;
  // The last has a digit, but not one of the C library.
  for (const char* none : {"12", "", ":", "1:2:3:4", "0: 1", "0 :1", "0:1\r", "0:\v1", "0:1,2,3",
                           "0:1x", "0:\xd9\xa1"})
    EXPECT_FALSE(SubtitleParser::parseTime(text(none))) << none;
  EXPECT_TRUE(std::isnan(SubtitleParser::parseTime(u"0:nan").value()));
  EXPECT_FALSE(SubtitleParser::parseTime(QStringView(u"0:1\0", 4)));
}

TEST(SubtitleParserTest, ReadsSubRipAndWebVTT) {
  const struct {
    const char* name;
    const char* text;
    const char* cues;
  } cases[] = {
      {"a clean file", "1\n00:00:01,000 --> 00:00:02,500\nOne\nTwo\n\n2\n0:3 --> 0:4\nThree\n",
       "1..2.5 One/Two|3..4 Three"},
      {"mark and carriage returns",
       "\xef\xbb\xbf"
       "1\r\n00:00:01,000 --> 00:00:02,500\r\nOne\r\nTwo\r\n\r\n2\r\n0:3 --> 0:4\r\nThr"
       "\xef\xbb\xbf"
       "ee\r\n",
       "1..2.5 One/Two|3..4 Three"},
      {"the header, a note and an identifier are passed over; settings and a short time",
       "WEBVTT - x\n\nNOTE\nno time\n\nintro\n00:01.000 --> 00:04.000 line:0 align:start\n"
       "<v Ann>Hi</v> <i.loud>there</i>",
       "1..4 Hi there"},
      {"only a blank ends the time", "0:1 --> 0:4\tline:0\nA", ""},
      {"no blanks about the arrow", "0:1-->0:4\nA", "1..4 A"},
      {"a bare number is no time", "1 --> 0:2\nA\n\n0:1 --> 2\nB", ""},
      {"the first of two timing lines", "0:1 --> 0:2\n0:3 --> 0:4\nA", "1..2 0:3 --> 0:4/A"},
      {"two arrows in a line", "0:1 --> 0:2 --> 0:3\n0:4 --> 0:5\nA", ""},
      {"markup alone", "0:1 --> 0:2\n<b></b>\n", ""},
      {"white space alone", "0:1 --> 0:2\n \t\xc2\xa0\n", ""},
      {"no text, no line", "0:1 --> 0:2\n\n0:3 --> 0:4", ""},
      {"what is no markup stays", "0:1 --> 0:2\n1 < 2 <> <<b>x</b> &amp; {\\i1} a > b <c",
       "1..2 1  x &amp; {\\i1} a > b <c"},
      {"an empty pair is no tag", "0:1 --> 0:2\n<><b>x", "1..2 <>x"},
      {"a tag over two lines", "0:1 --> 0:2\na<b\nc>d", "1..2 ad"},
      {"more empty lines", "\n\n\n0:1 --> 0:2\nA\n\n\nB\n\n\n\n0:3 --> 0:4\nC", "1..2 A|3..4 C"},
      {"a blank line does not divide", "0:1 --> 0:2\nA\n \nB", "1..2 A/ /B"},
      {"not sorted, and backwards", "0:5 --> 0:4\nA\n\n0:1 --> 0:2\nB", "5..4 A|1..2 B"},
      {"lone carriage returns", "1\r0:1 --> 0:2\rA\r\r", ""},
      {"a return left over", "0:1 --> 0:2\r\r\nA", ""},
  };
  for (const auto& one : cases)
    EXPECT_EQ(written(SubtitleParser::parse(text(one.text))), one.cues) << one.name;
}

TEST(SubtitleParserTest, ReadsSubStation) {
  const struct {
    const char* name;
    const char* text;
    const char* cues;
  } cases[] = {
      {"without a Format line: columns 1, 2 and 9",
       "Dialogue: 0,0:00:01.00,0:00:02.50,Default,,0,0,0,,{\\an8}One, and\\NTwo, {}three",
       "1..2.5 One, and/Two, three"},
      {"that of the styles is none",
       "[V4+ Styles]\r\nFormat: Name, Fontname\r\n[Events]\r\nFormat: Start , END,Text\r\n"
       "Dialogue:0:01,0:02,a,b\r\nComment: 0:03,0:04,c\r\n",
       "1..2 a,b"},
      {"the last above counts",
       "Format: text, start, end\nFormat: start, end, text, x\n"
       "Dialogue: 0:1,0:2,a,b\nFormat: end, start, text\n"
       "Dialogue: 0:4,0:3,c",
       "1..2 a,b|3..4 c"},
      {"the first of each; empty names do not count",
       "Format: start,, end, end, text, start\n"
       "Dialogue: 0:1,0:2,0:3,x",
       "1..2 x"},
      {"times behind the text are never found", "Format: text,start,end\nDialogue: a,0:1,0:2", ""},
      {"case and position are exact",
       "format: start,end,text\n Format: start,end,text\ndialogue: 0:1,0:2,a\n"
       " Dialogue: 0,0:1,0:2,,,,,,,b",
       ""},
      {"too few fields; bad times; no text",
       "Dialogue: 0,0:1,0:2,,,,,,text\nDialogue: 0,1,0:2,,,,,,,a\nDialogue: 0,0:1,x,,,,,,,b\n"
       "Dialogue: 0,0:1,0:2,,,,,,, {\\b1} \\N\n",
       ""},
      {"codes", "Dialogue: 0,0:1,0:2,,,,,,,a\\hb\\n\\\\Nc\\{x}N{open", "1..2 a\\hb/\\/c/{open"},
      {"sorted by start, equal ones in order",
       "Dialogue: 0,0:3,0:4,,,,,,,c\nDialogue: 0,0:1,0:9,,,,,,,a\nDialogue: 0,0:nan,0:4,,,,,,,n\n"
       "Dialogue: 0,0:1,0:2,,,,,,,b\nDialogue: 0,-1:0,0:2,,,,,,,z",
       "-60..2 z|1..9 a|1..2 b|3..4 c|nan..4 n"},
  };
  for (const auto& one : cases)
    EXPECT_EQ(written(SubtitleParser::parseASS(text(one.text))), one.cues) << one.name;
}

TEST(SubtitleParserTest, DecodesUtf8OrElseLatin1) {
  const struct {
    QByteArray bytes;
    QString text;
  } cases[] = {{"\xef\xbb\xbf\xc3\xa9\xf0\x9f\x98\x80", text("\xc3\xa9\xf0\x9f\x98\x80")},
               {"caf\xe9", text("caf\xc3\xa9")},
               {"cut \xc3", text("cut \xc3\x83")},
               {"\xed\xa0\x80", text("\xc3\xad\xc2\xa0\xc2\x80")},
               {"\xc0\x80", text("\xc3\x80\xc2\x80")},
               {"\xff\xfe", text("\xc3\xbf\xc3\xbe")},
               {"", QString()}};
  for (const auto& one : cases)
    EXPECT_EQ(SubtitleParser::decode(one.bytes), one.text) << one.bytes.toHex().toStdString();
}

double secondsToRead(const QString& unit, qsizetype count) {
  const auto begun = std::clock(); // the processor's time
  const QString units = unit.repeated(count);
  for (const char* before : {"", "0:1 --> 0:2\n", "Dialogue: 0,0:1,0:2,,,,,,,"}) {
    const QString file = text(before) + units;
    SubtitleTimeline(SubtitleParser::parse(file)).at(1);
    SubtitleTimeline(SubtitleParser::parseASS(file)).at(1);
  }
  SubtitleParser::parseTime(text("0:0.") + units);
  return double(std::clock() - begun) / CLOCKS_PER_SEC;
}

// Each is what costs a careless parser the square of its length: 16 times for 4 times as much.
TEST(SubtitleParserTest, CostsNoMoreThanItsLength) {
  for (const char* unit :
       {"\r\n", "<", "<>", "{", "{}", "-->", "\n", "\\N", ",", ":", "\xef\xbb\xbf",
        "0:1-->0:1\nx\n\n", "Format:,start,end,text\n", "Dialogue:,\n", "9", " "}) {
    const double few = secondsToRead(text(unit), 50'000);
    EXPECT_LT(secondsToRead(text(unit), 200'000), 10 * few + 0.1) << unit;
  }
}

TEST(SubtitleTimelineTest, AnswersAsAScanOfTheList) {
  std::mt19937 random(7); // a fixed seed: a failure comes again
  const double odd[] = {-kInfinity, kInfinity, std::nan(""), -0.0, 0.5};
  const auto time = [&] {
    return random() % 16 == 0 ? odd[random() % std::size(odd)] : double(random() % 12);
  };
  for (int round = 0; round < 2000; ++round) {
    SubtitleCues cues(random() % 12);
    for (SubtitleCue& cue : cues) cue = {time(), time(), QString::number(&cue - cues.data())};
    const SubtitleTimeline timeline(cues);
    for (int asked = 0; asked < 30; ++asked) {
      const double at = asked < 26 ? asked / 2.0 - 0.5 : time();
      const auto first = std::find_if(cues.begin(), cues.end(), [at](const SubtitleCue& cue) {
        return cue.start <= at && at <= cue.end;
      });
      const SubtitleCue* found = timeline.at(at);
      ASSERT_EQ(found == nullptr, first == cues.end()) << round << " at " << at;
      if (found != nullptr) ASSERT_EQ(found->text, first->text) << round << " at " << at;
    }
  }
}

} // namespace
} // namespace vellum
