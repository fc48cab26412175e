// The editor's host interfaces as the windows answer them: repaints, caret, title and status go
// to the window that shows the view; the clipboard is the system's; the save dialog is the common
// one; the questions are the editor's dialogs.
#include <cstring>

#include "editor/command_host.h"
#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/view_input.h"
#include "foundation/file_dialogs.h"
#include "foundation/memory.h"
#include "foundation/message_box.h"
#include "frame/dialog_support.h"
#include "frame/editor_child.h"
#include "frame/editor_dialogs.h"
#include "frame/editor_window.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/parser_window.h"
#include "frame/status_bar.h"
#include "frame/tool_windows.h"

namespace {

char16_t* g_clipboardCopy;  // what getClipboard last handed out

EditorWindow* Owner(EditorView* view) {
  return view ? EditorWindowOf(static_cast<HWND>(view->window)) : nullptr;
}

void RepaintLine(void*, EditorView* view, int line) {
  if (EditorWindow* editor = Owner(view)) RepaintEditorLine(editor, line);
}

void RepaintAll(void*, EditorView* view) {
  if (view && view->window) InvalidateRect(static_cast<HWND>(view->window), nullptr, FALSE);
}

void CaretMoved(void*, EditorView* view) {
  if (EditorWindow* editor = Owner(view)) CaretFollows(editor);
}

void TitleChanged(void*, EditorView* view) {
  EditorWindow* editor = Owner(view);
  if (!editor) return;
  ShowDocumentTitle(static_cast<HWND>(view->window), editor->document->path);
}

void DocumentLoaded(void*, EditorView* view) {
  if (EditorWindow* editor = Owner(view)) {
    editor->widestColumns = WidestLine(editor->document);
    UpdateScrollBar(editor);
    FitEditorView(editor);
    TitleChanged(nullptr, view);
  }
}

void StatusText(void*, int part, const char* text) {
  if (part == 2) SetStatusMessage(text && text[0] ? text : nullptr);
}

bool AskSavePath(void*, const char* title, char* path, int size) {
  return AskSaveFileName(g_frame.frame, path, size, title, kSourceFileFilter, nullptr, 0, "cpp");
}

bool AskTabSize(void*, int proposed, TabSizeAnswer* answer) {
  return AskTabSizeDialog(g_frame.frame, proposed, answer);
}

char16_t AskFillCharacter(void*) {
  return AskFillCharacterDialog(g_frame.frame);
}

// Another program (a clipboard viewer, the system's own synchronisation) may hold the clipboard
// for a moment: a cut that found it busy would keep its text and paste the old one later.
bool OpenClipboardPatiently() {
  for (int attempt = 0; attempt < 20; ++attempt) {
    if (OpenClipboard(g_frame.frame)) return true;
    Sleep(10);
  }
  return false;
}

bool SetClipboard(void*, const char16_t* units, int count) {
  if (!OpenClipboardPatiently()) return false;
  EmptyClipboard();
  bool done = false;
  if (HGLOBAL block =
          GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, (static_cast<SIZE_T>(count) + 1) * 2)) {
    wchar_t* target = static_cast<wchar_t*>(GlobalLock(block));
    memcpy(target, units, static_cast<size_t>(count) * 2);
    target[count] = L'\0';
    GlobalUnlock(block);
    done = SetClipboardData(CF_UNICODETEXT, block) != nullptr;
    if (!done) GlobalFree(block);
  }
  CloseClipboard();
  return done;
}

const char16_t* GetClipboard(void*, int* count) {
  FreeMem(g_clipboardCopy);
  g_clipboardCopy = nullptr;
  *count = 0;
  if (!OpenClipboardPatiently()) return nullptr;
  if (HANDLE block = GetClipboardData(CF_UNICODETEXT)) {
    if (const wchar_t* text = static_cast<const wchar_t*>(GlobalLock(block))) {
      size_t length = wcslen(text);
      g_clipboardCopy =
          static_cast<char16_t*>(AllocMem((length + 1) * sizeof(char16_t), kOwnerEditorClipboard));
      if (g_clipboardCopy) {
        memcpy(g_clipboardCopy, text, length * sizeof(char16_t));
        *count = static_cast<int>(length);
      }
      GlobalUnlock(block);
    }
  }
  CloseClipboard();
  return g_clipboardCopy;
}

bool SearchDialog(void*, EditorView*, SearchRequest* request) {
  return RunSearchDialog(g_frame.frame, request);
}

bool AskLineNumber(void*, EditorView*, int* number) {
  return AskLineNumberDialog(g_frame.frame, number);
}

bool AskOtherFormat(void*, EditorView*, OtherFormatAnswer* answer) {
  return AskOtherFormatDialog(g_frame.frame, answer);
}

// Asked over the document's own window, whose title names the file.
int AskUnmappable(void*, EditorView* view, int encoding, const UnmappableText* found) {
  char text[1600];
  FormatUnmappableQuestion(view, encoding, found, text, sizeof text);
  return ShowMessage(view ? view->window : nullptr, text, MB_YESNOCANCEL | MB_ICONQUESTION);
}

bool AskSortOptions(void*, EditorView*, LineSortOptions* options) {
  return AskLineSortDialog(g_frame.frame, options);
}

bool OpenFile(void*, const char* path) {
  return OpenOrActivateDocument(path, nullptr, 0, 0) != nullptr;
}

constexpr EditorHost kWindowEditorHost = {
    nullptr,
    RepaintLine,
    RepaintAll,
    CaretMoved,
    TitleChanged,
    DocumentLoaded,
    StatusText,
    AskTabSize,
    AskFillCharacter,
    AskSavePath,
    SetClipboard,
    GetClipboard,
    OpenTerminalForDocument,
    nullptr,
    nullptr,
    AskUnmappable,
};

// Quill.exe runs no start-up code that would call constructors: the hosts are constant tables.
constexpr CommandHost kWindowCommandHost = {
    nullptr,           SearchDialog,     AskLineNumber,    AskOtherFormat, OpenFile,
    LookUpDeclaration, IncludeFoldersOf, LastAnalysedFile, AskSortOptions,
};

}  // namespace

void ReleaseEditorClipboardCopy() {
  FreeMem(g_clipboardCopy);
  g_clipboardCopy = nullptr;
}

void InstallEditorHosts() {
  SetEditorHost(&kWindowEditorHost);
  SetCommandHost(&kWindowCommandHost);
}
