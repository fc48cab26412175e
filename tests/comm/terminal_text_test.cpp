// The terminal's names and received text.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "comm/terminal_text.h"
#include "editor/line_record.h"
#include "tests/editor/editor_fixture.h"

namespace {

TEST(PortSpecification, NamesThatAreAndAreNotPorts) {
  struct Case {
    const char* name;
    bool port;
  };
  const Case kCases[] = {
      {"COM1,115200,0,8,0,0", true},
      {"com3,9600", true},
      {"cOm255,", true},
      {"COM256,1,1,1,1,1", true},
      {"COM0,9600,0,8,0,0", false},
      {"COM3;9600", false},
      {"COM,9600", false},
      {"COM3", false},
      {"COM 3,", false},
      {"CON3,", false},
      {"COM00,", false},
      {"COM-1,", false},
      {"COM99999999999999999999,", true},
      {"", false},
  };
  for (const Case& c : kCases)
    EXPECT_EQ(IsPortSpecification(c.name), c.port) << c.name;
}

TEST(PortSpecification, FieldsDefaultsAndSaturation) {
  struct Case {
    const char* name;
    PortSpecification settings;
  };
  const Case kCases[] = {
      {"COM2,9600,2,7,1,2", {2, 9600, 2, 7, 1, 2}},
      {"com7,", {7, 115200, 0, 8, 0, 0}},
      {"COM1,4800,1", {1, 4800, 1, 8, 0, 0}},
      {"COM1,300,x,5", {1, 300, 0, 8, 0, 0}},  // a field that is no number ends the list
      {"COM1,99999999999999,9,99,9,9", {1, 0xFFFFFFFFu, 0, 8, 0, 0}},
      {"COM1,-5,4,5,2,1", {1, 115200, 4, 5, 2, 1}},
      {"COM255,256000,0,8,0,0", {255, 256000, 0, 8, 0, 0}},
      {"COM99999999999,1,0,8,0,0", {0x7FFFFFFF, 1, 0, 8, 0, 0}},
  };
  for (const Case& c : kCases) {
    PortSpecification settings;
    ASSERT_TRUE(ParsePortSpecification(c.name, &settings)) << c.name;
    EXPECT_EQ(settings.port, c.settings.port) << c.name;
    EXPECT_EQ(settings.baud, c.settings.baud) << c.name;
    EXPECT_EQ(settings.parity, c.settings.parity) << c.name;
    EXPECT_EQ(settings.dataBits, c.settings.dataBits) << c.name;
    EXPECT_EQ(settings.stopBits, c.settings.stopBits) << c.name;
    EXPECT_EQ(settings.flow, c.settings.flow) << c.name;
  }
  PortSpecification settings;
  EXPECT_FALSE(ParsePortSpecification("COM0,9600,0,8,0,0", &settings));
  char text[64];
  PortSpecification back = {12, 57600, 3, 6, 2, 1};
  FormatPortSpecification(&back, text, sizeof text);
  EXPECT_STREQ(text, "COM12,57600,3,6,2,1");
}

class ReceivedText : public EditorTest {
 protected:
  void Receive(const std::string& bytes) {
    TypeReceivedBytes(&view, reinterpret_cast<const unsigned char*>(bytes.data()),
                      static_cast<int>(bytes.size()), &previous);
  }
  int previous = -1;
};

TEST_F(ReceivedText, LineEndsAsTheDeviceSendsThem) {
  struct Case {
    std::vector<std::string> chunks;  // as separate arrivals
    std::vector<std::string> lines;
  };
  const Case kCases[] = {
      {{"a\r\nb"}, {"a", "b"}},     {{"a\nb"}, {"a", "b"}},   {{"a\r\r\nb"}, {"a", "b"}},
      {{"a\r", "\nb"}, {"a", "b"}},  // the previous byte carries over between arrivals
      {{"OK\r\n"}, {"OK", ""}},     {{"\n\n"}, {"", "", ""}}, {{"\r\n\r\n"}, {"", "", ""}},
      {{"a\n\rb"}, {"a", "", "b"}}, {{"a\r\rb"}, {"a", "b"}},
  };
  for (const Case& c : kCases) {
    ClearLines(document);
    Caret(0, 0);
    previous = -1;
    for (const std::string& chunk : c.chunks)
      Receive(chunk);
    EXPECT_EQ(Lines(document), c.lines) << c.chunks[0];
    EXPECT_EQ(view.caretLine, static_cast<int>(c.lines.size()) - 1) << c.chunks[0];
  }
  EXPECT_EQ(document->modified, 0);
  EXPECT_EQ(UndoCount(), 0);
}

TEST_F(ReceivedText, EveryByteValueArrivesAndTypesAtTheCaret) {
  SetText({"[]", "tail"});
  Caret(1, 0);
  std::string bytes;
  for (int b = 0; b < 256; ++b)
    if (b != 10 && b != 13) bytes += static_cast<char>(b);
  Receive(bytes);
  std::u16string expected = u"[";
  for (unsigned char b : bytes)
    expected += static_cast<char16_t>(b);
  expected += u"]";
  ASSERT_EQ(document->lineCount, 2);
  const LineRecord* line = document->lines[0];
  EXPECT_TRUE(std::u16string(line->text, line->length) == expected);
  EXPECT_EQ(view.caretColumn, RunColumns(expected.data(), 255));
  EXPECT_EQ(Lines(document)[1], "tail");
}

TEST_F(ReceivedText, AMegabyteWithoutALineEndIsKeptWhole) {
  std::string bytes(1 << 20, 'x');
  for (size_t i = 0; i < bytes.size(); i += 997)
    bytes[i] = static_cast<char>('a' + i % 26);
  Caret(0, 0);
  for (size_t at = 0; at < bytes.size(); at += 1000)
    Receive(bytes.substr(at, 1000));
  std::string joined;
  for (const std::string& line : Lines(document)) {
    EXPECT_LE(line.size(), static_cast<size_t>(kMaxLineUnits));
    joined += line;
  }
  EXPECT_TRUE(joined == bytes) << joined.size() << " of " << bytes.size();
  EXPECT_EQ(document->lineCount, static_cast<int>(bytes.size() / kMaxLineUnits) + 1);
}

}  // namespace
