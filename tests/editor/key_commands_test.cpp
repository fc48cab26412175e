// The key command map on a document and view: the prefixes and their second keys, the case
// commands with their undo records, word moves, bookmarks, go to line, brace matching, the
// continuation backslashes, F1 and the other editor commands.
#include "editor/key_commands.h"
#include "editor/brace_match.h"
#include "editor/word_moves.h"
#include "tests/editor/command_fixture.h"

namespace {

using Texts = std::vector<std::string>;

class KeyCommands : public CommandTest {
 protected:
  void Run(int id) { RunEditorCommand(&view, id); }
};

TEST_F(KeyCommands, PrefixesShowTheirRemindersAndEndAfterTheNextCommand) {
  SetText({"abc"});
  Run(kCmdPrefixO);
  EXPECT_EQ(PendingPrefix, kPrefixCtrlO);
  Run(kCmdPrefixK);  // Ctrl+O Ctrl+K: line blocks; the prefix commands never end a prefix
  Run(kCmdPrefixQ);
  EXPECT_EQ(PendingPrefix, kPrefixCtrlQ);
  Run(kCmdTextEnd);
  EXPECT_EQ(PendingPrefix, kPrefixNone);
  EXPECT_EQ(status, (Texts{"2:^O ... O:Change Case, C:Column Block, K:Line Block, F:Fill Char",
                           "2:^Q ... A:Replace, F:Find", "2:"}));
  Run(kCmdPrefixK);
  EXPECT_EQ(status.back(), "2:^K ... E:Lowcase, F:Uppercase, S:Save");
  // A modifier key alone keeps the prefix; a key that is not one of its letters ends it.
  EXPECT_FALSE(PrefixKeyDown(&view, kKeyControl));
  EXPECT_EQ(PendingPrefix, kPrefixCtrlK);
  EXPECT_FALSE(PrefixKeyDown(&view, 'X'));
  EXPECT_EQ(PendingPrefix, kPrefixNone);
  EXPECT_FALSE(PrefixKeyTaken);
  EXPECT_EQ(Lines(document), (Texts{"abc"}));
}

TEST_F(KeyCommands, CtrlKCtrlFUpperCasesWhileCtrlFAloneOpensTheFindDialog) {
  SetText({"x = my_word + 1;"});
  Caret(6, 0);
  Run(kCmdPrefixK);
  Run(kCmdFind);
  EXPECT_EQ(Lines(document), (Texts{"x = MY_WORD + 1;"}));
  EXPECT_TRUE(dialogs.empty());
  EXPECT_EQ(document->modified, 1);
  Run(kCmdFind);
  EXPECT_EQ(dialogs, (std::vector<int>{0}));
  EXPECT_EQ(proposals, (Texts{"MY_WORD"}));
  // Ctrl+K E through the key-down handler, then one Ctrl+Z each.
  Run(kCmdPrefixK);
  EXPECT_TRUE(PrefixKeyDown(&view, 'E'));
  EXPECT_TRUE(PrefixKeyTaken);
  EXPECT_EQ(Lines(document), (Texts{"x = my_word + 1;"}));
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document), (Texts{"x = MY_WORD + 1;"}));
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document), (Texts{"x = my_word + 1;"}));
  EXPECT_EQ(document->modified, 0);
  Caret(3, 0);  // on a blank between two separators: no word
  Run(kCmdPrefixK);
  Run(kCmdFind);
  EXPECT_EQ(UndoCount(), 0);
}

TEST_F(KeyCommands, CtrlOCtrlCSwitchesToColumnBlocksAndCopiesNothing) {
  SetText({"abc", "def"});
  Select(0, 0, 2, 1);
  Run(kCmdPrefixO);
  Run(kCmdCopy);
  EXPECT_EQ(view.blockMode, 1);
  EXPECT_TRUE(clipboard.empty());
  Run(kCmdCopy);
  EXPECT_EQ(Utf8(clipboard), "ab\r\nde");
  Run(kCmdPrefixO);
  Run(kCmdPrefixK);
  EXPECT_EQ(view.blockMode, 0);
}

TEST_F(KeyCommands, CtrlQCtrlAReplacesWhileCtrlAAloneSelectsAll) {
  SetText({"one", "two"});
  Run(kCmdSelectAll);
  EXPECT_EQ(NormalisedSelection(&view).endColumn, 3);
  EXPECT_EQ(NormalisedSelection(&view).endLine, 1);
  EXPECT_TRUE(dialogs.empty());
  Caret(0, 0);
  Run(kCmdPrefixQ);
  Run(kCmdSelectAll);
  EXPECT_EQ(dialogs, (std::vector<int>{1}));
  EXPECT_FALSE(HasSelection(&view));
  Run(kCmdPrefixQ);
  EXPECT_TRUE(PrefixKeyDown(&view, 'F'));
  EXPECT_EQ(dialogs, (std::vector<int>{1, 0}));
}

TEST_F(KeyCommands, GoToLineAtTheEnds) {
  lineAnswer = 5;
  Run(kCmdGoToLine);
  EXPECT_EQ(lineQuestions, 0);  // an empty document does not even ask
  SetText({"a", "b", "c"});
  Caret(1, 0);
  Run(kCmdGoToLine);
  EXPECT_EQ(view.caretLine, 2);  // beyond the end: the last line
  EXPECT_EQ(view.caretColumn, 0);
  lineAnswer = 2;
  Run(kCmdGoToLine);
  EXPECT_EQ(view.caretLine, 1);
  lineAnswer = kCancel;
  Run(kCmdGoToLine);
  EXPECT_EQ(view.caretLine, 1);
  Run(kCmdUndo);  // the jumps are caret marks
  EXPECT_EQ(view.caretLine, 0);
  EXPECT_EQ(view.caretColumn, 1);
}

TEST_F(KeyCommands, CharacterCaseFlipsLettersAndARunUndoesAtOnce) {
  SetText({"aB1c"});
  Caret(0, 0);
  Run(kCmdPrefixO);
  Run(kCmdPrefixO);
  Run(kCmdPrefixO);  // Ctrl+O stays pending: each further Ctrl+O flips the next one
  Run(kCmdPrefixO);
  EXPECT_TRUE(PrefixKeyDown(&view, 'O'));
  EXPECT_EQ(Lines(document), (Texts{"Ab1C"}));
  EXPECT_EQ(view.caretColumn, 4);
  EXPECT_EQ(UndoCount(), 1);
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document), (Texts{"aB1c"}));
  EXPECT_EQ(view.caretColumn, 0);
  // A change somewhere else starts a record of its own.
  Caret(3, 0);
  RunEditorCommand(&view, kCmdPrefixO);
  RunEditorCommand(&view, kCmdPrefixO);
  Caret(0, 0);
  RunEditorCommand(&view, kCmdPrefixO);
  EXPECT_EQ(Lines(document), (Texts{"AB1C"}));
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document), (Texts{"aB1C"}));
}

TEST_F(KeyCommands, WordMovesAndDeletingTheWordLeft) {
  SetText({"  foo(bar_1, 한글);", "", "x"});
  Caret(0, 0);
  std::vector<int> stops;
  for (int i = 0; i < 9; ++i) {
    Run(kCmdWordRight);
    stops.push_back(view.caretLine * 100 + view.caretColumn);
  }
  EXPECT_EQ(stops, (std::vector<int>{2, 5, 6, 11, 13, 17, 19, 100, 200}));
  Run(kCmdWordRight);  // the end of a line is a stop too, and the end of the text the last
  Run(kCmdWordRight);
  EXPECT_EQ(view.caretLine * 100 + view.caretColumn, 201);
  stops.clear();
  for (int i = 0; i < 4; ++i) {
    Run(kCmdWordLeft);
    stops.push_back(view.caretLine * 100 + view.caretColumn);
  }
  EXPECT_EQ(stops, (std::vector<int>{200, 100, 17, 13}));  // ");" is one run

  Caret(11, 0);  // behind "bar_1"
  Run(kCmdDeleteWordLeft);
  EXPECT_EQ(Lines(document)[0], "  foo(, 한글);");
  EXPECT_EQ(view.caretColumn, 6);
  Caret(0, 2);  // at column 0: the line end goes and the word on the line above
  Run(kCmdDeleteWordLeft);
  Run(kCmdDeleteWordLeft);
  EXPECT_EQ(Lines(document), (Texts{"  foo(, 한글x"}));
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document), (Texts{"  foo(, 한글);", "", "x"}));
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document)[0], "  foo(bar_1, 한글);");
}

TEST_F(KeyCommands, BookmarksAreSetAndJumpedTo) {
  SetText({"한글 text", "second"});
  Caret(5, 0);
  Run(kCmdSetBookmark1 + 2);
  EXPECT_EQ(document->bookmarks[2].index, 3);  // a unit index, not the column
  EXPECT_EQ(document->bookmarks[2].line, 0);
  EXPECT_EQ(status.back(), "2:Bookmark: 3");
  Select(0, 1, 3, 1);
  Run(kCmdJumpBookmark1 + 2);
  EXPECT_EQ(view.caretColumn, 5);
  EXPECT_EQ(view.caretLine, 0);
  EXPECT_FALSE(HasSelection(&view));
  Run(kCmdJumpBookmark1);  // unset: nothing
  EXPECT_EQ(view.caretColumn, 5);
  Run(kCmdUndo);
  EXPECT_EQ(view.caretLine, 1);
}

TEST_F(KeyCommands, BraceMatchingNestsCrossesLinesAndSkipsLiteralsAndComments) {
  SetText({"f(a[i], \")\", ')', g(b)) {", "  /* } ( */ x = {1, 2};  // }", "}"});
  Caret(1, 0);
  Run(kCmdMatchBrace);
  EXPECT_EQ(view.caretColumn, 22);
  EXPECT_EQ(view.caretLine, 0);
  Run(kCmdMatchBrace);
  EXPECT_EQ(view.caretColumn, 1);
  Caret(24, 0);
  Run(kCmdMatchBrace);
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_EQ(view.caretColumn, 0);
  Run(kCmdMatchBrace);
  EXPECT_EQ(view.caretLine, 0);
  EXPECT_EQ(view.caretColumn, 24);
  int line = -1, index = -1;
  EXPECT_FALSE(FindBracePartner(document, 0, 9, &line, &index));  // inside a literal
  EXPECT_FALSE(FindBracePartner(document, 1, 5, &line, &index));  // inside a comment
  EXPECT_FALSE(FindBracePartner(document, 0, 0, &line, &index));  // not a bracket
  ASSERT_TRUE(FindBracePartner(document, 1, 21, &line, &index));
  EXPECT_EQ(index, 16);
  SetText({"(()"});
  EXPECT_FALSE(FindBracePartner(document, 0, 0, &line, &index));
  ASSERT_TRUE(FindBracePartner(document, 0, 2, &line, &index));
  EXPECT_EQ(index, 1);
}

TEST_F(KeyCommands, ContinuationBackslashesComeAndGoWithOneUndoEach) {
  SetText({"#define M(x) \\", "  do {   ", "", "  } while (0)", "int y;"});
  Select(0, 1, 0, 4);  // ends in column 0 of line 4: that line stays out
  Run(kCmdContinuation);
  EXPECT_EQ(Lines(document),
            (Texts{"#define M(x) \\", "  do { \\", "\\", "  } while (0) \\", "int y;"}));
  Run(kCmdContinuation);
  EXPECT_EQ(Lines(document), (Texts{"#define M(x) \\", "  do {", "", "  } while (0)", "int y;"}));
  Run(kCmdUndo);
  Run(kCmdUndo);
  EXPECT_EQ(Lines(document),
            (Texts{"#define M(x) \\", "  do { \\", "\\", "  } while (0) \\", "int y;"}));
  UndoAll();
  EXPECT_EQ(Lines(document),
            (Texts{"#define M(x) \\", "  do {   ", "", "  } while (0)", "int y;"}));
  EXPECT_EQ(document->modified, 0);
  Caret(0, 0);
  Run(kCmdContinuation);  // no selection: nothing
  EXPECT_EQ(UndoCount(), 0);
}

TEST_F(KeyCommands, ScrollingByALineKeepsTheCaretInView) {
  SetText(std::vector<std::string>(30, "x"));
  view.pageLines = 10;
  Caret(0, 0);
  Run(kCmdScrollUp);
  EXPECT_EQ(view.firstLine, 0);
  Run(kCmdScrollDown);
  EXPECT_EQ(view.firstLine, 1);
  EXPECT_EQ(view.caretLine, 1);
  view.firstLine = 20;  // lines 20 ... 29 in view: the last is there already
  Run(kCmdScrollDown);
  EXPECT_EQ(view.firstLine, 20);
}

TEST_F(KeyCommands, F1OpensTheFileUnderTheCaretElseLooksTheWordUp) {
  WriteBytes(In("local.h"), "x\n");
  std::filesystem::create_directories(In("inc/sys"));
  WriteBytes(In("inc/sys/types.h"), "x\n");
  snprintf(document->path, sizeof document->path, "%s", In("main.c").c_str());
  includes = "/nonexistent;" + In("inc");
  SetText({"#include \"local.h\"", "#include <sys\\types.h>", "[local.h #12] at", "call(value);",
           "<missing.h>"});
  Caret(12, 0);
  Run(kCmdOpenUnderCaret);
  Caret(14, 1);
  Run(kCmdOpenUnderCaret);
  EXPECT_EQ(opened, (Texts{In("local.h"), In("inc/sys/types.h")}));
  Caret(3, 2);
  Run(kCmdOpenUnderCaret);
  ASSERT_EQ(opened.size(), 3u);
  char section[16];
  snprintf(section, sizeof section, "%08X",
           PathCrc32(In("local.h").c_str(), static_cast<int>(In("local.h").size())));
  char cursor[64];
  ReadStr(section, "Cursor", cursor, sizeof cursor);
  EXPECT_STREQ(cursor, "0 11 0 11");
  Caret(7, 3);
  Run(kCmdOpenUnderCaret);
  Caret(3, 4);
  Run(kCmdOpenUnderCaret);
  EXPECT_EQ(opened.size(), 3u);
  EXPECT_EQ(lookedUp, (Texts{"value", "missing"}));
}

TEST_F(KeyCommands, SavingInAnotherFormatWritesACopyAndLeavesTheDocument) {
  ASSERT_TRUE(Load("int a;\n"));
  document->modified = 1;
  Run(kCmdSaveOtherFormat);  // cancelled
  EXPECT_EQ(formatShown.encoding, 3);
  EXPECT_EQ(formatShown.lfOnly, 1);
  EXPECT_EQ(std::string(formatShown.path), In("file.cpp"));
  formatOk = true;
  formatAnswer = {4, 0, 0, 1, {}};
  snprintf(formatAnswer.path, sizeof formatAnswer.path, "%s", In("copy.txt").c_str());
  Run(kCmdSaveOtherFormat);
  EXPECT_EQ(ReadBytes(In("copy.txt")), std::string("\xFF\xFEi\0n\0t\0 \0a\0;\0\r\0\n\0", 18));
  EXPECT_EQ(std::string(document->path), In("file.cpp"));
  EXPECT_EQ(document->encoding, 3);
  EXPECT_EQ(document->hasBom, 0);
  EXPECT_EQ(document->modified, 1);
  // An existing file is overwritten only on Yes.
  formatAnswer.encoding = 3;
  answers = {kIdNo};
  Run(kCmdSaveOtherFormat);
  EXPECT_EQ(messages.back(),
            "'" + Shown(In("copy.txt")) + "' 파일이 이미 있습니다.\n\n덮어 쓸까요?");
  EXPECT_EQ(ReadBytes(In("copy.txt")).size(), 18u);
  answers = {kIdYes};
  Run(kCmdSaveOtherFormat);
  EXPECT_EQ(ReadBytes(In("copy.txt")), "\xEF\xBB\xBFint a;\r\n");
  // The chosen encoding is asked about what it cannot hold; Yes writes the copy as UTF-8 and
  // leaves the document's own encoding alone.
  SetText({"a \u00e9"});
  formatAnswer.encoding = 1;
  answers = {kIdYes, kIdCancel};
  Run(kCmdSaveOtherFormat);
  EXPECT_NE(
      messages.back().find("JOHAP(으)로 저장할 수 없는 문자가 1개 있습니다. (첫 문자: 1행 3열)"),
      std::string::npos);
  EXPECT_EQ(ReadBytes(In("copy.txt")), "\xEF\xBB\xBFint a;\r\n");
  answers = {kIdYes, kIdYes};
  Run(kCmdSaveOtherFormat);
  EXPECT_EQ(ReadBytes(In("copy.txt")), "a \xC3\xA9\r\n");
  EXPECT_EQ(document->encoding, 3);
}

TEST_F(KeyCommands, CtrlHomeAndEndWithAndWithoutShift) {
  SetText({"ab", "cde"});
  Caret(1, 0);
  Run(kCmdSelectToTextEnd);
  EXPECT_EQ(view.selStartColumn, 1);
  EXPECT_EQ(view.selEndColumn, 3);
  EXPECT_EQ(view.selEndLine, 1);
  Run(kCmdTextStart);
  EXPECT_FALSE(HasSelection(&view));
  EXPECT_EQ(view.caretColumn, 0);
  EXPECT_EQ(view.caretLine, 0);
  Run(kCmdSelectToTextEnd);
  Run(kCmdSelectToTextStart);
  EXPECT_EQ(view.selStartColumn, 0);
  EXPECT_EQ(view.selEndLine, 0);
  Run(kCmdNotFinished);
  EXPECT_EQ(messages, (Texts{"I have not finished it yet."}));
  EXPECT_FALSE(RunEditorCommand(&view, 12345));
}

}  // namespace
