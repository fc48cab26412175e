// Macro expansion and #if conditions against gcc's preprocessor (gcc_vectors.inc), on the cases
// where the program agrees with C by design.
#include <gtest/gtest.h>

#include <string>

#include "csource/condition.h"
#include "csource/macro_expand.h"
#include "csource/syntax_error.h"
#include "foundation/text_builder.h"
#include "tests/csource/csource_fixture.h"

namespace {

#include "tests/csource/gcc_vectors.inc"

std::string WithoutSpaces(const std::string& text) {
  std::string kept;
  for (char c : text) {
    if (c != ' ' && c != '\t' && c != '\r' && c != '\n') kept += c;
  }
  return kept;
}

class GccAgreement : public CSourceTest {
 protected:
  void SetUp() override {
    CSourceTest::SetUp();
    Write("defines.h", kGccDefines);
    ASSERT_EQ(Parse("defines.h"), "");
  }
};

TEST_F(GccAgreement, MacroExpansion) {
  for (const GccExpansion& vector : kGccExpansions) {
    TextBuffer buffer;
    TextBuffer sink;
    InitText(&buffer, 1);
    InitText(&sink, 1);
    AppendText(&buffer, vector.text);
    SourcePlace place = {&sink, "t.c", 1};
    size_t stopped = 0;
    EXPECT_EQ(ExpandMacros(&table_, &buffer, 0, &stopped, &place), 0) << vector.text;
    EXPECT_EQ(WithoutSpaces(TextOf(&buffer)), vector.expanded) << vector.text;
    FreeText(&buffer);
    FreeText(&sink);
  }
}

TEST_F(GccAgreement, Conditions) {
  for (const GccCondition& vector : kGccConditions) {
    TextBuffer sink;
    InitText(&sink, 1);
    std::string text = vector.text;
    int32_t value = EvalCondition(&table_, text.c_str(), text.size(), "t.c", 1, &sink);
    EXPECT_EQ(value != 0, vector.holds != 0) << vector.text << " gives " << value;
    EXPECT_STREQ(TextOf(&sink), "") << vector.text;
    FreeText(&sink);
  }
}

}  // namespace
