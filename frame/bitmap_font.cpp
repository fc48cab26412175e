#include "frame/bitmap_font.h"

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"

namespace {

constexpr char16_t kFirstSyllable = 0xAC00;
constexpr char16_t kLastSyllable = 0xD7A3;

int Word(const unsigned char* p) {
  return p[0] | p[1] << 8;
}

}  // namespace

bool ParseBitmapFont(const void* data, size_t size, BitmapFont* font) {
  if (!data || size < kBitmapFontHeaderSize) return false;
  const unsigned char* bytes = static_cast<const unsigned char*>(data);
  int width = Word(bytes + 18);
  int height = Word(bytes + 20);
  // A full-width cell of one pixel would give half-width cells of none.
  if (width < 2 || height < 1 || width > kBitmapFontMaxCell || height > kBitmapFontMaxCell)
    return false;
  font->data = bytes;
  font->size = size;
  font->fullWidth = width;
  font->height = height;
  return true;
}

const unsigned char* BitmapFontGlyph(const BitmapFont& font, char16_t unit, int* rowBytes,
                                     int* width) {
  int halfWidth = font.fullWidth / 2;
  size_t halfRow = static_cast<size_t>((halfWidth + 7) / 8);
  size_t fullRow = static_cast<size_t>((font.fullWidth + 7) / 8);
  size_t offset;
  size_t row;
  if (unit < 256) {
    row = halfRow;
    offset = kBitmapFontHeaderSize + unit * halfRow * font.height;
    *width = halfWidth;
  } else if (unit >= kFirstSyllable && unit <= kLastSyllable) {
    row = fullRow;
    offset = kBitmapFontHeaderSize + 256 * halfRow * font.height +
             (unit - kFirstSyllable) * fullRow * font.height;
    *width = font.fullWidth;
  } else {
    return nullptr;
  }
  if (offset + row * font.height > font.size) return nullptr;
  *rowBytes = static_cast<int>(row);
  return font.data + offset;
}

unsigned char* LoadBitmapFontFile(const char* folder, const char* name, BitmapFont* font,
                                  int owner) {
  if (!name || !name[0]) return nullptr;
  char path[800];
  if (FormatStr(path, sizeof path, "%s/%s.fnt", folder, name) > static_cast<int>(sizeof path))
    return nullptr;
  size_t length = 0;
  char* data = ReadWholeFile(path, &length, owner);
  if (!data) return nullptr;
  if (!ParseBitmapFont(data, length, font)) {
    FreeMem(data);
    return nullptr;
  }
  return reinterpret_cast<unsigned char*>(data);
}
