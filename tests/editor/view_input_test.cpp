// The view's keys and mouse in cells: caret moves over wide characters and surrogate pairs, the
// pages, the scroll that keeps the caret in view, clicks, drags, double clicks and what each line
// shows selected.
#include "editor/view_input.h"

#include "editor/view_commands.h"
#include "tests/editor/command_fixture.h"

namespace {

using Texts = std::vector<std::string>;

class ViewInput : public CommandTest {
 protected:
  void SetUp() override {
    CommandTest::SetUp();
    SetViewPage(&view, 10, 20);
  }
  // Presses `key` from (column, line) and returns where the caret went.
  std::pair<int, int> Press(ViewKey key, int column, int line) {
    Caret(column, line);
    ViewKeyMove(&view, key, false);
    return {view.caretColumn, view.caretLine};
  }
};

// "a", a Hangul syllable, a character beyond the BMP (two units, two cells), "b".
const char kWide[] =
    "a\xED\x95\x9C\xF0\x9F\x98\x80"
    "b";

TEST_F(ViewInput, LeftAndRightStepOverWideCharactersAndPairsWhole) {
  SetText({kWide, ""});
  struct Case {
    ViewKey key;
    int from, to;
  } cases[] = {
      {kViewRight, 0, 1}, {kViewRight, 1, 3}, {kViewRight, 3, 5}, {kViewRight, 5, 6},
      {kViewRight, 6, 7},  // behind the end every column is a blank cell
      {kViewLeft, 7, 6},  {kViewLeft, 6, 5},  {kViewLeft, 5, 3},  {kViewLeft, 3, 1},
      {kViewLeft, 1, 0},  {kViewLeft, 0, 0},  {kViewRight, 4, 5},  // from the right half of the
                                                                   // pair (a stale column) to the
                                                                   // next one
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Press(c.key, c.from, 0), std::make_pair(c.to, 0))
        << (c.key == kViewLeft ? "Left" : "Right") << " from " << c.from;
  }
  Caret(kCaretColumnLimit, 1);
  ViewKeyMove(&view, kViewRight, false);
  EXPECT_EQ(view.caretColumn, kCaretColumnLimit);
}

TEST_F(ViewInput, UpDownHomeAndEndKeepTheCaretOffTheRightHalfOfAWideCharacter) {
  SetText({"abcdef", "\xEA\xB0\x80\xEB\x82\x98\xEB\x8B\xA4", kWide, "x"});
  struct Case {
    ViewKey key;
    int column, line, toColumn, toLine;
  } cases[] = {
      {kViewDown, 3, 0, 2, 1},  // column 3 is the right half of the second syllable
      {kViewDown, 4, 1, 3, 2},  // the right half of the pair
      {kViewDown, 5, 2, 5, 3},  // behind the end of "x" the column stays
      {kViewUp, 4, 0, 4, 0},    // nothing above the first line
      {kViewDown, 1, 3, 1, 3},  // nor below the last
      {kViewUp, 1, 1, 1, 0},   {kViewEnd, 0, 1, 6, 1},
      {kViewEnd, 0, 2, 6, 2},  {kViewHome, 5, 2, 0, 2},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Press(c.key, c.column, c.line), std::make_pair(c.toColumn, c.toLine))
        << "key " << c.key << " from " << c.column << "," << c.line;
    EXPECT_FALSE(HasSelection(&view));
  }
  // With Shift the selection stretches from where the caret was and keeps its start.
  Caret(2, 1);
  ViewKeyMove(&view, kViewEnd, true);
  ViewKeyMove(&view, kViewDown, true);
  Selection s = NormalisedSelection(&view);
  EXPECT_EQ((std::vector<int>{s.startColumn, s.startLine, s.endColumn, s.endLine}),
            (std::vector<int>{2, 1, 6, 2}));
  ViewKeyMove(&view, kViewLeft, false);
  EXPECT_FALSE(HasSelection(&view));
}

TEST_F(ViewInput, PageUpAndDownMoveTheViewAndTheCaretByAPage) {
  SetText(Texts(30, "x"));
  Caret(0, 5);
  struct Case {
    ViewKey key;
    int firstLine, caretLine;
  } steps[] = {
      {kViewPageDown, 10, 15}, {kViewPageDown, 20, 25},
      {kViewPageDown, 20, 29},  // the last page stays full; the caret stops at the last line
      {kViewPageUp, 10, 19},   {kViewPageUp, 0, 9},
      {kViewPageUp, 0, 0},
  };
  for (const Case& step : steps) {
    ViewKeyMove(&view, step.key, false);
    EXPECT_EQ(std::make_pair(view.firstLine, view.caretLine),
              std::make_pair(step.firstLine, step.caretLine));
  }
  ViewKeyMove(&view, kViewPageDown, true);
  Selection s = NormalisedSelection(&view);
  EXPECT_EQ(std::make_pair(s.startLine, s.endLine), std::make_pair(0, 10));
  // A document shorter than a page does not scroll.
  SetText({"a", "b", "c"});
  view.firstLine = 0;
  Caret(0, 0);
  ViewKeyMove(&view, kViewPageDown, false);
  EXPECT_EQ(std::make_pair(view.firstLine, view.caretLine), std::make_pair(0, 2));
}

TEST_F(ViewInput, TheViewFollowsTheCaretLeavingTwoCellsOnTheRight) {
  SetText({std::string(100, 'x')});
  Caret(0, 0);
  ViewKeyMove(&view, kViewEnd, false);
  EXPECT_EQ(view.firstColumn, 100 + 2 - 20);
  ViewKeyMove(&view, kViewHome, false);
  EXPECT_EQ(view.firstColumn, 0);
  SetText(Texts(30, "x"));
  Caret(0, 12);
  EXPECT_TRUE(KeepCaretInView(&view));
  EXPECT_EQ(view.firstLine, 3);
  EXPECT_FALSE(KeepCaretInView(&view));
}

TEST_F(ViewInput, ScrollingTakesTheCaretAlongOntoACharacterStart) {
  SetText({kWide, kWide, kWide, kWide});
  SetViewPage(&view, 2, 20);
  Caret(4, 0);
  EXPECT_EQ(ScrollViewTo(&view, 2, false), -2);
  EXPECT_EQ(std::make_pair(view.caretColumn, view.caretLine), std::make_pair(3, 2));
  EXPECT_EQ(ScrollViewTo(&view, 99, false), -1);  // clamped to the last line
  EXPECT_EQ(ScrollViewTo(&view, 3, false), 0);
  // The scroll bar keeps a selection; a key that scrolls drops it.
  Select(0, 3, 2, 3);
  ScrollViewTo(&view, 0, false);
  EXPECT_TRUE(HasSelection(&view));
  view.firstLine = 2;
  Select(0, 3, 2, 3);
  ScrollByLine(&view, -1);
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_FALSE(HasSelection(&view));
}

TEST_F(ViewInput, ClickDragAndDoubleClick) {
  SetText({"int value  = 1;", kWide, "x"});
  view.firstColumn = 0;
  int column, line;
  CellOfView(&view, 1, 4, &column, &line);  // the right half of the pair
  EXPECT_EQ(std::make_pair(column, line), std::make_pair(3, 1));
  CellOfView(&view, 9, 9000, &column, &line);  // below the text, far right
  EXPECT_EQ(std::make_pair(column, line), std::make_pair(kCaretColumnLimit, 2));

  Select(0, 0, 3, 0);
  ViewClick(&view, 6, 0, false);
  EXPECT_FALSE(HasSelection(&view));
  EXPECT_EQ(std::make_pair(view.caretColumn, view.caretLine), std::make_pair(6, 0));
  EXPECT_EQ(status.back(), "2:");
  EXPECT_TRUE(ViewDrag(&view, 3, 1));
  EXPECT_FALSE(ViewDrag(&view, 3, 1));
  Selection s = NormalisedSelection(&view);
  EXPECT_EQ((std::vector<int>{s.startColumn, s.startLine, s.endColumn, s.endLine}),
            (std::vector<int>{6, 0, 3, 1}));
  ViewClick(&view, 12, 0, true);  // Shift: the selection stretches from its start
  s = NormalisedSelection(&view);
  EXPECT_EQ((std::vector<int>{s.startColumn, s.startLine, s.endColumn, s.endLine}),
            (std::vector<int>{6, 0, 12, 0}));

  ViewClick(&view, 6, 0, false);
  EXPECT_TRUE(ViewSelectWord(&view));
  s = NormalisedSelection(&view);
  EXPECT_EQ((std::vector<int>{s.startColumn, s.endColumn, view.caretColumn}),
            (std::vector<int>{4, 9, 9}));
  ViewClick(&view, 10, 0, false);  // between two blanks: no word
  EXPECT_FALSE(ViewSelectWord(&view));

  // A click where a bookmark stands shows it, behind the line end too.
  Caret(20, 0);
  SetBookmark(&view, 3);
  ViewClick(&view, 20, 0, false);
  EXPECT_EQ(status.back(), "2:Bookmark: 3");
  ViewClick(&view, 19, 0, false);
  EXPECT_EQ(status.back(), "2:");
}

TEST_F(ViewInput, ADragHeldBeyondTheEdgeScrollsALineATime) {
  SetText(Texts(30, std::string(40, 'x')));
  ViewClick(&view, 5, 2, false);
  struct Step {
    int row, column;
    bool scrolls;
    int firstLine, firstColumn, caretColumn, caretLine;
  } steps[] = {
      {4, 4, false, 0, 0, 5, 2},   // inside: nothing to do
      {10, 4, true, 1, 0, 4, 10},  // below: a line down, the end on the last visible line
      {12, 4, true, 2, 0, 4, 11}, {-1, 4, true, 1, 0, 4, 1},  // above
      {3, 20, true, 1, 1, 19, 4},  // right: the caret at the last cell takes the view along
      {3, -1, true, 1, 0, 0, 4},   // left
      {3, -1, true, 1, 0, 0, 4},   // at column 0 already
  };
  for (const Step& s : steps) {
    EXPECT_EQ(ViewDragBeyondEdge(&view, s.row, s.column), s.scrolls) << s.row << "," << s.column;
    EXPECT_EQ(
        (std::vector<int>{view.firstLine, view.firstColumn, view.caretColumn, view.caretLine}),
        (std::vector<int>{s.firstLine, s.firstColumn, s.caretColumn, s.caretLine}))
        << s.row << "," << s.column;
  }
  Selection s = NormalisedSelection(&view);
  EXPECT_EQ((std::vector<int>{s.startColumn, s.startLine, s.endColumn, s.endLine}),
            (std::vector<int>{5, 2, 0, 4}));  // from the click to the pointer
  // At the end of the text the last page stays full.
  view.firstLine = 20;
  for (int n = 0; n < 5; ++n)
    ViewDragBeyondEdge(&view, 10, 0);
  EXPECT_EQ(std::make_pair(view.firstLine, view.caretLine), std::make_pair(20, 29));
}

TEST_F(ViewInput, SelectedColumnsOfEachLine) {
  SetText({"abc", "", "abcdef", "xy"});
  struct Case {
    int mode, c1, l1, c2, l2, line;
    bool selected;
    int from, to;
  } cases[] = {
      {0, 1, 0, 2, 2, 0, true, 1, 4},   // the line end shows as one more cell
      {0, 1, 0, 2, 2, 1, true, 0, 1},   // an empty line: its line end alone
      {0, 1, 0, 2, 2, 2, true, 0, 2},   // the last line up to the caret
      {0, 2, 2, 1, 0, 0, true, 1, 4},   // selected upwards: the same
      {0, 1, 0, 2, 2, 3, false, 0, 0},  // below
      {0, 5, 0, 2, 0, 0, true, 2, 5},   // behind the end on one line
      {1, 4, 0, 1, 3, 1, true, 1, 4},   // a column block: its rectangle on every line
      {1, 4, 0, 4, 3, 2, false, 0, 0},  // of no width
  };
  for (const Case& c : cases) {
    Select(c.c1, c.l1, c.c2, c.l2, c.mode);
    int from = 0, to = 0;
    EXPECT_EQ(SelectedColumns(&view, c.line, &from, &to), c.selected) << "line " << c.line;
    if (c.selected) EXPECT_EQ(std::make_pair(from, to), std::make_pair(c.from, c.to));
  }
}

}  // namespace

namespace {

TEST(ViewWheel, FineTurnsAddUpToWholeLinesInProportion) {
  struct Case {
    std::vector<int> deltas;
    int perNotch;
    std::vector<int> lines;
  } cases[] = {
      {{120, 240, -120}, 3, {3, 6, -3}},       // whole notches as before
      {{40, 40, 40}, 3, {1, 1, 1}},            // a third of a notch is a line
      {{30, 30, 30, 30}, 3, {0, 1, 1, 1}},     // the rest is kept: 0.75, 1.5, 2.25, 3
      {{30, 30, -30, -30}, 3, {0, 1, 0, -1}},  // turning back drops the old rest
      {{-10, -10, -10, -10, -10, -10}, 1, {0, 0, 0, 0, 0, 0}},
      {{60, 60}, 1, {0, 1}},
  };
  for (const Case& c : cases) {
    int remainder = 0;
    std::vector<int> lines;
    for (int delta : c.deltas)
      lines.push_back(WheelLines(delta, c.perNotch, &remainder));
    EXPECT_EQ(lines, c.lines) << "first delta " << c.deltas[0];
  }
}

TEST_F(ViewInput, ANewSizeShowsColumnZeroWhenTheCaretFits) {
  SetText({std::string(60, 'x')});
  struct Case {
    int columns, firstColumn, caretColumn, shownFirst;
  } cases[] = {
      {20, 14, 19, 14},  // still narrow: the caret at 19 does not fit in 20 columns from 0
      {40, 14, 15, 0},   // widened: from column 0
      {40, 5, 50, 12},   // the caret does not fit: it stays in view, two cells from the right
      {40, 0, 10, 0},
  };
  for (const Case& c : cases) {
    SetViewPage(&view, 10, c.columns);
    view.firstColumn = c.firstColumn;
    Caret(c.caretColumn, 0);
    FitViewToWidth(&view);
    EXPECT_EQ(view.firstColumn, c.shownFirst) << c.columns << " columns, caret " << c.caretColumn;
  }
  // The horizontal bar spans the widest line, the caret and what is in view.
  EXPECT_EQ(WidestLine(document), 60);
  SetText({"ab", kWide, ""});
  EXPECT_EQ(WidestLine(document), 6);
  Caret(30, 2);
  view.firstColumn = 0;
  EXPECT_EQ(ViewColumnExtent(&view, 6), 32);
  view.firstColumn = 25;
  EXPECT_EQ(ViewColumnExtent(&view, 6), 65);
}

}  // namespace
