// Find and replace on a document: where a search starts and what a match does to the view and the
// undo list, the proposal, the replace scopes, and undo of a whole run of replacements.
#include <chrono>

#include "editor/find_replace.h"
#include "editor/key_commands.h"
#include "tests/editor/command_fixture.h"

namespace {

using Texts = std::vector<std::string>;

class FindReplace : public CommandTest {
 protected:
  SearchRequest Request(const std::u16string& find, bool caseSensitive = true,
                        bool wholeWord = false) {
    SearchRequest request = {};
    request.direction = 1;
    request.caseSensitive = caseSensitive;
    request.wholeWord = wholeWord;
    SetSearchText(request.findText, find.data(), static_cast<int>(find.size()));
    return request;
  }
  SearchRequest Replace(const std::u16string& find, const std::u16string& by, bool all,
                        bool caseSensitive = true) {
    SearchRequest request = Request(find, caseSensitive);
    request.mode = 1;
    request.replaceAll = all;
    SetSearchText(request.replaceText, by.data(), static_cast<int>(by.size()));
    return request;
  }
  std::string History(int index) {
    char text[1024];
    return ReadHistory(kFindHistory, index, text, sizeof text) ? text : "<none>";
  }
};

TEST_F(FindReplace, AMatchIsSelectedBehindAGroupBoundaryWithTheCaretAtItsEnd) {
  SetText({"int value;", "", "value = 한value;"});
  Caret(2, 0);
  SearchRequest request = Request(u"value");
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.caretLine, 0);
  EXPECT_EQ(view.caretColumn, 9);
  EXPECT_EQ(view.selStartColumn, 4);
  EXPECT_EQ(view.selEndColumn, 9);
  ASSERT_EQ(UndoCount(), 1);
  EXPECT_EQ(document->undoList->kind, kUndoCaret);
  EXPECT_EQ(document->undoList->startColumn, 2);
  EXPECT_EQ(document->undoList->endColumn, 9);
  // The next search begins behind the match; the empty line is passed over; columns count the
  // wide unit twice.
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_EQ(view.caretColumn, 5);
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.selStartColumn, 10);
  EXPECT_EQ(view.caretColumn, 15);
  EXPECT_EQ(UndoCount(), 3);  // each match its own boundary
  EXPECT_TRUE(messages.empty());
  Undo(&view);
  EXPECT_EQ(view.caretColumn, 5);

  // Nothing further: message 86, and caret and selection stay where they were.
  Select(10, 2, 15, 2);
  EXPECT_FALSE(FindNext(&view, &request, false));
  EXPECT_EQ(messages, (Texts{"'value'이 없습니다."}));
  EXPECT_EQ(view.selStartColumn, 10);
  EXPECT_EQ(view.caretColumn, 15);
}

TEST_F(FindReplace, UpwardFindsTheNearestMatchAboveAndF3KeepsTheDirection) {
  SetText({"value value", "", "한value x"});
  Caret(9, 2);
  SearchRequest request = Request(u"value");
  request.direction = 0;
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.selStartLine, 2);
  EXPECT_EQ(view.selStartColumn, 2);
  // The next search starts before the selected match: the second of line 0, then the first.
  ASSERT_TRUE(FindNext(&view, &request, true));
  EXPECT_EQ(view.selStartLine, 0);
  EXPECT_EQ(view.selStartColumn, 6);
  ASSERT_TRUE(FindNext(&view, &request, true));
  EXPECT_EQ(view.selStartColumn, 0);
  EXPECT_FALSE(FindNext(&view, &request, true));
  EXPECT_EQ(view.selStartColumn, 0);
  // From the dialog with origin 1 the search starts at the end of the text.
  request.origin = 1;
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.selStartLine, 2);
}

TEST_F(FindReplace, ReplaceTakesTheSelectedMatchToo) {
  SetText({"one two one"});
  Caret(0, 0);
  SearchRequest find = Request(u"one");
  ASSERT_TRUE(FindNext(&view, &find, false));  // selects the first, caret behind it
  SearchRequest once = Replace(u"one", u"1", false);
  EXPECT_EQ(ReplaceAll(&view, &once), 1);
  EXPECT_EQ(Lines(document), (Texts{"1 two one"}));
}

TEST_F(FindReplace, WholeWordsAndCase) {
  SetText({"abab", "elif", "Xif(x)"});
  SearchRequest request = Request(u"ab", true, true);
  EXPECT_FALSE(FindNext(&view, &request, false));
  request = Request(u"if", true, true);
  EXPECT_FALSE(FindNext(&view, &request, false));  // inside a word both times
  SetText({"abab", "elif", "if(x)"});
  Caret(0, 0);
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_EQ(view.selStartColumn, 0);
  request = Request(u"ELIF", false);
  Caret(0, 0);
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.caretLine, 1);
  request.caseSensitive = 1;
  Caret(0, 0);
  EXPECT_FALSE(FindNext(&view, &request, false));
}

TEST_F(FindReplace, OriginFromTheTopOnlyFromTheDialogAndF3KeepsAHistory) {
  SetText({"key", "x", "key"});
  Caret(1, 1);
  SearchRequest request = Request(u"key");
  request.origin = 1;
  ASSERT_TRUE(FindNext(&view, &request, false));
  EXPECT_EQ(view.caretLine, 0);
  EXPECT_EQ(History(0), "<none>");
  Caret(1, 1);
  ASSERT_TRUE(FindNext(&view, &request, true));  // F3 repeats from the caret
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_EQ(History(0), "key");
}

TEST_F(FindReplace, F3WithoutAPreviousSearchOpensTheDialogWithTheProposal) {
  SetText({"call(alpha_1, 한글)"});
  Caret(7, 0);
  RunEditorCommand(&view, kCmdFindNext);
  EXPECT_EQ(dialogs, (std::vector<int>{0}));
  EXPECT_EQ(proposals, (Texts{"alpha_1"}));
  EXPECT_EQ(view.caretColumn, 7);  // cancelled: nothing searched

  // OK searches, stores the options and the history; F3 then repeats at once.
  dialogAnswer = true;
  findAnswer = u"한글";
  g_searchRequest.caseSensitive = 1;
  Caret(0, 0);
  RunEditorCommand(&view, kCmdFind);
  EXPECT_EQ(view.selStartColumn, 14);
  EXPECT_EQ(ReadInt("FindText", "CaseSen", -1), 0);  // the options as the dialog was opened with
  EXPECT_EQ(History(0), "한글");
  RunEditorCommand(&view, kCmdFindNext);
  EXPECT_EQ(dialogs.size(), 2u);
  EXPECT_EQ(messages, (Texts{"'한글'이 없습니다."}));
}

TEST_F(FindReplace, TheProposalIsTheSelectionElseTheWordElseThePreviousText) {
  SetText({"  alpha beta", "gamma"});
  SearchRequest request = Request(u"old");
  Select(2, 0, 1, 1);  // over a line end: the first line's part
  ProposeFindText(&view, &request);
  EXPECT_EQ(Utf8(request.findText), "alpha beta");
  Caret(12, 0);  // behind a word: still that word
  ProposeFindText(&view, &request);
  EXPECT_EQ(Utf8(request.findText), "beta");
  Caret(0, 0);  // on blanks: the previous text stays
  ProposeFindText(&view, &request);
  EXPECT_EQ(Utf8(request.findText), "beta");
  SetText({std::string(300, 'x')});
  Select(0, 0, 300, 0);
  ProposeFindText(&view, &request);
  EXPECT_EQ(Utf8(request.findText), std::string(259, 'x'));
}

TEST_F(FindReplace, ReplacingAllContinuesBehindTheInsertedTextAndUndoesAtOnce) {
  SetText({"a-a", "", "xa"});
  document->modified = 0;
  SearchRequest request = Replace(u"a", u"aa", true);
  request.origin = 1;
  Caret(0, 2);
  EXPECT_EQ(ReplaceAll(&view, &request), 3);
  EXPECT_EQ(Lines(document), (Texts{"aa-aa", "", "xaa"}));
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_EQ(view.caretColumn, 3);
  EXPECT_EQ(document->modified, 1);
  EXPECT_EQ(UndoCount(), 1);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a-a", "", "xa"}));
  EXPECT_EQ(document->modified, 0);
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"aa-aa", "", "xaa"}));

  // From the caret, once: only the first match behind the caret.
  SearchRequest once = Replace(u"aa", u"b", false);
  Caret(1, 0);
  EXPECT_EQ(ReplaceAll(&view, &once), 1);
  EXPECT_EQ(Lines(document), (Texts{"aa-b", "", "xaa"}));
  EXPECT_EQ(view.caretColumn, 4);
  // A second replacement of other texts is a record of its own.
  EXPECT_EQ(UndoCount(), 2);
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"aa-aa", "", "xaa"}));
  Undo(&view);
  EXPECT_EQ(Lines(document), (Texts{"a-a", "", "xa"}));

  SearchRequest none = Replace(u"zz", u"y", true);
  EXPECT_EQ(ReplaceAll(&view, &none), 0);
  EXPECT_EQ(messages, (Texts{"'zz'이 없습니다."}));
}

TEST_F(FindReplace, UndoGivesBackTheCaseTheTextHad) {
  SetText({"Name name NAME"});
  SearchRequest request = Replace(u"name", u"id", true, false);
  request.origin = 1;
  EXPECT_EQ(ReplaceAll(&view, &request), 3);
  EXPECT_EQ(Lines(document), (Texts{"id id id"}));
  Undo(&view);  // three cases, three records, one Ctrl+Z
  EXPECT_EQ(Lines(document), (Texts{"Name name NAME"}));
  Redo(&view);
  EXPECT_EQ(Lines(document), (Texts{"id id id"}));
}

TEST_F(FindReplace, SelectionScopeEndsAtTheSelectionsEndColumn) {
  SetText({"x x x", "x x x", "x x x"});
  SearchRequest request = Replace(u"x", u"yy", true);
  request.scope = 1;
  EXPECT_EQ(ReplaceAll(&view, &request), 0);
  EXPECT_EQ(messages, (Texts{"선택 영역이 없습니다."}));
  Select(4, 2, 2, 0);  // drawn upwards: from (2, 0) to (4, 2)
  EXPECT_EQ(ReplaceAll(&view, &request), 7);
  // The last line's limit moves with the longer replacements before it.
  EXPECT_EQ(Lines(document), (Texts{"x yy yy", "yy yy yy", "yy yy x"}));
  EXPECT_EQ(view.caretLine, 2);
  EXPECT_EQ(view.caretColumn, 5);
  EXPECT_FALSE(HasSelection(&view));
}

TEST_F(FindReplace, TheReplaceDialogReplacesOnceOrAllAndKeepsBothHistories) {
  SetText({"ab ab ab"});
  dialogAnswer = true;
  findAnswer = u"ab";
  replaceAnswer = u"c";
  Caret(0, 0);
  RunEditorCommand(&view, kCmdReplace);
  EXPECT_EQ(dialogs, (std::vector<int>{1}));
  EXPECT_EQ(Lines(document), (Texts{"c ab ab"}));
  replaceAllAnswer = 1;
  RunEditorCommand(&view, kCmdReplace);
  EXPECT_EQ(Lines(document), (Texts{"c c c"}));
  char text[64];
  ASSERT_TRUE(ReadHistory(kReplaceHistory, 0, text, sizeof text));
  EXPECT_STREQ(text, "c");
}

TEST_F(FindReplace, UndoOfAMillionReplacementsIsOneQuickStep) {
  std::vector<std::string> lines(100000, "k=k+k*k(k,k)-k/k;k+k");  // 10 places a line
  SetText(lines);
  SearchRequest request = Replace(u"k", u"key", true);
  request.origin = 1;
  ASSERT_EQ(ReplaceAll(&view, &request), 1000000);
  EXPECT_EQ(UndoCount(), 1);
  auto start = std::chrono::steady_clock::now();
  Undo(&view);
  std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  EXPECT_LT(took.count(), 1.0);  // with the sanitizers on; far less in a release build
  EXPECT_EQ(Lines(document)[99999], lines[0]);
  EXPECT_EQ(document->modified, 0);
}

}  // namespace
