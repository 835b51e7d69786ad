#include "playback/SubtitleParser.h"
#include <gtest/gtest.h>

namespace vellum {
namespace {

QString text(const char* utf8) { return QString::fromUtf8(utf8); }

// "start..end text", one cue after the other; a line feed is "/".
std::string written(const SubtitleCues& cues) {
  QStringList list;
  for (const SubtitleCue& cue : cues)
    list << QStringLiteral("%1..%2 ").arg(cue.start).arg(cue.end) + cue.text;
  return list.join(u'|').replace(u'\n', u'/').toStdString();
}

using Case = std::pair<const char*, const char*>; // a file's text, and its cues

TEST(SubtitleParserTest, ReadsTimes) {
  const std::pair<const char*, double> times[] = {
      {"00:01", 1},      {"01:02:03,5", 3723.5}, {" \t0:00:01.25\t ", 1.25},
      {"1:90:90", 9090}, {"-1:+5", -55},         {":1::2:", 62},
      {"0:0x1p4", 16}};
  for (const auto& [written, seconds] : times)
    EXPECT_EQ(SubtitleParser::parseTime(text(written)), seconds) << written;
  // The last has a digit, but not one of the C library.
  for (const char* none : {"12", "", "1:2:3:4", "0: 1", "0 :1", "0:1,2,3", "0:1x", "0:\xd9\xa1"})
    EXPECT_FALSE(SubtitleParser::parseTime(text(none))) << none;
}

TEST(SubtitleParserTest, ReadsSubRipAndWebVTT) {
  const Case cases[] = {
      // Marks, returns; counters, headers and notes; settings behind a blank.
      {"\xef\xbb\xbf"
       "1\r\n00:00:01,000 --> 00:00:02,5\r\nOne\r\nTwo\r\n\r\n2\r\n0:3 --> 0:4\r\nA\r",
       "1..2.5 One/Two|3..4 A"},
      {"WEBVTT - x\n\nNOTE\nno time\n\nintro\n00:01.000 --> 00:04.000 line:0 align:start\n"
       "<v Ann>Hi</v> <i.loud>there</i>",
       "1..4 Hi there"},
      {"0:1 --> 0:4\tline:0\nA", ""},
      {"1 --> 0:2\nA\n\n0:1 --> 2\nB", ""},
      {"0:1 --> 0:2 --> 0:3\n0:4 --> 0:5\nA", ""},
      // Nothing to show.
      {"0:1 --> 0:2\n \t\xc2\xa0\n", ""},
      {"0:1 --> 0:2\n\n0:3 --> 0:4", ""},
      // Markup is what stands in a pair that is not empty.
      {"0:1 --> 0:2\n<b><i>x</i></b>", "1..2 x"},
      {"0:1 --> 0:2\n1 < 2 <> <<b>x</b> &amp; {\\i1} a > b <c", "1..2 1  x &amp; {\\i1} a > b <c"},
      // Blocks, by empty lines alone; in the order of the file.
      {"\n\n\n0:1 --> 0:2\nA\n\n\nB\n\n\n\n0:3 --> 0:4\nC", "1..2 A|3..4 C"},
      {"0:5 --> 0:4\nA\n\n0:1 --> 0:2\nB", "5..4 A|1..2 B"},
      {"0:1 --> 0:2\r\r\nA", ""}};
  for (const auto& [file, cues] : cases)
    EXPECT_EQ(written(SubtitleParser::parse(text(file))), cues) << file;
}

TEST(SubtitleParserTest, ReadsSubStation) {
  const Case cases[] = {
      // Without a Format line columns 1, 2 and 9; the last line above counts, that of styles is
      // none.
      {"Dialogue: 0,0:00:01.00,0:00:02.50,Default,,0,0,0,,{\\an8}One, and\\NTwo, {}three",
       "1..2.5 One, and/Two, three"},
      {"[V4+ Styles]\r\nFormat: Name, Fontname\r\nFormat: Start , END,Text\r\n"
       "Format: Name, Start\nFormat: Name, Start, End\nFormat: Name, Text\n"
       "Dialogue:0:01,0:02,a,b\r\nComment: 0:03,0:04,c\r\n",
       "1..2 a,b"},
      {"Format: text, start, end\nFormat: start, end, text, x\nDialogue: 0:1,0:2,a,b\n"
       "Format: end, start, text\nDialogue: 0:4,0:3,c",
       "1..2 a,b|3..4 c"},
      // The first of each name, where empty ones do not count; times behind the text are not found.
      {"Format: start,, end, end, text, start\nDialogue: 0:1,0:2,0:3,x", "1..2 x"},
      {"Dialogue: 0,0:1,0:2,,,,,,text\nDialogue: 0,1,0:2,,,,,,,a\nDialogue: 0,0:1,x,,,,,,,b\n"
       "Dialogue: 0,0:1,0:2,,,,,,, {\\b1} \\N\n",
       ""},
      {"Dialogue: 0,0:1,0:2,,,,,,,\\Na\\hb\\n\\\\Nc\\{x}N{open\\", "1..2 a\\hb/\\/c/{open\\"},
      // By start, equal ones in order; what is no number last.
      {"Dialogue: 0,0:3,0:4,,,,,,,c\nDialogue: 0,0:1,0:9,,,,,,,a\nDialogue: 0,0:nan,0:4,,,,,,,n\n"
       "Dialogue: 0,0:1,0:2,,,,,,,b\nDialogue: 0,-1:0,0:2,,,,,,,z",
       "-60..2 z|1..9 a|1..2 b|3..4 c|nan..4 n"}};
  for (const auto& [file, cues] : cases)
    EXPECT_EQ(written(SubtitleParser::parseASS(text(file))), cues) << file;
}

} // namespace
} // namespace vellum
