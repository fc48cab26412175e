// The editor's dialogs: find and replace, go to line, tab size, fill character, and opening and
// saving in another format. Each keeps its place in "DlgPos" and is translated by the language
// file; each returns false (or 0) when the user cancels.
#pragma once
#include <windows.h>

#include "foundation/path.h"

struct SearchRequest;
struct TabSizeAnswer;
struct OtherFormatAnswer;
struct LineSortOptions;

// The find dialog (request->mode 0) or the replace dialog (mode 1), filled from the request and
// the two histories; OK and replace-all read the fields and options back.
bool RunSearchDialog(HWND owner, SearchRequest* request);
bool AskLineNumberDialog(HWND owner, int* number);
bool AskTabSizeDialog(HWND owner, int proposed, TabSizeAnswer* answer);
char16_t AskFillCharacterDialog(HWND owner);
bool AskOtherFormatDialog(HWND owner, OtherFormatAnswer* answer);
// The line sort's options, filled from and read back into `options`.
bool AskLineSortDialog(HWND owner, LineSortOptions* options);

// The open-other-format dialog: a file, an encoding (0 detect, 1 ... 4) and a tab width, the two
// choices kept as `ImportHanCode` and `ImportTabSize`.
struct ImportAnswer {
  char path[kPathSize];  // internal form
  int encoding;
  int tabSize;
};
bool AskImportDialog(HWND owner, ImportAnswer* answer);
