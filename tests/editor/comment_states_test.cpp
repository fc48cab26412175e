// Comment states over a document: computed after a load, refreshed after an edit.
#include "editor/comment_states.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editing.h"
#include "editor/editor_view.h"
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

}  // namespace
