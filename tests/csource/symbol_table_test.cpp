#include <cstring>
#include <string>
#include <vector>

#include "csource/symbol_table.h"
#include "tests/support/klib_test.h"

using SymbolTableTest = KLibTest;

TEST_F(SymbolTableTest, OneNamespaceSortedAndGrowingInSteps) {
  SymbolTable table = {0, 0, nullptr};
  // Enough names to grow the array several times, inserted out of order.
  std::vector<std::string> names;
  for (int i = 0; i < 1500; ++i)
    names.push_back("N" + std::to_string((i * 7919) % 1500));
  for (const std::string& name : names)
    ASSERT_TRUE(AddSymbol(&table, kSymbolVariable, "a.c", 1, name.c_str(), "", "int"));
  EXPECT_EQ(table.count, 1500);
  EXPECT_EQ(table.capacity % 4096, 0);
  for (int i = 1; i < table.count; ++i)
    EXPECT_LT(CompareSymbolName(table.records[i - 1]->name,
                                static_cast<int>(strlen(table.records[i - 1]->name)),
                                table.records[i]->name),
              0);
  FreeSymbolTable(&table);
  table = {0, 0, nullptr};

  // The system's order, the same on every build: underscore before digits before letters,
  // letters alike in either case, lower case first only between names alike but for case.
  const std::vector<std::string> sorted = {"_",  "_Z", "0x", "9",  "a",   "A", "a_b", "a1",
                                           "ab", "aB", "Ab", "AB", "abc", "B", "z",   "Z"};
  for (size_t i = 0; i < sorted.size(); ++i)
    AddSymbol(&table, kSymbolVariable, "a.c", 1, sorted[(i * 7) % sorted.size()].c_str(), "", "");
  std::vector<std::string> order;
  for (int i = 0; i < table.count; ++i)
    order.push_back(table.records[i]->name);
  EXPECT_EQ(order, sorted);
  FreeSymbolTable(&table);
  table = {0, 0, nullptr};
  for (const std::string& name : names)
    ASSERT_TRUE(AddSymbol(&table, kSymbolVariable, "a.c", 1, name.c_str(), "", "int"));

  // A new record replaces the old one whatever its kind; a kind-specific look-up sees only its
  // kind.
  ASSERT_TRUE(AddSymbol(&table, kSymbolMacro, "b.c", 9, "N42", "a,b", "a+b"));
  EXPECT_EQ(table.count, 1500);
  EXPECT_EQ(FindSymbol(&table, "N42", -1, kSymbolVariable), nullptr);
  const SymbolRecord* macro = FindSymbol(&table, "N42x", 3, kSymbolMacro);
  ASSERT_NE(macro, nullptr);
  EXPECT_STREQ(macro->params, "a,b");
  EXPECT_STREQ(macro->source, "b.c");
  EXPECT_EQ(FindSymbol(&table, "n42", -1, kSymbolAny), nullptr);  // case counts
  EXPECT_EQ(FindSymbol(&table, "N1500", -1, kSymbolAny), nullptr);

  // #undef removes macros only.
  EXPECT_FALSE(RemoveSymbol(&table, "N7", kSymbolMacro));
  EXPECT_TRUE(RemoveSymbol(&table, "N42", kSymbolMacro));
  EXPECT_EQ(FindSymbol(&table, "N42", -1, kSymbolAny), nullptr);
  FreeSymbolTable(&table);
}

// C names are ordered without asking the system; the order must still be the system's (under
// Wine this compares with the real lstrcmpA).
TEST_F(SymbolTableTest, NamesAreOrderedAsTheSystemOrdersThem) {
  const char* const kNames[] = {"a",  "A",   "_a",   "a_",  "a_b",  "ab",  "aB",  "Ab",  "AB",
                                "a1", "a10", "a2",   "A_1", "_",    "__",  "z",   "Z9",  "x_Y",
                                "xy", "x0",  "WM_A", "WMA", "wm_a", "WM_", "abc", "abC", "aBc"};
  auto sign = [](int v) { return (v > 0) - (v < 0); };
  for (const char* a : kNames) {
    for (const char* b : kNames) {
      int length = static_cast<int>(strlen(a));
      EXPECT_EQ(sign(CompareSymbolName(a, length, b)), sign(OsCompareText(a, length, b)))
          << a << " " << b;
    }
  }
  // Anything else is the system's to order.
  EXPECT_EQ(sign(CompareSymbolName("a-b", 3, "ab")), sign(OsCompareText("a-b", 3, "ab")));
  EXPECT_EQ(sign(CompareSymbolName("ab", 2, "a.b")), sign(OsCompareText("ab", 2, "a.b")));
}

TEST_F(SymbolTableTest, KindNames) {
  const char* expected[] = {"typedef", "function", "struct",   "union",
                            "enum",    "#define",  "callconv", "var"};
  for (uint32_t kind = 0; kind < 8; ++kind)
    EXPECT_STREQ(SymbolKindName(kind), expected[kind]);
  EXPECT_STREQ(SymbolKindName(8), "");
}
