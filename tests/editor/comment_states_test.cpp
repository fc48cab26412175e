// Comment states over a document: computed after a load, refreshed after an edit.
#include "editor/comment_states.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "editor/colour_runs.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editing.h"
#include "editor/editor_view.h"
#include "editor/text_edit.h"
#include "editor/undo.h"
#include "tests/support/klib_test.h"

namespace {

class CommentStates : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    document_ = NewDocument();
    ASSERT_NE(document_, nullptr);
  }
  void TearDown() override {
    FreeDocument(document_);
    KLibTest::TearDown();
  }
  void Lines(const std::vector<std::u16string>& lines) {
    for (const std::u16string& line : lines)
      ASSERT_GE(AppendUtf16Line(document_, line.data(), static_cast<int>(line.size())), 0);
  }
  std::string States() {
    EnsureCommentStates(document_, document_->lineCount - 1);
    std::string states;
    for (int i = 0; i < document_->lineCount; ++i) {
      const LineRecord* line = document_->lines[i];
      states += line ? static_cast<char>('0' + line->commentState) : '-';
    }
    return states;
  }
  EditDocument* document_ = nullptr;
};

TEST_F(CommentStates, ComputedInOrderAcrossEmptyLines) {
  Lines({u"int a; /* open", u"", u"still", u"close */ x", u"\"/*\" y", u"// /*"});
  ComputeCommentStates(document_);
  EXPECT_EQ(States(), "1-1000");
  EXPECT_FALSE(LineStartsInComment(document_, 0));
  EXPECT_TRUE(LineStartsInComment(document_, 1));
  EXPECT_TRUE(LineStartsInComment(document_, 2));  // through the empty line
  EXPECT_FALSE(LineStartsInComment(document_, 4));
}

TEST_F(CommentStates, RefreshStopsWhereNothingChanges) {
  Lines({u"a", u"b", u"c */", u"d", u"e"});
  ComputeCommentStates(document_);
  EXPECT_EQ(States(), "00000");
  // Opening a comment on line 0 carries it down to the line that closes it.
  LineRecord* opened = MakeLine(u"a /*", 4);
  SetLine(document_, 0, opened);
  RefreshCommentStates(document_, 0);
  EXPECT_EQ(States(), "11000");
  // A stale state below the stop is not touched: the refresh ended at line 2.
  document_->lines[4]->commentState = 1;
  RefreshCommentStates(document_, 1);
  EXPECT_EQ(States(), "11001");
}

TEST_F(CommentStates, EditsKeepTheStatesUpToDate) {
  Lines({u"int a;", u"b", u"", u"c */ d", u"e"});
  ComputeCommentStates(document_);
  EXPECT_EQ(States(), "00-00");
  EditorView view = {};
  view.document = document_;
  // Typing an opening comment in the first line carries the state down to the closing line.
  TypeCharacter(&view, u'/');
  TypeCharacter(&view, u'*');
  EXPECT_EQ(States(), "11-00");
  // Undoing the typing takes it back.
  Undo(&view);
  EXPECT_EQ(States(), "00-00");
}

// Random edits of every kind, with partial paints between them (some of preprocessor lines,
// whose colour scan may end otherwise), must leave the states a full pass gives once the whole
// document is brought up to date after a full repaint.
TEST_F(CommentStates, LazyStatesMatchAFullPass) {
  const char16_t* pieces[] = {u"/*", u"*/", u"//", u"\"", u"'", u"x", u" ", u"#define A \"/*\""};
  std::mt19937 random(21);
  auto text = [&] {
    std::u16string line;
    for (int n = static_cast<int>(random() % 5); n > 0; --n)
      line += pieces[random() % 8];
    return line;
  };
  ColourRuns* runs = NewColourRuns();
  ASSERT_NE(runs, nullptr);
  for (int i = 0; i < 60; ++i) {
    std::u16string line = text();
    AppendUtf16Line(document_, line.data(), static_cast<int>(line.size()));
  }
  for (int round = 0; round < 3000; ++round) {
    int count = document_->lineCount;
    int at = count ? static_cast<int>(random() % count) : 0;
    std::u16string line = text();
    switch (random() % 6) {
      case 0:
        ReplaceUnits(document_, at, 0, 0, line.data(), static_cast<int>(line.size()));
        break;
      case 1:
        SetLine(document_, at, MakeLine(line.data(), static_cast<int>(line.size())));
        break;
      case 2:
        if (InsertLineSlots(document_, at, 1 + static_cast<int>(random() % 3)))
          SetLine(document_, at, MakeLine(line.data(), static_cast<int>(line.size())));
        break;
      case 3:
        RemoveLines(document_, at, 1 + static_cast<int>(random() % 3));
        break;
      case 4:  // a paint of a few lines
        for (int i = at; i < at + 4 && i < count; ++i)
          ColourDocumentLine(document_, i, &runs);
        break;
      default:
        ForgetPaintedStates(document_);
        EnsureCommentStates(document_, at);
        break;
    }
    if (round % 50 != 49) continue;
    ForgetPaintedStates(document_);
    std::string lazy = States();
    ComputeCommentStates(document_);
    ASSERT_EQ(lazy, States()) << "round " << round;
  }
  FreeColourRuns(runs);
}

}  // namespace
