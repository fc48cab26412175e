// The editing keys, blocks, the clipboard and the undo and redo lists.
#include <chrono>

#include "editor/editing.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "tests/editor/editor_fixture.h"

namespace {

using Texts = std::vector<std::string>;

class Editing : public EditorTest {
 protected:
  void Type(const std::string& text) {
    for (char16_t unit : Utf16(text))
      TypeCharacter(&view, unit);
  }
};

// A run of typing is one record; typing elsewhere starts the next.
TEST_F(Editing, TypedCharactersMergeIntoOneRecordUntilTheCaretJumps) {
  SetText({"x"});
  Caret(1, 0);
  Type("abc");
  EXPECT_EQ(Lines(document), (Texts{"xabc"}));
  EXPECT_EQ(UndoCount(), 1);
  EXPECT_EQ(document->modified, 1);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"x"}));
  EXPECT_EQ(view.caretColumn, 1);
  EXPECT_EQ(document->modified, 0);
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"xabc"}));
  EXPECT_EQ(view.caretColumn, 4);

  Caret(0, 0);
  Type("1");
  Caret(3, 0);
  Type("2");
  EXPECT_EQ(Lines(document), (Texts{"1xa2bc"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"1xabc"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"xabc"}));
}

TEST_F(Editing, ThreeBackspacesComeBackInTheirOrder) {
  SetText({"abcdef"});
  Caret(5, 0);
  KeyBackspace(&view);
  KeyBackspace(&view);
  KeyBackspace(&view);
  EXPECT_EQ(Lines(document), (Texts{"abf"}));
  EXPECT_EQ(view.caretColumn, 2);
  EXPECT_EQ(UndoCount(), 1);
  EXPECT_EQ(Utf8(std::u16string(document->undoList->text, 3)), "cde");
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"abcdef"}));
  EXPECT_EQ(view.caretColumn, 5);
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"abf"}));
}

TEST_F(Editing, BackspaceAndDeleteJoinLinesAndRepaintByWhatTheyRemoved) {
  SetText({"ab", "c/d"});
  Caret(0, 1);
  KeyBackspace(&view);
  EXPECT_EQ(Lines(document), (Texts{"abc/d"}));
  EXPECT_EQ(view.caretColumn, 2);
  EXPECT_EQ(view.caretLine, 0);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"ab", "c/d"}));

  Caret(1, 1);
  fullRepaints = 0;
  repaintedLines.clear();
  KeyDelete(&view);  // removes '/': a comment may have changed
  EXPECT_EQ(fullRepaints, 1);
  KeyDelete(&view);  // removes 'd': only the line
  EXPECT_EQ(fullRepaints, 1);
  EXPECT_EQ(repaintedLines, (std::vector<int>{1}));
  EXPECT_EQ(Lines(document), (Texts{"ab", "c"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"ab", "c/d"}));

  // Delete behind the end pads up to the caret and joins.
  Caret(4, 0);
  KeyDelete(&view);
  EXPECT_EQ(Lines(document), (Texts{"ab  c/d"}));
  Undo(&view);
  EXPECT_EQ(Lines(document)[1], "c/d");
  // Nothing at the very start.
  Caret(0, 0);
  KeyBackspace(&view);
  EXPECT_EQ(Lines(document)[0].substr(0, 2), "ab");
}

TEST_F(Editing, BackspaceStepsOverAWideCharacterAtOnce) {
  SetText({"a가b"});
  Caret(3, 0);
  KeyBackspace(&view);
  EXPECT_EQ(Lines(document), (Texts{"ab"}));
  EXPECT_EQ(view.caretColumn, 1);
}

// A character beyond the Basic Multilingual Plane is a surrogate pair: typed unit by unit it
// lands as one two-column character, and Backspace, Delete and their undo take both units.
TEST_F(Editing, ASurrogatePairIsOneCharacterToTypeAndRemove) {
  SetText({"ab"});
  Caret(1, 0);
  Type("\xF0\x9F\x98\x80");
  EXPECT_EQ(Lines(document), (Texts{"a\xF0\x9F\x98\x80"
                                    "b"}));
  EXPECT_EQ(view.caretColumn, 3);
  KeyBackspace(&view);
  EXPECT_EQ(Lines(document), (Texts{"ab"}));
  EXPECT_EQ(view.caretColumn, 1);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a\xF0\x9F\x98\x80"
                                    "b"}));
  EXPECT_EQ(view.caretColumn, 3);
  Caret(1, 0);
  KeyDelete(&view);
  KeyDelete(&view);
  EXPECT_EQ(Lines(document), (Texts{"a"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a\xF0\x9F\x98\x80"
                                    "b"}));
  // From the right half of the pair too.
  Caret(2, 0);
  KeyDelete(&view);
  EXPECT_EQ(Lines(document), (Texts{"ab"}));
}

TEST_F(Editing, OverwriteTypingReplacesWholeCharactersAndUndoGivesThemBack) {
  // "a", a Hangul syllable, a pair, "b".
  const std::string line =
      "a\xED\x95\x9C\xF0\x9F\x98\x80"
      "b";
  struct Case {
    int column;
    std::string typed, result;
    int caret;
  } cases[] = {
      {0, "x",
       "x\xED\x95\x9C\xF0\x9F\x98\x80"
       "b",
       1},
      {1, "xy", "axyb", 3},  // the syllable, then the pair, one each
      {1, "xyz", "axyz", 4},
      {3, "\xF0\x9F\x98\x81",
       "a\xED\x95\x9C\xF0\x9F\x98\x81"
       "b",
       5},  // pair for pair
      {5, "xyz",
       "a\xED\x95\x9C\xF0\x9F\x98\x80"
       "xyz",
       8},  // behind the end: inserted
      {4, "x",
       "a\xED\x95\x9C"
       "xb",
       4},  // from the right half of the pair: the pair goes
  };
  for (const Case& c : cases) {
    SetText({line});
    FreeUndoList(document->undoList);
    FreeUndoList(document->redoList);
    document->undoList = document->redoList = nullptr;
    view.overwrite = 1;
    Caret(c.column, 0);
    Type(c.typed);
    EXPECT_EQ(Lines(document), (Texts{c.result})) << c.column << " " << c.typed;
    EXPECT_EQ(view.caretColumn, c.caret) << c.column << " " << c.typed;
    while (document->undoList)
      Undo(&view);
    EXPECT_EQ(Lines(document), (Texts{line})) << c.column << " " << c.typed;
    while (document->redoList)
      Redo(&view);
    EXPECT_EQ(Lines(document), (Texts{c.result})) << c.column << " " << c.typed;
  }
  // A selection is replaced as in insert mode, nothing more.
  SetText({"abcd"});
  Select(1, 0, 3, 0);
  Type("x");
  EXPECT_EQ(Lines(document), (Texts{"axd"}));
}

TEST_F(Editing, EnterIndentsLikeTheLineAboveAndUndoesAsOne) {
  SetText({"    if (x) y;"});
  Caret(11, 0);
  KeyEnter(&view);
  EXPECT_EQ(Lines(document), (Texts{"    if (x) ", "    y;"}));
  EXPECT_EQ(view.caretColumn, 4);
  EXPECT_EQ(view.caretLine, 1);
  Type("z");  // a line break ends the typing record: undo goes back a line at a time
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"    if (x) ", "    y;"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"    if (x) y;"}));
  Redo(&view);
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"    if (x) ", "    zy;"}));

  // At column 0 an empty line goes in above and the caret goes down with its line.
  SetText({"  a"});
  FreeUndoList(document->undoList);
  document->undoList = nullptr;
  Caret(0, 0);
  KeyEnter(&view);
  EXPECT_EQ(Lines(document), (Texts{"", "  a"}));
  EXPECT_EQ(view.caretLine, 1);
  EXPECT_EQ(view.caretColumn, 2);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"  a"}));
}

TEST_F(Editing, UndoingEverythingLeavesTheDocumentCleanDespiteCaretMarks) {
  ASSERT_TRUE(Load("one\n"));
  PushUndoMark(&view, kUndoCaret, 0, 0);
  Caret(3, 0);
  Type("!");
  PushUndoMark(&view, kUndoCaret, 3, 0);
  PushUndoMark(&view, kUndoCaret, 0, 0);
  EXPECT_EQ(document->modified, 1);
  Undo(&view);  // the caret mark
  EXPECT_EQ(document->modified, 1);
  Undo(&view);  // the typing
  EXPECT_EQ(document->modified, 0);
  EXPECT_EQ(Lines(document), (Texts{"one"}));
}

TEST_F(Editing, ModifiedFollowsTheTextThatWasSaved) {
  ASSERT_TRUE(Load("one\n"));
  Caret(3, 0);
  Type("ab");
  Save();
  EXPECT_EQ(document->modified, 0);
  Type("c");  // merges into the saved record, which now leads elsewhere
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"one"}));
  EXPECT_EQ(document->modified, 1);  // older than the file: closing must ask
  Redo(&view);
  EXPECT_EQ(document->modified, 1);

  Load("one\n");
  Caret(3, 0);
  Type("x");
  KeyEnter(&view);
  Save();
  Type("y");
  Undo(&view);
  EXPECT_EQ(document->modified, 0);  // back at the saved text
  Undo(&view);
  EXPECT_EQ(document->modified, 1);
  Redo(&view);
  EXPECT_EQ(document->modified, 0);
}

TEST_F(Editing, ANewEditAfterUndoEmptiesTheRedoList) {
  SetText({""});
  Type("ab");
  Undo(&view);
  ASSERT_NE(document->redoList, nullptr);
  Type("c");
  EXPECT_EQ(document->redoList, nullptr);
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"c"}));
}

TEST_F(Editing, TabGoesToTheNextFourColumnStopWhateverTheTabSize) {
  SetText({"abcde"});
  document->tabSize = 8;
  Caret(5, 0);
  KeyTab(&view, false);
  EXPECT_EQ(Lines(document), (Texts{"abcde   "}));
  EXPECT_EQ(view.caretColumn, 8);
  // A quick second Tab at an 8-column stop is swallowed; a slower one is not.
  tick += 100;
  KeyTab(&view, false);
  EXPECT_EQ(view.caretColumn, 8);
  tick += 500;
  KeyTab(&view, false);
  EXPECT_EQ(view.caretColumn, 12);
  tick += 100;
  KeyTab(&view, false);  // column 12 is no 8-column stop
  EXPECT_EQ(view.caretColumn, 16);
}

TEST_F(Editing, TabWithASelectionShiftsTheBlockAndUndoShiftsBack) {
  SetText({"a", "", "  b", "c"});
  Select(0, 0, 0, 3);
  KeyTab(&view, false);
  EXPECT_EQ(Lines(document), (Texts{"    a", "", "      b", "c"}));
  KeyTab(&view, true);
  KeyTab(&view, true);
  EXPECT_EQ(Lines(document), (Texts{"a", "", "b", "c"}));
  Undo(&view);  // the three shifts of the same lines merged; "  b" gave up only two blanks
  EXPECT_EQ(Lines(document), (Texts{"a", "", "  b", "c"}));
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a", "", "b", "c"}));

  // Shifts of other lines are records of their own, whichever comes first.
  Select(0, 2, 0, 4);
  ShiftBlock(&view, 4);
  Select(0, 0, 0, 1);
  ShiftBlock(&view, -4);
  ShiftBlock(&view, 4);
  EXPECT_EQ(Lines(document), (Texts{"    a", "", "    b", "    c"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a", "", "    b", "    c"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a", "", "b", "c"}));
}

TEST_F(Editing, ColumnBlockCopyPadsShortLinesAndJoinsWithCrLf) {
  SetText({"abcdef", "ab", "abcd"});
  Select(1, 0, 4, 2, 1);
  ASSERT_TRUE(CopySelection(&view));
  EXPECT_EQ(Utf8(clipboard), "bcd\r\nb  \r\nbcd");
  Select(4, 0, 1, 1, 0);
  ASSERT_TRUE(CopySelection(&view));
  EXPECT_EQ(Utf8(clipboard), "ef\r\na");
}

TEST_F(Editing, CutAndPasteRoundTripBothBlockModes) {
  SetText({"abcdef", "ghijkl"});
  Select(2, 0, 4, 1, 1);
  ASSERT_TRUE(CutSelection(&view));
  EXPECT_EQ(Lines(document), (Texts{"abef", "ghkl"}));
  Caret(0, 0);
  view.blockMode = 1;
  ASSERT_TRUE(Paste(&view));
  EXPECT_EQ(Lines(document), (Texts{"cdabef", "ijghkl"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"abef", "ghkl"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"abcdef", "ghijkl"}));

  view.blockMode = 0;
  clipboard = u"x\ty\r\nz\tw";
  Caret(1, 0);
  document->tabSize = 4;
  ASSERT_TRUE(Paste(&view));
  // The first line's tab counts from the caret column, the next from column 0.
  EXPECT_EQ(Lines(document), (Texts{"ax  y", "z   wbcdef", "ghijkl"}));
  EXPECT_EQ(view.caretLine, 1);
  EXPECT_EQ(view.caretColumn, 5);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"abcdef", "ghijkl"}));
}

TEST_F(Editing, DeletingASelectionIsOneRecordThatRestoresTheSelection) {
  SetText({"one", "two", "three"});
  Select(1, 0, 2, 2);
  Type("X");
  EXPECT_EQ(Lines(document), (Texts{"oXree"}));
  Undo(&view);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"one", "two", "three"}));
  EXPECT_EQ(view.selStartColumn, 1);
  EXPECT_EQ(view.selEndLine, 2);
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"oree"}));
}

TEST_F(Editing, ColumnFillNeedsAColumnBlockAndUndoesToTheOldText) {
  SetText({"abcd", "a", "abcd"});
  Select(1, 0, 3, 2, 0);
  EXPECT_FALSE(FillColumnBlock(&view, u'*'));
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0], "먼저 컬럼 블럭 선택을 해야 합니다.");
  EXPECT_EQ(Lines(document), (Texts{"abcd", "a", "abcd"}));

  Select(1, 0, 3, 2, 1);
  fillAnswer = u'#';
  ASSERT_TRUE(FillColumnBlock(&view, 0));
  EXPECT_EQ(Lines(document), (Texts{"a##d", "a##", "a##d"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"abcd", "a", "abcd"}));
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a##d", "a##", "a##d"}));
}

TEST_F(Editing, DateAndTimeGoInAsTyped) {
  SetText({"[]"});
  Caret(1, 0);
  ASSERT_TRUE(InsertDateTime(&view));
  EXPECT_EQ(Lines(document), (Texts{"[2024-03-09 07:05]"}));
  EXPECT_EQ(document->modified, 1);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"[]"}));
}

TEST_F(Editing, TypingPastTheLineLimitIsRefusedWithoutChange) {
  std::u16string full(kMaxLineUnits, u'a');
  SetText({Utf8(full)});
  Caret(10, 0);
  Type("b");
  EXPECT_EQ(LineLength(document->lines[0]), kMaxLineUnits);
  EXPECT_EQ(document->undoList, nullptr);
  clipboard = u"xyz";
  EXPECT_FALSE(Paste(&view));
  EXPECT_EQ(LineLength(document->lines[0]), kMaxLineUnits);
  // A paste that breaks the line leaves both halves short enough.
  clipboard = u"x\r\ny";
  EXPECT_TRUE(Paste(&view));
  EXPECT_EQ(document->lineCount, 2);
  Undo(&view);
  EXPECT_EQ(document->lineCount, 1);
  EXPECT_EQ(LineLength(document->lines[0]), kMaxLineUnits);
  // Splitting it is fine.
  KeyEnter(&view);
  EXPECT_EQ(document->lineCount, 2);
}

TEST_F(Editing, CaseChangesMergeIntoOneReplacement) {
  SetText({"abc"});
  const char16_t first[] = {u'a', 0, u'A', 0};
  const char16_t second[] = {u'b', 0, u'B', 0};
  ReplaceUnits(document, 0, 0, 1, u"A", 1);
  PushUndo(&view, kUndoCaseChar, 0, 0, first, 4);
  ReplaceUnits(document, 0, 1, 1, u"B", 1);
  PushUndo(&view, kUndoCaseChar, 1, 0, second, 4);
  EXPECT_EQ(UndoCount(), 1);
  EXPECT_EQ(std::u16string(document->undoList->text, document->undoList->textLength),
            std::u16string(u"ab\0AB\0", 6));
}

TEST_F(Editing, UndoOfAMillionPlaceReplacementIsQuick) {
  constexpr int kLines = 500000;
  ClearLines(document);
  for (int i = 0; i < kLines; ++i)
    AppendUtf16Line(document, u"foo = foo;", 10);
  const char16_t change[] = {u'f', u'o', u'o', 0, u'b', u'a', u'r', u'x', 0};
  // Replace both places on every line, as a replace-all would, recording each.
  for (int i = 0; i < kLines; ++i) {
    ReplaceUnits(document, i, 0, 3, u"barx", 4);
    PushUndo(&view, kUndoReplace, 0, i, change, 9);
    ReplaceUnits(document, i, 7, 3, u"barx", 4);
    PushUndo(&view, kUndoReplace, 7, i, change, 9);
  }
  ASSERT_EQ(UndoCount(), 1);
  ASSERT_EQ(document->undoList->positionCount, 2 * kLines);
  auto start = std::chrono::steady_clock::now();
  Undo(&view);
  auto elapsed = std::chrono::steady_clock::now() - start;
  EXPECT_LT(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count(), 1000);
  EXPECT_EQ(Lines(document)[0], "foo = foo;");
  EXPECT_EQ(Lines(document)[kLines - 1], "foo = foo;");
  Redo(&view);
  EXPECT_EQ(Lines(document)[kLines - 1], "barx = barx;");
}

}  // namespace
