// Painting an editor window: every visible line on the cell grid, through an off-screen bitmap so
// that nothing flickers, with the colour runs, the selection and the bookmark marks.
#include "editor/colour_settings.h"
#include "editor/comment_states.h"
#include "editor/document.h"
#include "editor/view_input.h"
#include "frame/display_objects.h"
#include "frame/editor_window.h"

namespace {

constexpr int kNoSelection = -1;

void PaintMargin(HDC dc, const EditorWindow* editor, int line, int y) {
  const EditorView* view = &editor->view;
  RECT margin = {0, y, view->leftMargin, y + CellHeight()};
  FillRect(
      dc, &margin,
      g_display.brushes[0] ? g_display.brushes[0] : reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
  if (LineHasBookmark(editor->document, line)) {
    RECT flag = {1, y + 2, view->leftMargin - 1, y + CellHeight() - 2};
    FillRect(dc, &flag,
             g_display.brushes[2] ? g_display.brushes[2]
                                  : static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
  }
}

// Draws `unit` from the loaded bitmap font in `colour`, leaving the pixels of the cell that the
// glyph does not set as they are; false when no font is loaded or it has no glyph for the unit.
bool DrawBitmapGlyph(HDC dc, char16_t unit, int x, int y, COLORREF colour) {
  if (!g_display.bitmapFontFile) return false;
  int rowBytes = 0, width = 0;
  const unsigned char* rows = BitmapFontGlyph(g_display.bitmapFont, unit, &rowBytes, &width);
  if (!rows) return false;
  const int height = g_display.bitmapFont.height;
  // A monochrome bitmap's rows are whole 16-bit words.
  const int stride = (rowBytes + 1) & ~1;
  unsigned char bits[kBitmapFontMaxCell * (kBitmapFontMaxCell / 8 + 2)] = {};
  for (int row = 0; row < height; ++row) {
    for (int i = 0; i < rowBytes; ++i)
      bits[row * stride + i] = rows[row * rowBytes + i];
  }
  HBITMAP glyph = CreateBitmap(width, height, 1, 1, bits);
  HDC source = CreateCompatibleDC(dc);
  HBRUSH brush = CreateSolidBrush(colour);
  if (glyph && source && brush) {
    HGDIOBJ oldGlyph = SelectObject(source, glyph);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    // Set bits come out white, clear ones black; white takes the brush, black keeps the cell.
    COLORREF oldBack = SetBkColor(dc, RGB(255, 255, 255));
    SetTextColor(dc, RGB(0, 0, 0));
    constexpr DWORD kBrushWhereSourceIsSet = 0x00E20746;
    BitBlt(dc, x, y, width, height, source, 0, 0, kBrushWhereSourceIsSet);
    SetBkColor(dc, oldBack);
    SelectObject(dc, oldBrush);
    SelectObject(source, oldGlyph);
  }
  if (brush) DeleteObject(brush);
  if (source) DeleteDC(source);
  if (glyph) DeleteObject(glyph);
  return true;
}

void PaintLine(HDC dc, EditorWindow* editor, int line, int y, int right) {
  const EditorView* view = &editor->view;
  const int cell = CellWidth();
  const int origin = view->leftMargin - view->firstColumn * cell;
  PaintMargin(dc, editor, line, y);
  LineRecord* record = DocumentLine(editor->document, line);

  int selFrom = kNoSelection, selTo = kNoSelection;
  if (SelectedColumns(view, line, &selFrom, &selTo)) {
    int left = origin + selFrom * cell;
    if (left < view->leftMargin) left = view->leftMargin;
    RECT band = {left, y, origin + selTo * cell, y + CellHeight()};
    if (band.right > right) band.right = right;
    if (band.right > band.left) FillRect(dc, &band, GetSysColorBrush(COLOR_HIGHLIGHT));
  }
  if (!record) return;

  ColourDocumentLine(editor->document, line, &editor->runs);

  const ColourRuns* runs = editor->runs;
  int runIndex = 0;
  int colourClass = kClassNormal;
  HGDIOBJ font = nullptr;
  for (int i = 0, column = 0; i < record->length; ++i) {
    while (runs && runIndex < runs->count && runs->entries[runIndex].start <= i) {
      colourClass = runs->entries[runIndex].colourClass;
      ++runIndex;
    }
    char16_t unit = record->text[i];
    int width = UnitColumns(unit);
    // A surrogate pair is drawn as the one character it is.
    int units = CharacterUnits(record->text, record->length, i);
    int x = origin + column * cell;
    column += width;
    i += units - 1;
    // A wide character cut by the left edge is not shown at all.
    if (column - width < view->firstColumn) continue;
    if (x >= right) break;
    if (unit == u' ') continue;
    bool selected = column - width >= selFrom && column - width < selTo;
    COLORREF colour = selected ? GetSysColor(COLOR_HIGHLIGHTTEXT) : ClassColour(colourClass);
    if (units == 1 && DrawBitmapGlyph(dc, unit, x, y, colour)) continue;
    SetTextColor(dc, colour);
    HGDIOBJ wanted = width == 2 ? g_display.hangulFont : g_display.latinFont;
    if (wanted && wanted != font) {
      SelectObject(dc, wanted);
      font = wanted;
    }
    wchar_t glyph[2] = {static_cast<wchar_t>(unit), static_cast<wchar_t>(record->text[i])};
    TextOutW(dc, x, width == 2 ? y + g_display.hangulOffsetY : y, glyph, units);
  }
}

}  // namespace

void PaintEditor(HWND window, EditorWindow* editor) {
  PAINTSTRUCT paint;
  HDC dc = BeginPaint(window, &paint);
  RECT client;
  GetClientRect(window, &client);
  if (client.right <= 0 || client.bottom <= 0) {
    EndPaint(window, &paint);
    return;
  }
  if (editor->hasFocus) HideCaret(window);
  HDC memory = CreateCompatibleDC(dc);
  HBITMAP bitmap = CreateCompatibleBitmap(dc, client.right, client.bottom);
  HGDIOBJ oldBitmap = SelectObject(memory, bitmap);
  HGDIOBJ oldFont = SelectObject(
      memory, g_display.latinFont ? g_display.latinFont : GetStockObject(SYSTEM_FIXED_FONT));
  HBRUSH background = CreateSolidBrush(ClassColour(kClassBackground));
  FillRect(memory, &client, background);
  DeleteObject(background);
  SetBkMode(memory, TRANSPARENT);

  const EditorView* view = &editor->view;
  const int height = CellHeight();
  for (int line = view->firstLine, y = 0; y < client.bottom && line < editor->document->lineCount;
       ++line, y += height) {
    if (y + height <= paint.rcPaint.top || y >= paint.rcPaint.bottom) continue;
    PaintLine(memory, editor, line, y, client.right);
  }
  // Rows below the last line still get their margin.
  int rows = editor->document->lineCount - view->firstLine;
  for (int y = (rows > 0 ? rows : 0) * height; y < client.bottom; y += height) {
    RECT margin = {0, y, view->leftMargin, y + height};
    FillRect(
        memory, &margin,
        g_display.brushes[0] ? g_display.brushes[0] : reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1));
  }

  BitBlt(dc, 0, 0, client.right, client.bottom, memory, 0, 0, SRCCOPY);
  SelectObject(memory, oldFont);
  SelectObject(memory, oldBitmap);
  DeleteObject(bitmap);
  DeleteDC(memory);
  if (editor->hasFocus) ShowCaret(window);
  EndPaint(window, &paint);
}

void RepaintEditorLine(EditorWindow* editor, int line) {
  const EditorView* view = &editor->view;
  int row = line - view->firstLine;
  if (row < 0 || row * CellHeight() >= view->textHeight) return;
  RECT band = {0, row * CellHeight(), view->leftMargin + view->textWidth, (row + 1) * CellHeight()};
  InvalidateRect(static_cast<HWND>(view->window), &band, FALSE);
}
