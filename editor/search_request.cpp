#include "editor/search_request.h"

#include <cstring>

#include "foundation/formatter.h"
#include "foundation/settings.h"
#include "foundation/unicode.h"

SearchRequest g_searchRequest = {0, 0, 0, 1, 0, 0, 0, {}, {}};

const char kFindHistory[] = "FindTextHistory";
const char kReplaceHistory[] = "ExchangeTextHistory";

namespace {

const char kSection[] = "FindText";
// A history entry in UTF-8: up to 259 units of 3 bytes.
constexpr int kEntryBytes = kSearchTextUnits * 3 + 1;

void IndexKey(int index, char* key, int size) {
  FormatStr(key, size, "%d", index);
}

}  // namespace

void LoadSearchOptions(SearchRequest* request) {
  request->caseSensitive = ReadInt(kSection, "CaseSen", 0);
  request->wholeWord = ReadInt(kSection, "Whole", 0);
  request->direction = ReadInt(kSection, "Dir", 1);
  request->scope = ReadInt(kSection, "Scope", 0);
  request->origin = ReadInt(kSection, "Origin", 0);
}

void SaveSearchOptions(const SearchRequest* request) {
  WriteNums(kSection, "CaseSen", request->caseSensitive);
  WriteNums(kSection, "Whole", request->wholeWord);
  WriteNums(kSection, "Dir", request->direction);
  WriteNums(kSection, "Scope", request->scope);
  WriteNums(kSection, "Origin", request->origin);
}

void SetSearchText(char16_t* field, const char16_t* units, int length) {
  if (length > kSearchTextUnits - 1) length = kSearchTextUnits - 1;
  if (length < 0) length = 0;
  memcpy(field, units, sizeof(char16_t) * static_cast<size_t>(length));
  field[length] = u'\0';
}

bool ReadHistory(const char* history, int index, char* buffer, int size) {
  char key[16];
  IndexKey(index, key, sizeof key);
  return ReadText(history, key, buffer, size, "") > 0;
}

void PushHistory(const char* history, const char16_t* text) {
  char entry[kEntryBytes];
  int length = Utf16ToUtf8(text, -1, entry, sizeof entry - 1);
  if (length <= 0) return;
  entry[length] = '\0';
  // Read the old list first: the profile file is written key by key below.
  static char old[kHistoryEntries][kEntryBytes];
  int kept = 0;
  for (int i = 0; i < kHistoryEntries; ++i) {
    if (!ReadHistory(history, i, old[kept], kEntryBytes)) break;
    if (strcmp(old[kept], entry) != 0) ++kept;
  }
  char key[16];
  WriteText(history, "0", entry);
  for (int i = 0; i < kept && i + 1 < kHistoryEntries; ++i) {
    IndexKey(i + 1, key, sizeof key);
    WriteText(history, key, old[i]);
  }
}
