// The line sort: its order, what it takes as the lines and the key, one undo record, and the
// command with its dialog and kept options.
#include <gtest/gtest.h>

#include "editor/key_commands.h"
#include "editor/line_sort.h"
#include "foundation/settings.h"
#include "tests/editor/command_fixture.h"

namespace {

using Text = std::vector<std::string>;

class LineSortTest : public CommandTest {};

TEST_F(LineSortTest, OrdersByTheOptions) {
  struct Case {
    LineSortOptions options;  // descending, ignoreCase, numbers, unique
    Text in;
    Text out;
  };
  const Case kCases[] = {
      // Hangul in syllable order; code-point order puts a surrogate pair after U+FFxx.
      {{0, 0, 0, 0},
       {"나", "가", "\xF0\x9F\x98\x80", "\xEF\xBC\xA1", "b", "B"},
       {"B", "b", "가", "나", "\xEF\xBC\xA1", "\xF0\x9F\x98\x80"}},
      // Folding makes capitals of small letters, so '_' stays after every letter; equal keys keep
      // their order.
      {{0, 1, 0, 0}, {"b", "_", "A", "a", "B"}, {"A", "a", "b", "B", "_"}},
      {{1, 1, 0, 0}, {"b", "_", "A", "a", "B"}, {"_", "b", "B", "A", "a"}},
      // Digit runs by value, of any length, leading zeros told apart by the text.
      {{0, 0, 1, 0},
       {"file10", "file2", "file", "file1a", "file01", "x99999999999999999999",
        "x100000000000000000000"},
       {"file", "file01", "file1a", "file2", "file10", "x99999999999999999999",
        "x100000000000000000000"}},
      // A digit beside a unit that is none compares as a digit does, whatever its value.
      {{0, 0, 1, 0}, {"a10", "a~", "a9", "a!", "a1", "a"}, {"a", "a!", "a1", "a9", "a10", "a~"}},
      {{0, 0, 0, 0}, {"file10", "file2"}, {"file10", "file2"}},
      // The first of equal keys stays, in either direction.
      {{0, 1, 0, 1}, {"b", "A", "a", "B", "c"}, {"A", "b", "c"}},
      {{1, 0, 0, 1}, {"a", "c", "a", "", "c", ""}, {"c", "a", ""}},
  };
  for (const Case& c : kCases) {
    SetText(c.in);
    Select(0, 0, 0, 0);
    SortLines(&view, c.options);
    EXPECT_EQ(Lines(document), c.out) << c.in[0] << " descending " << c.options.descending;
  }
}

TEST_F(LineSortTest, TakesTheSelectedLinesOrTheWholeText) {
  // A selection ending at column 0 leaves its last line out; the sorted lines stay selected.
  SetText({"z", "c", "b", "a", "y"});
  Select(0, 1, 0, 3);
  EXPECT_TRUE(SortLines(&view, {}));
  EXPECT_EQ(Lines(document), (Text{"z", "b", "c", "a", "y"}));
  EXPECT_EQ(NormalisedSelection(&view).startLine, 1);
  EXPECT_EQ(NormalisedSelection(&view).endLine, 3);
  // Nothing selected: every line.
  SetText({"b", "", "a"});
  Caret(0, 0);
  EXPECT_TRUE(SortLines(&view, {}));
  EXPECT_EQ(Lines(document), (Text{"", "a", "b"}));
  // Nothing to do: already in order, or a single line; no record.
  ClearRedo(document);
  int records = UndoCount();
  EXPECT_FALSE(SortLines(&view, {}));
  Select(1, 2, 0, 3);
  EXPECT_FALSE(SortLines(&view, {1, 0, 0, 0}));
  EXPECT_EQ(UndoCount(), records);
}

TEST_F(LineSortTest, AColumnBlockIsTheKey) {
  // Keys "3", "1", "" (the line ends left of the block), "2"; wide characters count two columns.
  SetText({"zz3x", "yy1", "w", "가2"});
  Select(2, 0, 3, 3, 1);
  EXPECT_TRUE(SortLines(&view, {}));
  EXPECT_EQ(Lines(document), (Text{"w", "yy1", "가2", "zz3x"}));
  // A block entirely past the line ends: every key empty, nothing moves.
  Select(40, 0, 50, 3, 1);
  EXPECT_FALSE(SortLines(&view, {}));
}

TEST_F(LineSortTest, OneUndoRestoresTheExactText) {
  const Text kText = {"delta", "b", "b", "가", "", "alpha", "b"};
  SetText(kText);
  Select(0, 0, 1, 6);
  ASSERT_TRUE(SortLines(&view, {1, 0, 0, 1}));
  const Text kSorted = {"가", "delta", "b", "alpha", ""};
  EXPECT_EQ(Lines(document), kSorted);
  EXPECT_TRUE(document->modified);
  EXPECT_EQ(UndoCount(), 1);
  Undo(&view);
  EXPECT_EQ(Lines(document), kText);
  Redo(&view);
  EXPECT_EQ(Lines(document), kSorted);
}

TEST_F(LineSortTest, TheCommandAsksAndKeepsTheOptions) {
  SetText({"b", "a", "B"});
  Caret(0, 0);
  // Cancel sorts nothing and keeps nothing; the dialog is first shown numbers on.
  RunEditorCommand(&view, kCmdLineSort);
  ASSERT_EQ(sortShown.size(), 1u);
  EXPECT_EQ(sortShown[0].numbers, 1);
  EXPECT_EQ(sortShown[0].descending, 0);
  EXPECT_EQ(Lines(document), (Text{"b", "a", "B"}));
  sortOk = true;
  sortAnswer = {1, 1, 0, 1};
  RunEditorCommand(&view, kCmdLineSort);
  EXPECT_EQ(Lines(document), (Text{"b", "a"}));
  EXPECT_EQ(ReadInt(kConfigSection, "SortOrder", -1), 1);
  RunEditorCommand(&view, kCmdLineSort);
  ASSERT_EQ(sortShown.size(), 3u);
  EXPECT_EQ(sortShown[2].descending, 1);
  EXPECT_EQ(sortShown[2].ignoreCase, 1);
  EXPECT_EQ(sortShown[2].numbers, 0);
  EXPECT_EQ(sortShown[2].unique, 1);
}

// Sorting is a merge of runs: a large input with many equal keys (a block over the first four
// columns) comes out in key order, equal keys in their old order (the index behind the key).
TEST_F(LineSortTest, LargeInputsStaySortedAndStable) {
  Text lines;
  for (int i = 0; i < 5000; ++i) {
    std::string key = "k" + std::to_string((5000 - i) * 7 % 97);
    lines.push_back(key + std::string(4 - key.size(), ' ') + std::to_string(i));
  }
  SetText(lines);
  Select(0, 0, 4, 4999, 1);
  ASSERT_TRUE(SortLines(&view, {0, 0, 1, 0}));
  Text sorted = Lines(document);
  ASSERT_EQ(sorted.size(), lines.size());
  for (size_t i = 1; i < sorted.size(); ++i) {
    int a = std::stoi(sorted[i - 1].substr(1, 3));
    int b = std::stoi(sorted[i].substr(1, 3));
    ASSERT_LE(a, b) << i;
    if (a == b) ASSERT_LT(std::stoi(sorted[i - 1].substr(4)), std::stoi(sorted[i].substr(4))) << i;
  }
}

}  // namespace
