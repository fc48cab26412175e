// quill-tool keys from the outside: a script of keys, characters and clicks leaves the text the
// editor window would leave, saved in the file's own encoding.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/tool_run.h"

namespace {

class KeysTool : public ::testing::Test {
 protected:
  void SetUp() override {
    file_ = testing::TempDir() + "quill_keys.c";
    script_ = testing::TempDir() + "quill_keys.txt";
  }
  void TearDown() override {
    std::remove(file_.c_str());
    std::remove(script_.c_str());
  }
  ToolRun Play(const std::string& text, const std::string& script) {
    std::ofstream(file_, std::ios::binary) << text;
    std::ofstream(script_, std::ios::binary) << script;
    return RunTool("keys '" + file_ + "' '" + script_ + "'", true);
  }
  std::string file_, script_;
};

// 한 C7D1, 가 B0A1, 나 B3AA in EUC-KR.
TEST_F(KeysTool, PlaysKeysPrefixesBlocksAndClicksThenSaves) {
  ToolRun run = Play("\xC7\xD1 int main;\r\nreturn 0;\r\n",
                     "key End\n"
                     "text \xEA\xB0\x80\xEB\x82\x98\n"  // 가나 typed as characters
                     "key Enter\ntext x\nkey Ctrl+Z\n"  // the undo takes back the x
                     "key Ctrl+O\nkey C\n"              // column blocks from here on
                     "key Shift+Down\nkey Shift+Right\nkey Shift+Right\nkey Ctrl+C\n"
                     "key Ctrl+End\nkey Enter\nkey Ctrl+V\n"
                     "key Ctrl+K\nkey F\n"  // the word at the caret in capitals
                     "click 0 0\ntext A\n"
                     "wait 1000\nkey Tab\nkey Tab\n"  // the second Tab is not a double press
                     "key Ctrl+S\n");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(ReadFile(file_),
            "A       \xC7\xD1 int main;\xB0\xA1\xB3\xAA\r\n\r\nreturn 0;\r\n\r\nRE\r\n");
}

TEST_F(KeysTool, ADoubleTabAtATabStopTypesOnceAndUnknownEventsStopTheScript) {
  // The second press reaches a tab stop within the double-press time: it is taken as one.
  ToolRun run = Play("abcd\n", "key End\nkey Tab\nkey Tab\ntext x\nkey Ctrl+S\n");
  EXPECT_EQ(run.status, 0) << run.out;
  EXPECT_EQ(ReadFile(file_), "abcd    x\n");
  run = Play("abcd\n", "key End\nkey Tab\nwait 400\nkey Tab\ntext x\nkey Ctrl+S\n");
  EXPECT_EQ(ReadFile(file_), "abcd        x\n");

  run = Play("abc\n", "text x\nkey Ctrl+Nope\nkey Ctrl+S\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.out.find("line 2: not an event"), std::string::npos) << run.out;
  EXPECT_EQ(ReadFile(file_), "abc\n");  // stopped before the save
}

}  // namespace
