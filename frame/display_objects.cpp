#include "frame/display_objects.h"

#include <cstring>

#include "editor/colour_runs.h"
#include "editor/colour_settings.h"
#include "foundation/fileutil.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/os_path.h"
#include "foundation/settings.h"
#include "frame/frame_owners.h"

DisplayObjects g_display;

namespace {

constexpr int kFaceSize = 32;

int CALLBACK TakeCharset(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM found) {
  *reinterpret_cast<BYTE*>(found) = font->lfCharSet;
  return 0;
}

// A face's own character set, so that a Hangul face gets Hangul glyphs under any code page.
BYTE FaceCharset(const wchar_t* face) {
  HDC dc = GetDC(nullptr);
  LOGFONTW probe = {};
  probe.lfCharSet = DEFAULT_CHARSET;
  wcsncpy(probe.lfFaceName, face, LF_FACESIZE - 1);
  BYTE charset = DEFAULT_CHARSET;
  EnumFontFamiliesExW(dc, &probe, TakeCharset, reinterpret_cast<LPARAM>(&charset), 0);
  ReleaseDC(nullptr, dc);
  return charset;
}

HFONT MakeFont(const char* nameKey, const char* fallbackFace, const char* sizeKey) {
  char face[kFaceSize * 3];
  ReadText(kConfigSection, nameKey, face, sizeof face, fallbackFace);
  LOGFONTW font = {};
  font.lfHeight = ReadInt(kConfigSection, sizeKey, 16);
  font.lfWeight = FW_NORMAL;
  MultiByteToWideChar(CP_UTF8, 0, face, -1, font.lfFaceName, LF_FACESIZE);
  font.lfFaceName[LF_FACESIZE - 1] = L'\0';
  font.lfCharSet = FaceCharset(font.lfFaceName);
  return CreateFontIndirectW(&font);
}

COLORREF Colour(unsigned value) {
  return static_cast<COLORREF>(value & 0xFFFFFF);
}

}  // namespace

void CreateDisplayObjects() {
  g_display.latinFont = MakeFont("EngFontName", "Courier New", "EngFontSize");
  g_display.hangulFont = MakeFont("HanFontName", GetStr(81), "HanFontSize");
  int offset = ReadInt(kConfigSection, "HanFontOfsY", 0);
  g_display.hangulOffsetY = offset < -10 ? -10 : offset > 10 ? 10 : offset;
  int wheel = ReadInt(kConfigSection, "WheelScrollLines", 1);
  g_display.wheelLines = wheel < 1 ? 1 : wheel > 1000 ? 1000 : wheel;
  g_display.useBitmapFont = ReadInt(kConfigSection, "UseSelfFontFg", 0) != 0;
  g_display.bitmapFontFile = nullptr;
  if (g_display.useBitmapFont) {
    char name[260];
    ReadText(kConfigSection, "SelfFontName", name, sizeof name, "");
    char folder[800];
    ProgramFolder(folder, sizeof folder);
    g_display.bitmapFontFile =
        LoadBitmapFontFile(folder, name, &g_display.bitmapFont, kOwnerBitmapFont);
  }
  g_display.greyPen = CreatePen(PS_SOLID, 1, RGB(0xC0, 0xC0, 0xC0));
  g_display.brushes[0] = CreateSolidBrush(RGB(0xE0, 0xE0, 0xF4));
  g_display.brushes[1] = CreateSolidBrush(GetSysColor(COLOR_HIGHLIGHT));
  g_display.brushes[2] = CreateSolidBrush(RGB(0xFF, 0xFF, 0x00));
  g_display.brushes[3] = CreateSolidBrush(Colour(ClassColour(kClassBackground)));
}

void DeleteDisplayObjects() {
  if (g_display.latinFont) DeleteObject(g_display.latinFont);
  if (g_display.hangulFont) DeleteObject(g_display.hangulFont);
  if (g_display.greyPen) DeleteObject(g_display.greyPen);
  for (HBRUSH& brush : g_display.brushes) {
    if (brush) DeleteObject(brush);
    brush = nullptr;
  }
  FreeMem(g_display.bitmapFontFile);
  g_display.bitmapFontFile = nullptr;
  g_display.latinFont = g_display.hangulFont = nullptr;
  g_display.greyPen = nullptr;
}

void ComputeCellSize(HWND frame) {
  if (g_display.bitmapFontFile) {
    g_display.cellWidth = BitmapFontCellWidth(g_display.bitmapFont);
    g_display.cellHeight = g_display.bitmapFont.height;
    return;
  }
  HDC dc = GetDC(frame);
  HGDIOBJ old = SelectObject(dc, g_display.latinFont);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(dc, &metrics);
  SelectObject(dc, old);
  ReleaseDC(frame, dc);
  g_display.cellWidth = metrics.tmAveCharWidth;
  g_display.cellHeight = metrics.tmHeight;
}
