// The file is walked twice: once to check every chunk and learn the size of the image data, once
// to join the IDAT chunks into one zlib stream. The scanlines inflate into a buffer of exactly
// the size the header implies, are unfiltered in place, then expanded to 8-bit RGBA; the caller's
// pixel order is made last.
#include "images/png.h"

#include <cstring>

#include "foundation/memory.h"
#include "images/images_owners.h"
#include "images/inflate.h"

namespace {

struct CrcTable {
  uint32_t entry[256];
};

constexpr CrcTable MakeCrcTable() {
  CrcTable table = {};
  for (uint32_t n = 0; n < 256; ++n) {
    uint32_t c = n;
    for (int k = 0; k < 8; ++k)
      c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    table.entry[n] = c;
  }
  return table;
}
constexpr CrcTable kCrcTable = MakeCrcTable();

constexpr uint8_t kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};

struct Header {
  uint32_t width, height;
  int depth, colourType, interlace;
  int channels;
  int bitsPerPixel;
  uint8_t palette[256][3];
  int paletteCount;
  uint8_t paletteAlpha[256];
  int alphaCount;   // tRNS entries of a palette image
  bool hasKey;      // tRNS of a grey or RGB image
  uint16_t key[3];  // the transparent grey or RGB sample, at the file's depth
};

uint32_t BigEndian32(const uint8_t* p) {
  return static_cast<uint32_t>(p[0]) << 24 | p[1] << 16 | p[2] << 8 | p[3];
}

bool IsChunk(const uint8_t* type, const char* name) {
  return memcmp(type, name, 4) == 0;
}

int ReadHeader(const uint8_t* data, uint32_t length, Header* h) {
  if (length != 13) return kPngBadHeader;
  h->width = BigEndian32(data);
  h->height = BigEndian32(data + 4);
  h->depth = data[8];
  h->colourType = data[9];
  h->interlace = data[12];
  if (data[10] != 0 || data[11] != 0 || h->interlace > 1) return kPngBadHeader;
  if (h->width == 0 || h->height == 0 || h->width > 0x7FFFFFFF || h->height > 0x7FFFFFFF) {
    return kPngBadHeader;
  }
  bool lowDepths = h->depth == 1 || h->depth == 2 || h->depth == 4;
  bool highDepths = h->depth == 8 || h->depth == 16;
  switch (h->colourType) {
    case 0:
      h->channels = 1;
      break;
    case 2:
      h->channels = 3, lowDepths = false;
      break;
    case 3:
      h->channels = 1, highDepths = h->depth == 8;
      break;
    case 4:
      h->channels = 2, lowDepths = false;
      break;
    case 6:
      h->channels = 4, lowDepths = false;
      break;
    default:
      return kPngBadHeader;
  }
  if (!lowDepths && !highDepths) return kPngBadHeader;
  h->bitsPerPixel = h->channels * h->depth;
  if (h->width > kPngMaxSide || h->height > kPngMaxSide ||
      int64_t{h->width} * h->height > kPngMaxPixels) {
    return kPngTooLarge;
  }
  return kPngOk;
}

// A tRNS chunk that does not fit the image is ignored, as common decoders do.
void ReadTransparency(const uint8_t* data, uint32_t length, Header* h) {
  if (h->colourType == 3) {
    if (length == 0 || static_cast<int>(length) > h->paletteCount) return;
    memcpy(h->paletteAlpha, data, length);
    h->alphaCount = static_cast<int>(length);
  } else if (h->colourType == 0 && length == 2) {
    h->hasKey = true;
    h->key[0] = static_cast<uint16_t>(data[0] << 8 | data[1]);
  } else if (h->colourType == 2 && length == 6) {
    h->hasKey = true;
    for (int i = 0; i < 3; ++i)
      h->key[i] = static_cast<uint16_t>(data[2 * i] << 8 | data[2 * i + 1]);
  }
}

// Walks the chunks: checks each, fills the header, and adds up the image data.
int ReadChunks(const uint8_t* file, size_t size, Header* h, size_t* idatBytes) {
  if (size < 8 || memcmp(file, kSignature, 8) != 0) return kPngNotPng;
  size_t pos = 8;
  bool seenHeader = false, seenPalette = false, inData = false, afterData = false;
  *idatBytes = 0;
  for (;;) {
    if (size - pos < 12) return kPngTruncated;
    uint32_t length = BigEndian32(file + pos);
    const uint8_t* type = file + pos + 4;
    if (length > 0x7FFFFFFF) return kPngBadChunk;
    if (size - pos - 12 < length) return kPngTruncated;
    const uint8_t* data = type + 4;
    if (Crc32(0, type, length + 4) != BigEndian32(data + length)) return kPngBadCrc;
    pos += 12 + size_t{length};
    for (int i = 0; i < 4; ++i) {
      uint8_t c = static_cast<uint8_t>(type[i] | 0x20);
      if (c < 'a' || c > 'z') return kPngBadChunk;
    }
    if (!seenHeader) {
      if (!IsChunk(type, "IHDR")) return kPngBadHeader;
      int status = ReadHeader(data, length, h);
      if (status != kPngOk) return status;
      seenHeader = true;
      continue;
    }
    bool isData = IsChunk(type, "IDAT");
    if (inData && !isData) afterData = true;
    if (isData) {
      if (afterData) return kPngBadChunk;
      if (h->colourType == 3 && !seenPalette) return kPngBadPalette;
      inData = true;
      *idatBytes += length;
    } else if (IsChunk(type, "IEND")) {
      return inData ? kPngOk : kPngBadChunk;
    } else if (IsChunk(type, "PLTE")) {
      if (seenPalette || inData) return kPngBadChunk;
      if (length == 0 || length % 3 != 0 || length > 768) return kPngBadPalette;
      seenPalette = true;
      // Grey images must not have one and true-colour ones only suggest one: both are ignored.
      if (h->colourType == 3) {
        h->paletteCount = static_cast<int>(length / 3);
        if (h->paletteCount > (1 << h->depth)) return kPngBadPalette;
        memcpy(h->palette, data, length);
      }
    } else if (IsChunk(type, "tRNS")) {
      if (!inData && !afterData) ReadTransparency(data, length, h);
    } else if (IsChunk(type, "IHDR") || !(type[0] & 0x20)) {
      return kPngBadChunk;  // a second header or a critical chunk this reader does not know
    }
  }
}

void JoinImageData(const uint8_t* file, uint8_t* target) {
  size_t pos = 8;
  for (;;) {
    uint32_t length = BigEndian32(file + pos);
    const uint8_t* type = file + pos + 4;
    if (IsChunk(type, "IEND")) return;
    if (IsChunk(type, "IDAT")) {
      memcpy(target, type + 4, length);
      target += length;
    }
    pos += 12 + size_t{length};
  }
}

struct Pass {
  uint32_t x0, y0, dx, dy;
};
constexpr Pass kWholeImage = {0, 0, 1, 1};
constexpr Pass kAdam7[7] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                            {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};

uint32_t PassSide(uint32_t side, uint32_t start, uint32_t step) {
  return side > start ? (side - start + step - 1) / step : 0;
}

size_t RowBytes(const Header& h, uint32_t width) {
  return (size_t{width} * static_cast<size_t>(h.bitsPerPixel) + 7) / 8;
}

// Bytes of the filtered scanlines: a filter byte and the packed samples of each row of each pass.
size_t ScanlineBytes(const Header& h) {
  if (!h.interlace) return size_t{h.height} * (1 + RowBytes(h, h.width));
  size_t total = 0;
  for (const Pass& p : kAdam7) {
    uint32_t w = PassSide(h.width, p.x0, p.dx), rows = PassSide(h.height, p.y0, p.dy);
    if (w && rows) total += size_t{rows} * (1 + RowBytes(h, w));
  }
  return total;
}

inline uint8_t Paeth(int a, int b, int c) {
  int p = a + b - c;
  int pa = p > a ? p - a : a - p, pb = p > b ? p - b : b - p, pc = p > c ? p - c : c - p;
  if (pa <= pb && pa <= pc) return static_cast<uint8_t>(a);
  return static_cast<uint8_t>(pb <= pc ? b : c);
}

bool Unfilter(int filter, uint8_t* row, const uint8_t* prior, size_t n, size_t bpp) {
  switch (filter) {
    case 0:
      return true;
    case 1:
      for (size_t i = bpp; i < n; ++i)
        row[i] = static_cast<uint8_t>(row[i] + row[i - bpp]);
      return true;
    case 2:
      for (size_t i = 0; i < n; ++i)
        row[i] = static_cast<uint8_t>(row[i] + prior[i]);
      return true;
    case 3:
      for (size_t i = 0; i < bpp && i < n; ++i)
        row[i] = static_cast<uint8_t>(row[i] + (prior[i] >> 1));
      for (size_t i = bpp; i < n; ++i)
        row[i] = static_cast<uint8_t>(row[i] + ((row[i - bpp] + prior[i]) >> 1));
      return true;
    case 4:
      for (size_t i = 0; i < bpp && i < n; ++i)
        row[i] = static_cast<uint8_t>(row[i] + prior[i]);
      for (size_t i = bpp; i < n; ++i)
        row[i] = static_cast<uint8_t>(row[i] + Paeth(row[i - bpp], prior[i], prior[i - bpp]));
      return true;
  }
  return false;
}

// 16-bit samples to 8 bits, truncated (v * 255 / 65535), as ImageMagick reduces them: the
// pictures then compare equal byte for byte.
inline uint8_t Narrow(unsigned v) {
  return static_cast<uint8_t>(v / 257);
}
// Alpha the other way round: ImageMagick keeps opacity (65535 - alpha) and truncates that.
inline uint8_t NarrowAlpha(unsigned v) {
  return static_cast<uint8_t>(255 - (65535 - v) / 257);
}

// One unfiltered row of `count` pixels to straight RGBA bytes, `stride` bytes apart.
bool ExpandRow(const Header& h, const uint8_t* row, uint32_t count, uint8_t* out, size_t stride) {
  const int depth = h.depth;
  for (uint32_t i = 0; i < count; ++i, out += stride) {
    unsigned r, g, b, a = 255;
    if (depth < 8) {
      size_t bit = size_t{i} * static_cast<size_t>(depth);
      unsigned v = (row[bit / 8] >> (8 - depth - bit % 8)) & ((1u << depth) - 1);
      if (h.colourType == 3) {
        if (static_cast<int>(v) >= h.paletteCount) return false;
        r = h.palette[v][0], g = h.palette[v][1], b = h.palette[v][2];
        if (static_cast<int>(v) < h.alphaCount) a = h.paletteAlpha[v];
      } else {
        r = g = b = v * (255 / ((1u << depth) - 1));
        if (h.hasKey && v == h.key[0]) a = 0;
      }
    } else if (depth == 8) {
      const uint8_t* s = row + size_t{i} * static_cast<size_t>(h.channels);
      switch (h.colourType) {
        case 0:
          r = g = b = s[0];
          if (h.hasKey && s[0] == h.key[0]) a = 0;
          break;
        case 2:
          r = s[0], g = s[1], b = s[2];
          if (h.hasKey && r == h.key[0] && g == h.key[1] && b == h.key[2]) a = 0;
          break;
        case 3:
          if (s[0] >= h.paletteCount) return false;
          r = h.palette[s[0]][0], g = h.palette[s[0]][1], b = h.palette[s[0]][2];
          if (s[0] < h.alphaCount) a = h.paletteAlpha[s[0]];
          break;
        case 4:
          r = g = b = s[0], a = s[1];
          break;
        default:
          r = s[0], g = s[1], b = s[2], a = s[3];
          break;
      }
    } else {
      const uint8_t* s = row + size_t{i} * static_cast<size_t>(h.channels) * 2;
      unsigned v[4];
      for (int c = 0; c < h.channels; ++c)
        v[c] = static_cast<unsigned>(s[2 * c] << 8 | s[2 * c + 1]);
      switch (h.colourType) {
        case 0:
          r = g = b = Narrow(v[0]);
          if (h.hasKey && v[0] == h.key[0]) a = 0;
          break;
        case 2:
          r = Narrow(v[0]), g = Narrow(v[1]), b = Narrow(v[2]);
          if (h.hasKey && v[0] == h.key[0] && v[1] == h.key[1] && v[2] == h.key[2]) a = 0;
          break;
        case 4:
          r = g = b = Narrow(v[0]), a = NarrowAlpha(v[1]);
          break;
        default:
          r = Narrow(v[0]), g = Narrow(v[1]), b = Narrow(v[2]), a = NarrowAlpha(v[3]);
          break;
      }
    }
    out[0] = static_cast<uint8_t>(r);
    out[1] = static_cast<uint8_t>(g);
    out[2] = static_cast<uint8_t>(b);
    out[3] = static_cast<uint8_t>(a);
  }
  return true;
}

// Unfilters and expands every pass into the picture (straight RGBA bytes).
int DecodeScanlines(const Header& h, uint8_t* raw, uint8_t* picture) {
  size_t widest = RowBytes(h, h.width);
  uint8_t* zero = static_cast<uint8_t*>(AllocMem(widest + 1, kOwnerPngRow));
  uint8_t* line =
      h.interlace ? static_cast<uint8_t*>(AllocMem(size_t{h.width} * 4, kOwnerPngRow)) : nullptr;
  if (!zero || (h.interlace && !line)) {
    FreeMem(zero);
    FreeMem(line);
    return kPngNoMemory;
  }
  memset(zero, 0, widest + 1);
  const size_t bpp = h.bitsPerPixel >= 8 ? static_cast<size_t>(h.bitsPerPixel / 8) : 1;
  const Pass* passes = h.interlace ? kAdam7 : &kWholeImage;
  int passCount = h.interlace ? 7 : 1;
  int status = kPngOk;
  for (int p = 0; p < passCount && status == kPngOk; ++p) {
    const Pass& pass = passes[p];
    uint32_t w = PassSide(h.width, pass.x0, pass.dx), rows = PassSide(h.height, pass.y0, pass.dy);
    if (!w || !rows) continue;
    size_t n = RowBytes(h, w);
    const uint8_t* prior = zero;
    for (uint32_t y = 0; y < rows; ++y) {
      uint8_t* row = raw + 1;
      if (!Unfilter(raw[0], row, prior, n, bpp)) {
        status = kPngBadFilter;
        break;
      }
      uint8_t* target = picture + (size_t{pass.y0 + y * pass.dy} * h.width + pass.x0) * 4;
      bool fine;
      if (!h.interlace) {
        fine = ExpandRow(h, row, w, target, 4);
      } else {
        fine = ExpandRow(h, row, w, line, 4);
        for (uint32_t x = 0; fine && x < w; ++x)
          memcpy(target + size_t{x} * pass.dx * 4, line + x * 4, 4);
      }
      if (!fine) {
        status = kPngBadPalette;
        break;
      }
      prior = row;
      raw += 1 + n;
    }
  }
  FreeMem(zero);
  FreeMem(line);
  return status;
}

void ArrangePixels(uint8_t* p, size_t count, PngPixelOrder order) {
  if (order == kPngRgbaStraight) return;
  for (size_t i = 0; i < count; ++i, p += 4) {
    unsigned r = p[0], g = p[1], b = p[2], a = p[3];
    if (a != 255) {
      r = (r * a + 127) / 255, g = (g * a + 127) / 255, b = (b * a + 127) / 255;
    }
    p[0] = static_cast<uint8_t>(b);
    p[1] = static_cast<uint8_t>(g);
    p[2] = static_cast<uint8_t>(r);
  }
}

int InflateStatusToPng(int status) {
  return status == kInflateNoMemory ? kPngNoMemory : kPngBadData;
}

}  // namespace

int DecodePng(const uint8_t* data, size_t size, PngPixelOrder order, PngImage* image) {
  image->width = image->height = 0;
  image->pixels = nullptr;
  Header h = {};
  size_t idatBytes;
  int status = ReadChunks(data, size, &h, &idatBytes);
  if (status != kPngOk) return status;
  size_t rawBytes = ScanlineBytes(h);
  // Deflate cannot expand more than 1032 to 1: data too short for the scanlines fails before the
  // picture's memory is taken.
  if (rawBytes / 1032 > idatBytes) return kPngBadData;
  uint8_t* joined = static_cast<uint8_t*>(AllocMem(idatBytes ? idatBytes : 1, kOwnerPngData));
  uint8_t* raw = static_cast<uint8_t*>(AllocMem(rawBytes, kOwnerPngRaw));
  uint32_t* pixels =
      static_cast<uint32_t*>(AllocMem(size_t{h.width} * h.height * 4, kOwnerPngPixels));
  if (!joined || !raw || !pixels) {
    status = kPngNoMemory;
  } else {
    JoinImageData(data, joined);
    size_t written;
    int inflated = InflateZlib(joined, idatBytes, raw, rawBytes, &written);
    if (inflated != kInflateOk) {
      status = InflateStatusToPng(inflated);
    } else if (written != rawBytes) {
      status = kPngBadData;
    } else {
      status = DecodeScanlines(h, raw, reinterpret_cast<uint8_t*>(pixels));
    }
  }
  FreeMem(joined);
  FreeMem(raw);
  if (status != kPngOk) {
    FreeMem(pixels);
    return status;
  }
  ArrangePixels(reinterpret_cast<uint8_t*>(pixels), size_t{h.width} * h.height, order);
  image->width = static_cast<int>(h.width);
  image->height = static_cast<int>(h.height);
  image->pixels = pixels;
  return kPngOk;
}

void FreePngImage(PngImage* image) {
  FreeMem(image->pixels);
  image->pixels = nullptr;
  image->width = image->height = 0;
}

uint32_t Crc32(uint32_t crc, const uint8_t* data, size_t size) {
  crc = ~crc;
  for (size_t i = 0; i < size; ++i)
    crc = kCrcTable.entry[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

const char* PngStatusText(int status) {
  switch (status) {
    case kPngOk:
      return "ok";
    case kPngNotPng:
      return "not a PNG file";
    case kPngTruncated:
      return "the file ends early";
    case kPngBadCrc:
      return "a chunk's CRC is wrong";
    case kPngBadHeader:
      return "invalid IHDR";
    case kPngTooLarge:
      return "the picture is too large";
    case kPngBadPalette:
      return "invalid palette or palette index";
    case kPngBadChunk:
      return "invalid or misplaced chunk";
    case kPngBadData:
      return "invalid image data";
    case kPngBadFilter:
      return "invalid scanline filter";
    case kPngNoMemory:
      return "out of memory";
  }
  return "unknown PNG status";
}
