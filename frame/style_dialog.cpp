// Command 27: a C source opened in a new editor converted to a coding style. The converted text
// goes to a temporary file that the editor reads in place of the file it names, so the file
// itself stays as it is until the user saves.
#include <windows.h>

#include <cstring>

#include "foundation/file_dialogs.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/message_box.h"
#include "foundation/os_file.h"
#include "frame/dialog_support.h"
#include "frame/editor_child.h"
#include "frame/frame_state.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"
#include "tools/c_style.h"
#include "tools/tool_owners.h"

namespace {

struct StyleRequest {
  char path[kPathSize];
  CStyle style;
};

// What the dialog showed last time, for the next time in this run.
StyleRequest g_lastStyle = {{}, {false, 4, false, true, true, false}};

void SetCheck(HWND dialog, int id, bool on) {
  CheckDlgButton(dialog, id, on ? BST_CHECKED : BST_UNCHECKED);
}
bool Checked(HWND dialog, int id) {
  return IsDlgButtonChecked(dialog, id) == BST_CHECKED;
}

INT_PTR CALLBACK StyleDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* request = static_cast<StyleRequest*>(DialogData(dialog, message, lParam));
  switch (message) {
    case WM_INITDIALOG:
      SetControlText(dialog, IDC_STYLE_FILE, request->path, true);
      CheckRadio(dialog, IDC_STYLE_BRACE_SAME, IDC_STYLE_BRACE_NEXT,
                 request->style.braceNextLine ? 1 : 0);
      SetDlgItemInt(dialog, IDC_STYLE_INDENT, static_cast<UINT>(request->style.indentWidth), FALSE);
      SetCheck(dialog, IDC_STYLE_TABS, request->style.useTabs);
      SetCheck(dialog, IDC_STYLE_KEYWORD, request->style.blankAfterKeyword);
      SetCheck(dialog, IDC_STYLE_OPERATORS, request->style.blankAroundBinary);
      SetCheck(dialog, IDC_STYLE_ONE_STATEMENT, request->style.oneStatementPerLine);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_STYLE_BROWSE: {
          char name[kPathSize];
          GetControlText(dialog, IDC_STYLE_FILE, name, sizeof name, true);
          if (AskOpenFileName(dialog, name, sizeof name, nullptr, kSourceFileFilter, nullptr, 0))
            SetControlText(dialog, IDC_STYLE_FILE, name, true);
          return TRUE;
        }
        case IDOK: {
          int width = 0;
          GetControlText(dialog, IDC_STYLE_FILE, request->path, sizeof request->path, true);
          if (!GetNumber(dialog, IDC_STYLE_INDENT, &width) || width < 1 || width > 16) {
            ShowMessageId(dialog, 460, MB_OK);
            return TRUE;
          }
          if (!request->path[0]) return TRUE;
          request->style.indentWidth = width;
          request->style.braceNextLine =
              CheckedRadio(dialog, IDC_STYLE_BRACE_SAME, IDC_STYLE_BRACE_NEXT) == 1;
          request->style.useTabs = Checked(dialog, IDC_STYLE_TABS);
          request->style.blankAfterKeyword = Checked(dialog, IDC_STYLE_KEYWORD);
          request->style.blankAroundBinary = Checked(dialog, IDC_STYLE_OPERATORS);
          request->style.oneStatementPerLine = Checked(dialog, IDC_STYLE_ONE_STATEMENT);
          EndDialog(dialog, IDOK);
          return TRUE;
        }
        case IDCANCEL:
          EndDialog(dialog, IDCANCEL);
          return TRUE;
      }
      break;
  }
  return FALSE;
}

// The converted text into a temporary file; false after the program's message.
bool WriteConverted(HWND frame, const StyleRequest& request, char* temporary, int size) {
  size_t length = 0;
  char* text = ReadWholeFile(request.path, &length, kOwnerStyleText);
  if (!text) {
    char message[kPathSize + 64];
    FormatStr(message, sizeof message, GetStr(2), request.path);
    ShowMessage(frame, message, MB_OK);
    return false;
  }
  // The converter reads bytes of an ASCII-based encoding; UTF-16 is full of zeros.
  if (memchr(text, 0, length)) {
    FreeMem(text);
    char message[kPathSize + 64];
    FormatStr(message, sizeof message, GetStr(461), request.path);
    ShowMessage(frame, message, MB_OK);
    return false;
  }
  TextBuffer out;
  InitText(&out, kOwnerStyleText);
  bool ok = ConvertCStyle(text, length, request.style, &out);
  FreeMem(text);
  char folder[kPathSize];
  ok = ok && OsGetTempFolder(folder, sizeof folder) &&
       FormatStr(temporary, size, "%sQuillStyle%u.tmp", folder, GetCurrentProcessId()) <= size;
  if (ok) {
    FileDelete(temporary);
    ok = OsAppendToFile(temporary, TextOf(&out), out.length);
  }
  FreeText(&out);
  if (!ok) ShowMessageId(frame, 456, MB_OK);
  return ok;
}

}  // namespace

void ShowStyleConversion(HWND frame) {
  StyleRequest request = g_lastStyle;
  if (RunDialog(frame, IDD_STYLE_CONVERT, StyleDialogProc, &request) != IDOK) return;
  g_lastStyle = request;
  char temporary[kPathSize];
  if (!WriteConverted(frame, request, temporary, sizeof temporary)) return;
  // Always a new window: one that shows the file already keeps its own text.
  CreateEditorWindow(request.path, temporary, 0, 0, 0, 0, 0, 0, kShowDefault);
  FileDelete(temporary);
}
