// The shared drawing objects of the editor windows: the Latin and Hangul fonts or a bitmap font
// file, a pen, four brushes, and the character cell the editor lays text out with.
#pragma once
#include <windows.h>

#include "frame/bitmap_font.h"

struct DisplayObjects {
  HFONT latinFont;
  HFONT hangulFont;
  unsigned char* bitmapFontFile;  // the whole file, or null
  BitmapFont bitmapFont;
  HPEN greyPen;        // RGB C0 C0 C0
  HBRUSH brushes[4];   // E0 E0 F4, highlight, yellow, the editor's background colour
  int hangulOffsetY;   // -10 ... 10
  bool useBitmapFont;  // the flag as set; the file may still be missing
  int cellWidth;
  int cellHeight;
  int wheelLines;  // `WheelScrollLines`, 1 ... 1000: lines one wheel notch moves
};

extern DisplayObjects g_display;

void CreateDisplayObjects();
void DeleteDisplayObjects();
// The cell from the bitmap font's header, or else from the Latin font's metrics.
void ComputeCellSize(HWND frame);
