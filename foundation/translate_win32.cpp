#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/os_path.h"
#include "foundation/translate.h"

namespace {

constexpr int kTextUnits = 1024;
constexpr int kNameBytes = 32;
constexpr int kLastTranslatedControl = 900;

// Sets a window's text from an entry of the language, unless the entry is empty.
void SetTextFromEntry(HWND window, int number) {
  const char* text = LanguageText(number);
  if (!*text) return;
  wchar_t wide[kTextUnits];
  if (MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, kTextUnits) > 0) SetWindowTextW(window, wide);
}

void SetMenuText(HMENU menu, int position, int number) {
  const char* text = LanguageText(number);
  if (!*text) return;
  wchar_t wide[kTextUnits];
  if (MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, kTextUnits) <= 0) return;
  MENUITEMINFOW item = {};
  item.cbSize = sizeof item;
  item.fMask = MIIM_STRING;
  item.dwTypeData = wide;
  SetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &item);
}

BOOL CALLBACK TranslateControl(HWND control, LPARAM base) {
  int id = GetDlgCtrlID(control);
  if (id >= 0 && id < kLastTranslatedControl)
    SetTextFromEntry(control, static_cast<int>(base) + id);
  return TRUE;
}

void AddLanguage(const char* name, void* combo) {
  wchar_t wide[MAX_PATH];
  if (MultiByteToWideChar(CP_UTF8, 0, name, -1, wide, MAX_PATH) > 0)
    SendMessageW(static_cast<HWND>(combo), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide));
}

}  // namespace

void TranslateMenu(void* handle) {
  HMENU menu = static_cast<HMENU>(handle);
  int count = GetMenuItemCount(menu);
  for (int position = 0; position < count; ++position) {
    MENUITEMINFOW item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_FTYPE | MIIM_ID | MIIM_SUBMENU;
    if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &item)) continue;
    if (item.fType & (MFT_SEPARATOR | MFT_BITMAP)) continue;
    if (item.hSubMenu) {
      SetMenuText(menu, position, position + 1);
      TranslateMenu(item.hSubMenu);
    } else {
      SetMenuText(menu, position, static_cast<int>(item.wID));
    }
  }
}

void RestoreMenu(void* handle, void* resourceHandle) {
  HMENU menu = static_cast<HMENU>(handle);
  HMENU resource = static_cast<HMENU>(resourceHandle);
  int count = GetMenuItemCount(resource);
  for (int position = 0; position < count; ++position) {
    wchar_t text[kTextUnits];
    MENUITEMINFOW source = {};
    source.cbSize = sizeof source;
    source.fMask = MIIM_FTYPE | MIIM_SUBMENU | MIIM_STRING;
    source.dwTypeData = text;
    source.cch = kTextUnits;
    if (!GetMenuItemInfoW(resource, static_cast<UINT>(position), TRUE, &source)) continue;
    if (source.fType & MFT_SEPARATOR) continue;
    MENUITEMINFOW target = {};
    target.cbSize = sizeof target;
    target.fMask = MIIM_FTYPE;
    if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &target)) continue;
    if (target.fType & (MFT_SEPARATOR | MFT_BITMAP)) continue;
    MENUITEMINFOW item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_STRING;
    item.dwTypeData = text;
    SetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &item);
    HMENU submenu = GetSubMenu(menu, position);
    if (source.hSubMenu && submenu) RestoreMenu(submenu, source.hSubMenu);
  }
}

void TranslateDialog(void* handle) {
  HWND dialog = static_cast<HWND>(handle);
  wchar_t wideName[kNameBytes];
  if (!GetDlgItemTextW(dialog, kDialogNameControl, wideName, kNameBytes)) return;
  char name[kNameBytes * 3];
  if (WideCharToMultiByte(CP_UTF8, 0, wideName, -1, name, sizeof name, nullptr, nullptr) <= 0)
    return;
  int base = atoi(LanguageTextByName(name));
  if (base == 0) return;
  SetTextFromEntry(dialog, base);
  EnumChildWindows(dialog, TranslateControl, base);
}

void FillLanguageList(void* handle, const char* current) {
  HWND combo = static_cast<HWND>(handle);
  SendMessageW(combo, CB_RESETCONTENT, 0, 0);
  SendMessageW(combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(L"Korean"));
  char folder[kPathSize];
  if (ProgramFolder(folder, sizeof folder) > 0) ListLanguageFiles(folder, AddLanguage, combo);
  LRESULT selected = 0;
  wchar_t wideCurrent[MAX_PATH];
  if (current && *current &&
      MultiByteToWideChar(CP_UTF8, 0, current, -1, wideCurrent, MAX_PATH) > 0) {
    selected = SendMessageW(combo, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                            reinterpret_cast<LPARAM>(wideCurrent));
    if (selected == CB_ERR) selected = 0;
  }
  SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(selected), 0);
}
