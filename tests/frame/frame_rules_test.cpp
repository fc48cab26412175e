// The status texts, the menu state and the command table of the frame.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "frame/frame_commands.h"
#include "frame/menu_state.h"
#include "frame/status_text.h"
#include "tests/support/klib_test.h"

namespace {

TEST(FrameStatus, CursorPartShowsColumnAndLineFromOne) {
  char text[64];
  FormatCursorStatus(0, 0, text, sizeof text);
  EXPECT_STREQ(text, "\tCol 1, Ln 1");
  FormatCursorStatus(79, 12344, text, sizeof text);
  // No digit grouping in the status bar.
  EXPECT_STREQ(text, "\tCol 80, Ln 12345");
  EXPECT_STREQ(ModifiedStatus(true), "\tModified");
  EXPECT_STREQ(ModifiedStatus(false), "");
}

TEST(FrameStatus, FormatPartShowsTheEncodingAMarkAndTheLineEnds) {
  struct Row {
    int encoding;
    bool mark, lfOnly;
    const char* text;
  };
  const Row rows[] = {
      {2, false, false, "\tEUC-KR  CRLF"},
      {3, true, true, "\tUTF-8 BOM  LF"},
      {4, true, false, "\tUTF-16 BOM  CRLF"},
      {4, false, true, "\tUTF-16  LF"},
      {1, false, false, "\tJohab  CRLF"},
      {2, true, false, "\tEUC-KR  CRLF"},  // a mark left over from another encoding is not written
      {0, false, true, "\tLF"},            // still to be detected
      {9, false, false, "\tCRLF"},
  };
  for (const Row& row : rows) {
    char text[40];
    FormatFileFormatStatus(row.encoding, row.mark, row.lfOnly, text, sizeof text);
    EXPECT_STREQ(text, row.text) << row.encoding;
  }
}

class FrameStatusText : public KLibTest {};

TEST_F(FrameStatusText, OverwriteTypingIsNamedBehindTheFormat) {
  char text[64];
  FormatFileFormatStatus(3, false, false, text, sizeof text, true);
  EXPECT_STREQ(text, "\tUTF-8  CRLF  \xEA\xB2\xB9\xEC\xB3\x90\xEC\x93\xB0\xEA\xB8\xB0");
}

TEST(FrameStatus, MessagePartIsSentOnlyWhenItChanges) {
  StatusMemory memory = {};
  EXPECT_FALSE(StatusMessageChanged(&memory, nullptr));  // empty to start with
  EXPECT_TRUE(StatusMessageChanged(&memory, "Bookmark: 1"));
  EXPECT_FALSE(StatusMessageChanged(&memory, "Bookmark: 1"));
  EXPECT_TRUE(StatusMessageChanged(&memory, nullptr));
  EXPECT_FALSE(StatusMessageChanged(&memory, ""));

  // Only 40 characters are remembered.
  std::string longText(60, 'x');
  EXPECT_TRUE(StatusMessageChanged(&memory, longText.c_str()));
  EXPECT_EQ(std::string(memory.last), std::string(40, 'x'));
  EXPECT_FALSE(StatusMessageChanged(&memory, (std::string(40, 'x') + "other").c_str()));
  EXPECT_TRUE(StatusMessageChanged(&memory, std::string(39, 'x').c_str()));
}

// The plan as id -> enabled; positions on the menu bar as -position.
std::map<int, bool> Plan(int mode, bool quick, bool project, bool* redraw) {
  MenuStatePlan plan;
  PlanMenuState(mode, quick, project, &plan);
  std::map<int, bool> result;
  for (int i = 0; i < plan.count; ++i) {
    int key = plan.items[i].byPosition ? -plan.items[i].id : plan.items[i].id;
    EXPECT_EQ(result.count(key), 0u) << key;
    result[key] = plan.items[i].enabled;
  }
  *redraw = plan.redrawBar;
  return result;
}

TEST(FrameMenuState, NothingOpenGreysDocumentAndProjectCommands) {
  bool redraw;
  std::map<int, bool> plan = Plan(0, false, false, &redraw);
  const int documentCommands[] = {82,  83,  34,  70, 71, 105, 106, 107,
                                  108, 109, 110, 74, 76, 111, 38,  26};
  for (int id : documentCommands)
    EXPECT_FALSE(plan.at(id)) << id;
  for (int id : {121, 116, 117, 119, 124, 125, 126, -6, -7, -8, 120, 122, 123, 45})
    EXPECT_FALSE(plan.at(id)) << id;
  EXPECT_EQ(plan.size(), 16u + 14u);
  EXPECT_TRUE(redraw);
}

TEST(FrameMenuState, DocumentModeWithAProjectOpen) {
  bool redraw;
  std::map<int, bool> plan = Plan(1, false, true, &redraw);
  EXPECT_TRUE(plan.at(82));
  EXPECT_TRUE(plan.at(26));
  EXPECT_FALSE(plan.at(121));  // only for the project window
  EXPECT_TRUE(plan.at(124));
  EXPECT_TRUE(plan.at(-7));
  EXPECT_FALSE(plan.at(120));
  EXPECT_FALSE(plan.at(45));

  // The same without a project: the build commands stay grey.
  plan = Plan(1, false, false, &redraw);
  EXPECT_FALSE(plan.at(125));
  EXPECT_FALSE(plan.at(-6));
}

TEST(FrameMenuState, QuickFlagTouchesOnlyDocumentCommandsOutsideTheProjectWindow) {
  bool redraw = false;
  std::map<int, bool> plan = Plan(1, true, true, &redraw);
  EXPECT_EQ(plan.size(), 16u);
  EXPECT_TRUE(plan.at(83));
  EXPECT_TRUE(redraw);

  // Quick in mode 0 changes nothing but still redraws the bar.
  plan = Plan(0, true, true, &redraw);
  EXPECT_TRUE(plan.empty());
  EXPECT_TRUE(redraw);

  // Quick in the project window: the document commands are left alone, the project's all set.
  plan = Plan(2, true, true, &redraw);
  EXPECT_EQ(plan.count(82), 0u);
  EXPECT_TRUE(plan.at(121));
  EXPECT_TRUE(plan.at(120));
  EXPECT_TRUE(plan.at(-8));
}

TEST(FrameCommands, TheTableSendsEachCommandWhereItBelongs) {
  EXPECT_EQ(FrameCommand(82), kCommandForward);   // save goes to the document
  EXPECT_EQ(FrameCommand(70), kCommandForward);   // undo
  EXPECT_EQ(FrameCommand(112), kCommandForward);  // activation check
  EXPECT_EQ(FrameCommand(9998), kCommandForward);
  EXPECT_EQ(FrameCommand(91), kCommandFrame);
  EXPECT_EQ(FrameCommand(84), kCommandFrame);
  EXPECT_EQ(FrameCommand(34), kCommandFrame);
  EXPECT_EQ(FrameCommand(125), kCommandProjectWindow);
  // New and open project belong to the frame; the other project items go to the active child.
  EXPECT_EQ(FrameCommand(114), kCommandFrame);
  EXPECT_EQ(FrameCommand(115), kCommandFrame);
  EXPECT_EQ(FrameCommand(122), kCommandForward);
  // The Tools windows the frame opens itself; the ones still missing say so.
  EXPECT_EQ(FrameCommand(46), kCommandFrame);
  EXPECT_EQ(FrameCommand(24), kCommandFrame);
  EXPECT_EQ(FrameCommand(47), kCommandFrame);
  EXPECT_EQ(FrameCommand(28), kCommandFrame);
  EXPECT_EQ(FrameCommand(25), kCommandFrame);
  EXPECT_EQ(FrameCommand(29), kCommandFrame);
  EXPECT_EQ(FrameCommand(26), kCommandForward);  // the line sort works on the active editor
  EXPECT_EQ(FrameCommand(9999), kCommandUnfinished);
  EXPECT_EQ(FrameCommand(44), kCommandFrame);
  EXPECT_EQ(FrameCommand(10000), kCommandWindowList);
  EXPECT_EQ(FrameCommand(10042), kCommandWindowList);
  EXPECT_STREQ(kUnfinishedText, "I have not finished it yet.");
}

}  // namespace
