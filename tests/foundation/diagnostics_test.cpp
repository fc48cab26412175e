#include "foundation/diagnostics.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/capture.h"

namespace {

TEST(DebugDump, TwentyBytesMakeAFullAndAPaddedLine) {
  unsigned char bytes[20];
  const char* text = "Quill dump!";
  for (int i = 0; i < 20; ++i)
    bytes[i] = static_cast<unsigned char>(i < 11 ? text[i] : 0x7C + i);
  bytes[5] = ' ';
  bytes[6] = 0x7F;
  LogCapture log;
  DebugDump(bytes, 20);
  // Blanks and bytes below 33 or above 127 show as blanks; 127 itself is shown.
  EXPECT_EQ(log.Text(),
            "0000: 51 75 69 6C 6C 20 7F 75-6D 70 21 87 88 89 8A 8B   Quill \x7F"
            "ump!     \r\n"
            "0010: 8C 8D 8E 8F" +
                std::string(39 + 4, ' ') + "\r\n");
}

TEST(DebugDump, OffsetsKeepTheirLowSixteenBits) {
  unsigned char bytes[3] = {'a', 'b', 'c'};
  char line[80];
  int length = FormatDumpLine(bytes, 3, 0x12340, line);
  EXPECT_EQ(std::string(line, static_cast<size_t>(length)),
            "2340: 61 62 63" + std::string(42, ' ') + "abc\r\n");
}

TEST(DebugLog, AppendsTheFormattedTextAsItStands) {
  LogCapture log;
  DebugLog("%s=%,d\r\n", "Count", 12345);
  DebugLog("no line end");
  EXPECT_EQ(log.Text(), "Count=12,345\r\nno line end");
}

TEST(DebugLog, LinesAreCutAt1023Characters) {
  std::string longText(2000, 'x');
  LogCapture log;
  DebugLog("%s", longText.c_str());
  EXPECT_EQ(log.Text(), std::string(1023, 'x'));
}

TEST(ScreenNote, NotesStepDownAndWrapAtTheScreenHeight) {
  NoteCapture notes(480);
  for (int i = 0; i < 31; ++i)
    ScreenNote("note %d", i);
  ASSERT_EQ(notes.Notes().size(), 31u);
  for (int i = 0; i < 30; ++i) {
    EXPECT_EQ(notes.Notes()[static_cast<size_t>(i)].y, i * 16);
    EXPECT_EQ(notes.Notes()[static_cast<size_t>(i)].x, 0);
  }
  EXPECT_EQ(notes.Notes()[29].text, "note 29");
  // After the thirtieth line the next note goes back to the top.
  EXPECT_EQ(notes.Notes()[30].y, 0);
}

TEST(ScreenNote, TextIsCutAt259Characters) {
  NoteCapture notes;
  std::string longText(400, 'n');
  ScreenNote("%s", longText.c_str());
  ASSERT_EQ(notes.Notes().size(), 1u);
  EXPECT_EQ(notes.Notes()[0].text, std::string(259, 'n'));
}

}  // namespace
