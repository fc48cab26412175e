// The program's own bitmap font files (".fnt" beside the program), read whole.
//
// Layout, all numbers unsigned 16-bit little-endian:
//   bytes 0-17   free (a name or a note; not read)
//   bytes 18-19  width of a full-width (two-column) cell in pixels
//   bytes 20-21  cell height in pixels
//   bytes 22-23  reserved, 0
//   from 24      256 half-width glyphs for units 0-255, then full-width glyphs for the Hangul
//                syllables U+AC00-U+D7A3 in order. A glyph is `height` rows; a row is the fewest
//                whole bytes that hold the cell's width, the leftmost pixel in the highest bit.
// A file may stop early: units whose glyph lies past its end, and units outside both ranges,
// have no glyph and are drawn with the system fonts.
#pragma once
#include <cstddef>

constexpr int kBitmapFontHeaderSize = 24;
constexpr int kBitmapFontMaxCell = 128;

struct BitmapFont {
  const unsigned char* data;
  size_t size;
  int fullWidth;  // two-column cell
  int height;
};

// Reads the header; false when the file is too short or a size is 0 or above kBitmapFontMaxCell.
bool ParseBitmapFont(const void* data, size_t size, BitmapFont* font);
// Cell size of the editor's layout: half the full width, and the height.
inline int BitmapFontCellWidth(const BitmapFont& font) {
  return font.fullWidth / 2;
}

// The glyph rows of `unit` and their row length in bytes, or null when the font has none.
const unsigned char* BitmapFontGlyph(const BitmapFont& font, char16_t unit, int* rowBytes,
                                     int* width);

// Reads "<folder>/<name>.fnt" whole (block of `owner`); null when the name is empty or the file
// is missing, unreadable or not a font.
unsigned char* LoadBitmapFontFile(const char* folder, const char* name, BitmapFont* font,
                                  int owner);
