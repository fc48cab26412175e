#include <windows.h>

#include <commdlg.h>
#include <shlobj.h>

#include "foundation/diagnostics.h"
#include "foundation/file_dialogs.h"
#include "foundation/language.h"
#include "foundation/memory.h"

namespace {

constexpr int kOwnerDialogText = 60;
constexpr int kNameUnits = 32768;
constexpr int kFilterUnits = 4096;
constexpr int kStringOpenTitle = 8;
constexpr int kStringSaveTitle = 9;

// UTF-16 for the system, with '/' turned into '\' when it is a path.
bool ToWide(const char* text, wchar_t* wide, int units, bool path) {
  if (!text) {
    wide[0] = 0;
    return true;
  }
  if (MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, units) <= 0) return false;
  for (wchar_t* p = wide; path && *p; ++p) {
    if (*p == L'/') *p = L'\\';
  }
  return true;
}

// A list of zero-terminated strings ended by an empty one, converted string by string.
int ListLength(const char* list) {
  const char* p = list;
  while (*p)
    p += strlen(p) + 1;
  return static_cast<int>(p - list) + 1;
}

// Back to the internal form, string by string, cut to `size` bytes.
void ToInternalList(const wchar_t* wide, char* target, int size) {
  int used = 0;
  for (const wchar_t* p = wide; *p && used < size - 1; p += wcslen(p) + 1) {
    int bytes =
        WideCharToMultiByte(CP_UTF8, 0, p, -1, target + used, size - 1 - used, nullptr, nullptr);
    if (bytes <= 0) break;
    for (int i = used; i < used + bytes; ++i) {
      if (target[i] == '\\') target[i] = '/';
    }
    used += bytes;
  }
  target[used < size ? used : size - 1] = '\0';
  if (used + 1 < size) target[used + 1] = '\0';
}

struct DialogTexts {
  wchar_t* name = static_cast<wchar_t*>(AllocMem(kNameUnits * sizeof(wchar_t), kOwnerDialogText));
  wchar_t* filter =
      static_cast<wchar_t*>(AllocMem(kFilterUnits * sizeof(wchar_t), kOwnerDialogText));
  wchar_t title[260];
  wchar_t folder[MAX_PATH];
  ~DialogTexts() {
    FreeMem(name);
    FreeMem(filter);
  }
  bool Fill(const char* initialName, const char* titleText, const char* filterList,
            const char* initialFolder) {
    if (!name || !filter) return false;
    if (!ToWide(initialName, name, kNameUnits, true) || !ToWide(titleText, title, 260, false) ||
        !ToWide(initialFolder, folder, MAX_PATH, true)) {
      return false;
    }
    filter[0] = filter[1] = 0;
    if (filterList && *filterList &&
        MultiByteToWideChar(CP_UTF8, 0, filterList, ListLength(filterList), filter, kFilterUnits) <=
            0) {
      return false;
    }
    return true;
  }
};

bool RunFileDialog(bool save, void* owner, char* name, int size, const char* title,
                   const char* filter, const char* initialFolder, unsigned flags,
                   const char* defaultExtension) {
  DialogTexts texts;
  if (!texts.Fill(name, title ? title : GetStr(save ? kStringSaveTitle : kStringOpenTitle), filter,
                  initialFolder)) {
    return false;
  }
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.hwndOwner = static_cast<HWND>(owner);
  dialog.lpstrFilter = texts.filter[0] ? texts.filter : nullptr;
  dialog.lpstrFile = texts.name;
  dialog.nMaxFile = kNameUnits;
  dialog.lpstrTitle = texts.title;
  dialog.lpstrInitialDir = texts.folder[0] ? texts.folder : nullptr;
  // Nothing here opens a file read-only, so the dialog does not offer it.
  dialog.Flags = flags | OFN_EXPLORER | OFN_HIDEREADONLY;
  wchar_t extension[16];
  if (defaultExtension && ToWide(defaultExtension, extension, 16, false))
    dialog.lpstrDefExt = extension;
  if (save ? GetSaveFileNameW(&dialog) : GetOpenFileNameW(&dialog)) {
    ToInternalList(texts.name, name, size);
    return true;
  }
  DWORD error = CommDlgExtendedError();
  if (error == 0) return false;
  if (save) {
    if (error == FNERR_INVALIDFILENAME)
      ScreenNote("GetSaveFileName() Err=FNERR_INVALIDFILENAME");
    else
      ScreenNote("GetSaveFileName() Err=%d", error);
  } else if (error == FNERR_INVALIDFILENAME) {
    ScreenNote("GetOpenFileName(): Invalid File Name");
  } else if (error == FNERR_BUFFERTOOSMALL) {
    ScreenNote("GetOpenFileName(): Selected too many files");
  } else {
    ScreenNote("GetOpenFileName() Err=%d", error);
  }
  return false;
}

int CALLBACK SelectInitialFolder(HWND browser, UINT message, LPARAM, LPARAM folder) {
  if (message == BFFM_INITIALIZED && folder)
    SendMessageW(browser, BFFM_SETSELECTIONW, TRUE, folder);
  return 0;
}

}  // namespace

bool AskOpenFileName(void* owner, char* name, int size, const char* title, const char* filter,
                     const char* initialFolder, unsigned flags) {
  return RunFileDialog(false, owner, name, size, title, filter, initialFolder, flags, nullptr);
}

bool AskSaveFileName(void* owner, char* name, int size, const char* title, const char* filter,
                     const char* initialFolder, unsigned flags, const char* defaultExtension) {
  return RunFileDialog(true, owner, name, size, title, filter, initialFolder, flags,
                       defaultExtension);
}

bool AskFolder(void* owner, const char* title, char* folder, int size, const char* root) {
  wchar_t wideTitle[260], wideFolder[MAX_PATH], wideRoot[MAX_PATH];
  if (!ToWide(title, wideTitle, 260, false) || !ToWide(folder, wideFolder, MAX_PATH, true) ||
      !ToWide(root, wideRoot, MAX_PATH, true)) {
    return false;
  }
  BROWSEINFOW browse = {};
  browse.hwndOwner = static_cast<HWND>(owner);
  browse.lpszTitle = wideTitle;
  browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
  browse.lpfn = SelectInitialFolder;
  browse.lParam = wideFolder[0] ? reinterpret_cast<LPARAM>(wideFolder) : 0;
  PIDLIST_ABSOLUTE rootList = nullptr;
  if (root && *root && SUCCEEDED(SHParseDisplayName(wideRoot, nullptr, &rootList, 0, nullptr))) {
    browse.pidlRoot = rootList;
  }
  PIDLIST_ABSOLUTE chosen = SHBrowseForFolderW(&browse);
  bool ok = false;
  if (chosen) {
    wchar_t path[MAX_PATH + 1];
    if (SHGetPathFromIDListW(chosen, path)) {
      path[wcslen(path) + 1] = 0;
      ToInternalList(path, folder, size);
      ok = true;
    }
    CoTaskMemFree(chosen);
  }
  if (rootList) CoTaskMemFree(rootList);
  return ok;
}
