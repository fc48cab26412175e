// The one search record that every editor window shares, its options in section "FindText", and
// the two drop-down histories.
#pragma once

constexpr int kSearchTextUnits = 260;  // 259 units and the terminator
constexpr int kHistoryEntries = 50;

struct SearchRequest {
  int mode;  // 0 find, 1 replace
  int caseSensitive;
  int wholeWord;
  int direction;  // 0 upward (toward the top), 1 downward; replacing always runs downward
  int scope;      // 0 whole text, 1 selection (replace only)
  int origin;     // 0 from the caret, 1 from the top
  int replaceAll;
  char16_t findText[kSearchTextUnits];
  char16_t replaceText[kSearchTextUnits];
};

extern SearchRequest g_searchRequest;

// `CaseSen`, `Whole`, `Dir`, `Scope`, `Origin`: read when a dialog opens, written when it closes
// with OK or replace-all.
void LoadSearchOptions(SearchRequest* request);
void SaveSearchOptions(const SearchRequest* request);

// Sets a NUL-terminated field from `length` units, cut to 259.
void SetSearchText(char16_t* field, const char16_t* units, int length);

// Histories: a section each ("FindTextHistory", "ExchangeTextHistory"), keys "0" ... "49", newest
// first, text in the internal form.
extern const char kFindHistory[];
extern const char kReplaceHistory[];
// Puts `text` (UTF-16, terminated) first, removing an equal older entry and the 51st.
void PushHistory(const char* history, const char16_t* text);
// Entry `index` (0 = newest) in the internal form; false when there is none.
bool ReadHistory(const char* history, int index, char* buffer, int size);
