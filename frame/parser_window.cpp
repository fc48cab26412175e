#include "frame/parser_window.h"

#include <cstring>

#include "csource/csource_owners.h"
#include "csource/parse_source.h"
#include "csource/show_definition.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "editor/undo_record.h"
#include "editor/view_input.h"
#include "foundation/settings.h"
#include "foundation/text_builder.h"
#include "foundation/unicode.h"
#include "frame/editor_child.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/project_window.h"
#include "frame/session_list.h"

namespace {

constexpr char kParserWindowTitle[] = "Parser Window";
constexpr char kPlaceKey[] = "ParserWindow";

HWND g_parserWindow;
// The table of the file last analysed, kept while the file is unchanged: a second F1 in the same
// file only looks up. Zero is an empty cache.
DefinitionCache g_definitions;

// The stored place, or across the bottom sixth of the desk.
void ParserPlace(int* x, int* y, int* width, int* height) {
  char text[64];
  FramePlace place;
  if (ReadStr(kDlgPosSection, kPlaceKey, text, sizeof text) > 0 && ParseFramePlace(text, &place) &&
      place.width > 0 && place.height > 0) {
    *x = place.left;
    *y = place.top;
    *width = place.width;
    *height = place.height;
    return;
  }
  RECT client;
  GetClientRect(g_frame.mdiClient, &client);
  *x = 0;
  *y = client.bottom * 5 / 6;
  *width = client.right;
  *height = client.bottom / 6;
}

HWND ParserWindow() {
  if (g_parserWindow && IsWindow(g_parserWindow)) return g_parserWindow;
  int x, y, width, height;
  ParserPlace(&x, &y, &width, &height);
  g_parserWindow = CreateEditorWindow(nullptr, nullptr, 0, 0, x, y, width, height, SW_SHOWNORMAL);
  if (!g_parserWindow) return nullptr;
  EditDocument* document = EditorWindowDocument(g_parserWindow);
  strcpy(document->path, kParserWindowTitle);
  ShowDocumentTitle(g_parserWindow, document->path);
  return g_parserWindow;
}

// The whole text of the window replaced by `text` (lines ended by CR LF), caret at the top, with
// nothing to undo and nothing to save.
void ShowText(HWND window, const char* text, size_t length) {
  EditorWindow* editor = EditorWindowOf(window);
  if (!editor) return;
  EditDocument* document = editor->document;
  ClearLines(document);
  FreeUndoList(document->undoList);
  FreeUndoList(document->redoList);
  document->undoList = nullptr;
  document->redoList = nullptr;
  const char* end = text + length;
  for (const char* line = text; line < end;) {
    const char* stop = line;
    while (stop < end && *stop != '\r' && *stop != '\n')
      ++stop;
    if (!AppendUtf8Line(document, line, static_cast<int>(stop - line))) break;
    if (stop < end && *stop == '\r') ++stop;
    if (stop < end && *stop == '\n') ++stop;
    line = stop;
  }
  document->modified = 0;
  document->savedVersion = 0;
  EditorView* view = &editor->view;
  view->caretLine = view->caretColumn = 0;
  view->firstLine = view->firstColumn = 0;
  view->selStartColumn = view->selEndColumn = 0;
  view->selStartLine = view->selEndLine = 0;
  editor->widestColumns = WidestLine(document);
  UpdateScrollBar(editor);
  FitEditorView(editor);
  InvalidateRect(window, nullptr, FALSE);
  ShowEditorStatus(editor);
}

}  // namespace

void LookUpDeclaration(void*, EditorView* view, const char16_t* word, int length) {
  if (!view || !view->document || length <= 0) return;
  if (length > kMaxLookupWord) length = kMaxLookupWord;
  char text[kMaxLookupWord * 3 + 1];
  int written = Utf16ToUtf8(word, length, text, sizeof text - 1);
  if (written <= 0) return;
  text[written] = '\0';
  // A document without a file (the parser window among them) asks the table as it stands.
  const EditDocument* document = view->document;
  const char* source = document->untitled ? nullptr : document->path;
  TextBuffer result;
  InitText(&result, kOwnerResultText);
  ParseOptions options = {OpenProject(), nullptr, nullptr, 0};
  HCURSOR previous = SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)));  // IDC_WAIT
  bool done = ShowDefinition(&g_definitions, source, text, &result, &options);
  SetCursor(previous);
  HWND window = done ? ParserWindow() : nullptr;
  if (window) {
    ShowText(window, TextOf(&result), result.length);
    SendMessageW(g_frame.mdiClient, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(window), 0);
    if (IsIconic(window))
      SendMessageW(g_frame.mdiClient, WM_MDIRESTORE, reinterpret_cast<WPARAM>(window), 0);
  }
  FreeText(&result);
}

int IncludeFoldersOf(void*, EditorView* view, char* list, int size) {
  const EditDocument* document = view ? view->document : nullptr;
  const char* source = nullptr;
  if (document && !document->untitled) source = document->path;
  if (!source) source = g_definitions.path;
  if (!source) return 0;
  ParseOptions options = {OpenProject(), nullptr, nullptr, 0};
  return SourceIncludeFolders(source, &options, list, size);
}

bool LastAnalysedFile(void*, char* path, int size) {
  if (!g_definitions.path || static_cast<int>(strlen(g_definitions.path)) >= size) return false;
  strcpy(path, g_definitions.path);
  return true;
}

bool IsParserWindow(HWND window) {
  return window && window == g_parserWindow;
}

void ParserWindowClosing(HWND window) {
  if (!IsParserWindow(window)) return;
  g_parserWindow = nullptr;
  if (IsIconic(window) || IsZoomed(window)) return;  // the normal place is the one worth keeping
  RECT rect;
  GetWindowRect(window, &rect);
  MapWindowPoints(nullptr, g_frame.mdiClient, reinterpret_cast<POINT*>(&rect), 2);
  WriteNums(kDlgPosSection, kPlaceKey, rect.left, rect.top, rect.right - rect.left,
            rect.bottom - rect.top);
}

void FreeParserTable() {
  FreeDefinitionCache(&g_definitions);
}
