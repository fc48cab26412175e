// What the editor's commands ask of the window and of the user beyond the editor host: the find
// and replace dialogs, the line number of go-to-line, the save-in-other-format dialog, opening a
// file in a new editor window, the declaration look-up, the include folders and the page size.
// Every entry may be null: the command then gets the answer of a user who cancels, and nothing
// is opened. Tests install scripted hosts.
#pragma once

#include "editor/document.h"

struct EditorView;
struct SearchRequest;
struct LineSortOptions;

// The save-in-other-format dialog's fields, filled from the document and read back on OK.
struct OtherFormatAnswer {
  int encoding;  // 1 ... 4
  int tabSize;
  int lfOnly;
  int hasBom;
  char path[kPathSize];  // internal form
};

struct CommandHost {
  void* context;
  // The find dialog (request->mode 0) or the replace dialog (mode 1), filled from `request`;
  // true for OK or replace-all (replaceAll set), with the fields and options read back.
  bool (*searchDialog)(void* context, EditorView* view, SearchRequest* request);
  // Go to line: the number typed in; false for Cancel.
  bool (*askLineNumber)(void* context, EditorView* view, int* number);
  bool (*askOtherFormat)(void* context, EditorView* view, OtherFormatAnswer* answer);
  // Opens `path` in a new editor window.
  bool (*openFile)(void* context, const char* path);
  // F1 when no file name stands under the caret: the word looked up in the parser window.
  void (*lookUpDeclaration)(void* context, EditorView* view, const char16_t* word, int length);
  // The include folders for the document, ';'-separated, internal form; the length written.
  int (*includeFolders)(void* context, EditorView* view, char* list, int size);
  // The file the parser window last analysed; false when there is none.
  bool (*lastAnalysedFile)(void* context, char* path, int size);
  // The line sort dialog, filled from `options` and read back on OK.
  bool (*askSortOptions)(void* context, EditorView* view, LineSortOptions* options);
};

// Installs `host` (kept by pointer; null restores the default) and returns the previous one.
const CommandHost* SetCommandHost(const CommandHost* host);

bool CommandSearchDialog(EditorView* view, SearchRequest* request);
bool CommandAskLineNumber(EditorView* view, int* number);
bool CommandAskOtherFormat(EditorView* view, OtherFormatAnswer* answer);
bool CommandOpenFile(const char* path);
void CommandLookUpDeclaration(EditorView* view, const char16_t* word, int length);
// "" when there are none.
void CommandIncludeFolders(EditorView* view, char* list, int size);
bool CommandLastAnalysedFile(char* path, int size);
bool CommandAskSortOptions(EditorView* view, LineSortOptions* options);
