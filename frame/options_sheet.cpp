#include "frame/options_sheet.h"

#include <commctrl.h>

#include <cstring>
#include "foundation/formatter.h"

#include "editor/colour_runs.h"
#include "editor/colour_settings.h"
#include "foundation/fileutil.h"
#include "foundation/language.h"
#include "foundation/settings.h"
#include "foundation/translate.h"
#include "frame/dialog_support.h"
#include "frame/display_objects.h"
#include "frame/frame_state.h"
#include "resources/resource.h"

namespace {

bool g_confirmed;

void SetResult(HWND page, LRESULT result) {
  SetWindowLongPtrW(page, DWLP_MSGRESULT, result);
}

// Remembers the page that becomes active, so the next sheet opens there.
bool HandleCommonNotify(HWND page, const NMHDR* notify, int pageIndex) {
  switch (notify->code) {
    case PSN_SETACTIVE:
      g_frame.optionsStartPage = pageIndex;
      SetResult(page, 0);
      return true;
    case PSN_KILLACTIVE:
      SetResult(page, FALSE);  // leaving a page is always allowed
      return true;
  }
  return false;
}

// The sheet's own buttons are the system's, in the system's language: with a language loaded
// they take the program's OK and Cancel.
void TranslateSheetButtons(HWND page) {
  static const int kButtons[2][2] = {{IDOK, 22}, {IDCANCEL, 27}};
  for (const auto& button : kButtons) {
    if (!*LanguageText(kLanguageStringBase + button[1])) continue;
    wchar_t wide[64];
    if (MultiByteToWideChar(CP_UTF8, 0, GetStr(button[1]), -1, wide, 64) > 0)
      SetDlgItemTextW(GetParent(page), button[0], wide);
  }
}

// Selects `text` in a list; with `keep` a name the list lacks is added, so that a stored face
// that is not installed stays chosen (the system maps it to one that is).
void SelectText(HWND dialog, int control, const char* text, bool keep = false) {
  wchar_t wide[300];
  if (!text[0] || !MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, 300)) return;
  LRESULT index = SendDlgItemMessageW(dialog, control, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                      reinterpret_cast<LPARAM>(wide));
  if (index == CB_ERR && keep)
    index = SendDlgItemMessageW(dialog, control, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide));
  if (index != CB_ERR) SendDlgItemMessageW(dialog, control, CB_SETCURSEL, index, 0);
}

// ---- Font page ----

struct FaceFill {
  HWND latin;
  HWND hangul;
  bool vertical;
};

int CALLBACK AddFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM context) {
  const FaceFill* fill = reinterpret_cast<const FaceFill*>(context);
  const wchar_t* face = font->lfFaceName;
  if (face[0] == L'@' && !fill->vertical) return 1;
  BYTE charset = font->lfCharSet;
  if (charset == SYMBOL_CHARSET) return 1;
  HWND list =
      (charset == HANGUL_CHARSET || charset == SHIFTJIS_CHARSET || charset == CHINESEBIG5_CHARSET)
          ? fill->hangul
          : fill->latin;
  if (SendMessageW(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                   reinterpret_cast<LPARAM>(face)) == CB_ERR)
    SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(face));
  return 1;
}

void FillFaceLists(HWND page) {
  FaceFill fill = {GetDlgItem(page, IDC_ENG_FONT), GetDlgItem(page, IDC_HAN_FONT),
                   IsDlgButtonChecked(page, IDC_VERTICAL_FACES) == BST_CHECKED};
  SendMessageW(fill.latin, CB_RESETCONTENT, 0, 0);
  SendMessageW(fill.hangul, CB_RESETCONTENT, 0, 0);
  HDC dc = GetDC(page);
  LOGFONTW all = {};
  all.lfCharSet = DEFAULT_CHARSET;
  EnumFontFamiliesExW(dc, &all, AddFace, reinterpret_cast<LPARAM>(&fill), 0);
  ReleaseDC(page, dc);
  char face[100];
  ReadText(kConfigSection, "EngFontName", face, sizeof face, "Courier New");
  SelectText(page, IDC_ENG_FONT, face, true);
  ReadText(kConfigSection, "HanFontName", face, sizeof face, GetStr(81));
  SelectText(page, IDC_HAN_FONT, face, true);
}

void FillBitmapFontList(HWND page) {
  char folder[800];
  ProgramFolder(folder, sizeof folder);
  char pattern[820];
  FormatStr(pattern, sizeof pattern, "%s/*.fnt", folder);
  FindData found;
  FileHandle search = FileFindFirst(pattern, &found);
  if (search == kInvalidFile) return;
  do {
    if (found.attributes & kAttrDirectory) continue;
    char* dot = strrchr(found.name, '.');
    if (dot) *dot = '\0';
    wchar_t wide[300];
    if (MultiByteToWideChar(CP_UTF8, 0, found.name, -1, wide, 300))
      SendDlgItemMessageW(page, IDC_SELF_FONT, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(wide));
  } while (FileFindNext(search, &found));
  FileFindClose(search);
}

void InitFontPage(HWND page) {
  TranslateDialog(page);
  TranslateSheetButtons(page);
  FillFaceLists(page);
  SetSpin(page, IDC_ENG_SIZE_SPIN, 8, 32, ReadInt(kConfigSection, "EngFontSize", 16));
  SetSpin(page, IDC_HAN_SIZE_SPIN, 8, 32, ReadInt(kConfigSection, "HanFontSize", 16));
  SetSpin(page, IDC_HAN_OFFSET_SPIN, -10, 10, g_display.hangulOffsetY);
  CheckDlgButton(page, IDC_USE_SELF_FONT, g_display.useBitmapFont ? BST_CHECKED : BST_UNCHECKED);
  FillBitmapFontList(page);
  char name[260];
  ReadText(kConfigSection, "SelfFontName", name, sizeof name, "");
  SelectText(page, IDC_SELF_FONT, name);
}

void ApplyFontPage(HWND page) {
  WriteNums(kConfigSection, "EngFontSize", GetSpin(page, IDC_ENG_SIZE_SPIN));
  WriteNums(kConfigSection, "HanFontSize", GetSpin(page, IDC_HAN_SIZE_SPIN));
  int offset = GetSpin(page, IDC_HAN_OFFSET_SPIN);
  WriteNums(kConfigSection, "HanFontOfsY", offset);
  bool useFile = IsDlgButtonChecked(page, IDC_USE_SELF_FONT) == BST_CHECKED;
  WriteNums(kConfigSection, "UseSelfFontFg", useFile ? 1 : 0);
  char text[300];
  GetControlText(page, IDC_ENG_FONT, text, sizeof text, false);
  WriteText(kConfigSection, "EngFontName", text);
  GetControlText(page, IDC_HAN_FONT, text, sizeof text, false);
  WriteText(kConfigSection, "HanFontName", text);
  GetControlText(page, IDC_SELF_FONT, text, sizeof text, false);
  WriteText(kConfigSection, "SelfFontName", text);
  g_display.hangulOffsetY = offset;
  g_display.useBitmapFont = useFile;
}

INT_PTR CALLBACK FontPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      InitFontPage(page);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDC_VERTICAL_FACES && HIWORD(wParam) == BN_CLICKED) FillFaceLists(page);
      return TRUE;
    case WM_NOTIFY: {
      const NMHDR* notify = reinterpret_cast<const NMHDR*>(lParam);
      if (HandleCommonNotify(page, notify, 0)) return TRUE;
      if (notify->code == PSN_APPLY) {
        ApplyFontPage(page);
        g_confirmed = true;
        SetResult(page, PSNRET_NOERROR);
        return TRUE;
      }
      break;
    }
  }
  return FALSE;
}

// ---- Colour page ----

unsigned g_pending[kColourClassCount];
HBRUSH g_samples[kColourClassCount];

void RenewSample(HWND page, int index) {
  if (g_samples[index]) DeleteObject(g_samples[index]);
  g_samples[index] = CreateSolidBrush(g_pending[index] & 0xFFFFFF);
  InvalidateRect(GetDlgItem(page, IDC_COLOUR_SAMPLE0 + index), nullptr, TRUE);
}

void DropSamples() {
  for (HBRUSH& brush : g_samples) {
    if (brush) DeleteObject(brush);
    brush = nullptr;
  }
}

void ChooseClassColour(HWND page, int index) {
  static COLORREF custom[16];
  CHOOSECOLORW choose = {};
  choose.lStructSize = sizeof choose;
  choose.hwndOwner = page;
  choose.rgbResult = g_pending[index] & 0xFFFFFF;
  choose.lpCustColors = custom;
  choose.Flags = CC_RGBINIT | CC_FULLOPEN;
  if (!ChooseColorW(&choose)) return;
  g_pending[index] = choose.rgbResult;
  RenewSample(page, index);
}

INT_PTR CALLBACK ColourPageProc(HWND page, UINT message, WPARAM wParam, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG:
      TranslateDialog(page);
      TranslateSheetButtons(page);
      for (int i = 0; i < kColourClassCount; ++i) {
        SetControlText(page, IDC_COLOUR_LABEL0 + i, ColourKey(i), false);
        g_pending[i] = ClassColour(i);
        RenewSample(page, i);
      }
      return TRUE;
    case WM_CTLCOLORSTATIC: {
      int id = GetDlgCtrlID(reinterpret_cast<HWND>(lParam));
      if (id >= IDC_COLOUR_SAMPLE0 && id < IDC_COLOUR_SAMPLE0 + kColourClassCount)
        return reinterpret_cast<INT_PTR>(g_samples[id - IDC_COLOUR_SAMPLE0]);
      return FALSE;
    }
    case WM_COMMAND: {
      int id = LOWORD(wParam);
      if (id >= IDC_COLOUR_BUTTON0 && id < IDC_COLOUR_BUTTON0 + kColourClassCount)
        ChooseClassColour(page, id - IDC_COLOUR_BUTTON0);
      return TRUE;
    }
    case WM_NOTIFY: {
      const NMHDR* notify = reinterpret_cast<const NMHDR*>(lParam);
      if (HandleCommonNotify(page, notify, 1)) return TRUE;
      if (notify->code == PSN_APPLY) {
        for (int i = 0; i < kColourClassCount; ++i)
          SetClassColour(i, g_pending[i]);
        SaveColours();
        g_confirmed = true;
        SetResult(page, PSNRET_NOERROR);
        return TRUE;
      }
      break;
    }
    case WM_DESTROY:
      DropSamples();
      break;
  }
  return FALSE;
}

// ---- Other page ----

bool g_languageChanged;

// The chosen language is stored by name; Korean, the list's first entry, is stored as none.
void ApplyLanguageChoice(HWND page) {
  char chosen[kLanguageNameSize] = "";
  if (SendDlgItemMessageW(page, IDC_LANGUAGE, CB_GETCURSEL, 0, 0) > 0)
    GetControlText(page, IDC_LANGUAGE, chosen, sizeof chosen, false);
  char stored[kLanguageNameSize];
  ReadText(kConfigSection, "Language", stored, sizeof stored, "");
  if (strcmp(chosen, stored) == 0) return;
  WriteText(kConfigSection, "Language", chosen);
  g_languageChanged = true;
}

INT_PTR CALLBACK OtherPageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
  switch (message) {
    case WM_INITDIALOG: {
      TranslateDialog(page);
      TranslateSheetButtons(page);
      SetSpin(page, IDC_WHEEL_LINES_SPIN, 1, 1000, ReadInt(kConfigSection, "WheelScrollLines", 1));
      char language[kLanguageNameSize];
      ReadText(kConfigSection, "Language", language, sizeof language, "");
      FillLanguageList(GetDlgItem(page, IDC_LANGUAGE), language);
      return TRUE;
    }
    case WM_NOTIFY: {
      const NMHDR* notify = reinterpret_cast<const NMHDR*>(lParam);
      if (HandleCommonNotify(page, notify, 2)) return TRUE;
      if (notify->code == PSN_APPLY) {
        WriteNums(kConfigSection, "WheelScrollLines", GetSpin(page, IDC_WHEEL_LINES_SPIN));
        ApplyLanguageChoice(page);
        g_confirmed = true;
        SetResult(page, PSNRET_NOERROR);
        return TRUE;
      }
      break;
    }
  }
  return FALSE;
}

}  // namespace

bool ShowOptionsSheet(HWND frame) {
  static wchar_t titles[3][64];
  static const int kTemplates[3] = {IDD_OPT_FONT, IDD_OPT_COLOUR, IDD_OPT_OTHER};
  static const DLGPROC kProcs[3] = {FontPageProc, ColourPageProc, OtherPageProc};
  PROPSHEETPAGEW pages[3] = {};
  for (int i = 0; i < 3; ++i) {
    MultiByteToWideChar(CP_UTF8, 0, GetStr(134 + i), -1, titles[i], 64);
    titles[i][63] = L'\0';
    pages[i].dwSize = sizeof pages[i];
    pages[i].dwFlags = PSP_USETITLE;
    pages[i].hInstance = g_frame.instance;
    pages[i].pszTemplate = MAKEINTRESOURCEW(kTemplates[i]);
    pages[i].pfnDlgProc = kProcs[i];
    pages[i].pszTitle = titles[i];
  }
  wchar_t caption[64];
  MultiByteToWideChar(CP_UTF8, 0, GetStr(133), -1, caption, 64);
  caption[63] = L'\0';
  PROPSHEETHEADERW header = {};
  header.dwSize = sizeof header;
  header.dwFlags = PSH_PROPSHEETPAGE | PSH_USEHICON | PSH_NOAPPLYNOW;
  header.hwndParent = frame;
  header.hInstance = g_frame.instance;
  header.hIcon = reinterpret_cast<HICON>(GetClassLongPtrW(frame, GCLP_HICON));
  header.pszCaption = caption;
  header.nPages = 3;
  header.nStartPage = static_cast<UINT>(g_frame.optionsStartPage);
  header.ppsp = pages;
  g_confirmed = false;
  g_languageChanged = false;
  PropertySheetW(&header);
  return g_confirmed;
}

bool OptionsChangedLanguage() {
  return g_languageChanged;
}
