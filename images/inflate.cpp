// Table-driven Huffman decoding with a 64-bit bit buffer. Each table entry packs the bits to
// consume, the kind of symbol, the count of extra bits and a value; codes longer than the first
// level's bits go through a link to a second-level table, as zlib's decoder does.
#include "images/inflate.h"

#include <cstring>

#include "foundation/memory.h"
#include "images/deflate_tables.h"
#include "images/images_owners.h"

namespace {

enum : uint32_t {
  kKindLiteral = 0,
  kKindBase = 1,  // a length or a distance: value is the base, extra bits follow
  kKindEnd = 2,
  kKindLink = 3,  // value is the second-level table's offset, extra its index bits
  kKindInvalid = 15,
};

constexpr uint32_t Entry(uint32_t kind, uint32_t extra, uint32_t value) {
  return kind << 4 | extra << 8 | value << 16;
}
constexpr uint32_t kInvalidEntry = Entry(kKindInvalid, 0, 0);

inline uint32_t EntryBits(uint32_t e) {
  return e & 15;
}
inline uint32_t EntryKind(uint32_t e) {
  return e >> 4 & 15;
}
inline uint32_t EntryExtra(uint32_t e) {
  return e >> 8 & 31;
}
inline uint32_t EntryValue(uint32_t e) {
  return e >> 16;
}

constexpr int kLitBits = 10;
constexpr int kDistBits = 8;
constexpr int kCodeLenBits = 7;
// A second-level table per first-level prefix at most, each no larger than the longest code asks.
constexpr int kLitTableSize = (1 << kLitBits) + 288 * (1 << (15 - kLitBits));
constexpr int kDistTableSize = (1 << kDistBits) + 32 * (1 << (15 - kDistBits));
constexpr int kCodeLenTableSize = 1 << kCodeLenBits;

uint32_t LitInfo(int symbol) {
  if (symbol < 256) return Entry(kKindLiteral, 0, static_cast<uint32_t>(symbol));
  if (symbol == 256) return Entry(kKindEnd, 0, 0);
  if (symbol < 286) return Entry(kKindBase, kLengthExtra[symbol - 257], kLengthBase[symbol - 257]);
  return kInvalidEntry;
}
uint32_t DistInfo(int symbol) {
  return symbol < 30 ? Entry(kKindBase, kDistExtra[symbol], kDistBase[symbol]) : kInvalidEntry;
}
uint32_t CodeLenInfo(int symbol) {
  return Entry(kKindLiteral, 0, static_cast<uint32_t>(symbol));
}

// Builds a two-level table for the code lengths; false for an over-subscribed code, or an
// incomplete one other than a lone one-bit code (as zlib judges them).
bool BuildTable(const uint8_t* lengths, int count, uint32_t (*info)(int), int primaryBits,
                uint32_t* table) {
  int counts[16] = {};
  for (int i = 0; i < count; ++i)
    counts[lengths[i]]++;
  counts[0] = 0;
  int left = 1, longest = 0;
  for (int len = 1; len <= 15; ++len) {
    left = (left << 1) - counts[len];
    if (left < 0) return false;
    if (counts[len]) longest = len;
  }
  if (left > 0 && longest > 1) return false;
  uint16_t next[16];
  uint16_t code = 0;
  for (int len = 1; len <= 15; ++len) {
    code = static_cast<uint16_t>((code + counts[len - 1]) << 1);
    next[len] = code;
  }
  const int primarySize = 1 << primaryBits;
  const uint32_t primaryMask = static_cast<uint32_t>(primarySize - 1);
  uint16_t reversed[288];
  uint8_t subBits[1 << kLitBits];
  memset(subBits, 0, static_cast<size_t>(primarySize));
  for (int symbol = 0; symbol < count; ++symbol) {
    int len = lengths[symbol];
    if (!len) continue;
    uint32_t c = next[len]++, r = 0;
    for (int i = 0; i < len; ++i)
      r = r << 1 | (c >> i & 1);
    reversed[symbol] = static_cast<uint16_t>(r);
    if (len > primaryBits) {
      uint8_t need = static_cast<uint8_t>(len - primaryBits);
      if (subBits[r & primaryMask] < need) subBits[r & primaryMask] = need;
    }
  }
  for (int i = 0; i < primarySize; ++i)
    table[i] = kInvalidEntry;
  uint32_t offset = static_cast<uint32_t>(primarySize);
  for (int prefix = 0; prefix < primarySize; ++prefix) {
    if (!subBits[prefix]) continue;
    table[prefix] = Entry(kKindLink, subBits[prefix], offset) | static_cast<uint32_t>(primaryBits);
    uint32_t size = 1u << subBits[prefix];
    for (uint32_t i = 0; i < size; ++i)
      table[offset + i] = kInvalidEntry;
    offset += size;
  }
  for (int symbol = 0; symbol < count; ++symbol) {
    int len = lengths[symbol];
    if (!len) continue;
    uint32_t r = reversed[symbol];
    if (len <= primaryBits) {
      for (uint32_t i = r; i < static_cast<uint32_t>(primarySize); i += 1u << len)
        table[i] = info(symbol) | static_cast<uint32_t>(len);
    } else {
      uint32_t link = table[r & primaryMask];
      uint32_t base = EntryValue(link), size = 1u << EntryExtra(link);
      int subLen = len - primaryBits;
      for (uint32_t i = r >> primaryBits; i < size; i += 1u << subLen)
        table[base + i] = info(symbol) | static_cast<uint32_t>(subLen);
    }
  }
  return true;
}

struct Inflater {
  const uint8_t* in;
  size_t inSize;
  size_t pos;  // real input bytes taken into the bit buffer
  uint64_t bits;
  unsigned count;  // bits in the buffer, padding included
  unsigned pad;    // zero bytes added past the end of the input
  uint8_t* out;
  size_t outSize;
  size_t outPos;
  uint32_t* lit;
  uint32_t* dist;
  uint32_t* codeLen;
};

// At least 56 bits in the buffer; past the input's end zero bytes stand in, and once more of
// them are in the buffer than it can hold the stream has certainly run out.
inline bool Refill(Inflater* z) {
  if (z->pos + 8 <= z->inSize) {
    uint64_t word;
    memcpy(&word, z->in + z->pos, 8);  // little-endian machines only
    z->bits |= word << z->count;
    z->pos += (63 - z->count) >> 3;
    z->count |= 56;
    return true;
  }
  while (z->count <= 56) {
    if (z->pos < z->inSize) {
      z->bits |= static_cast<uint64_t>(z->in[z->pos++]) << z->count;
    } else if (++z->pad > 8) {
      return false;
    }
    z->count += 8;
  }
  return true;
}

inline uint32_t TakeBits(Inflater* z, unsigned n) {
  uint32_t value = static_cast<uint32_t>(z->bits & ((uint64_t{1} << n) - 1));
  z->bits >>= n;
  z->count -= n;
  return value;
}

// True when the bits taken so far include padding: the input ended early.
inline bool Overran(const Inflater* z) {
  return z->pad * 8 > z->count;
}

inline uint32_t DecodeSymbol(Inflater* z, const uint32_t* table, unsigned primaryBits) {
  uint32_t e = table[z->bits & ((1u << primaryBits) - 1)];
  if (EntryKind(e) == kKindLink) {
    z->bits >>= primaryBits;
    z->count -= primaryBits;
    e = table[EntryValue(e) + (z->bits & ((1u << EntryExtra(e)) - 1))];
  }
  if (EntryKind(e) != kKindInvalid) {
    z->bits >>= EntryBits(e);
    z->count -= EntryBits(e);
  }
  return e;
}

int Fail(const Inflater* z, int status) {
  return Overran(z) ? kInflateTruncated : status;
}

int StoredBlock(Inflater* z) {
  TakeBits(z, z->count & 7);
  if (!Refill(z)) return kInflateTruncated;
  uint32_t len = TakeBits(z, 16), nlen = TakeBits(z, 16);
  if (Overran(z)) return kInflateTruncated;
  if ((len ^ 0xFFFF) != nlen) return kInflateBadData;
  // Give back the whole bytes still in the buffer and copy straight from the input.
  z->pos -= z->count / 8 - z->pad;
  z->bits = 0, z->count = 0, z->pad = 0;
  if (len > z->inSize - z->pos) return kInflateTruncated;
  if (len > z->outSize - z->outPos) return kInflateTooLarge;
  if (len) memcpy(z->out + z->outPos, z->in + z->pos, len);
  z->outPos += len;
  z->pos += len;
  return kInflateOk;
}

int ReadDynamicTables(Inflater* z) {
  if (!Refill(z)) return kInflateTruncated;
  unsigned litCount = TakeBits(z, 5) + 257, distCount = TakeBits(z, 5) + 1;
  unsigned codeLenCount = TakeBits(z, 4) + 4;
  if (litCount > 286 || distCount > 30) return Fail(z, kInflateBadData);
  uint8_t lengths[288 + 32] = {};
  for (unsigned i = 0; i < codeLenCount; ++i) {
    if (!Refill(z)) return kInflateTruncated;
    lengths[kCodeLenOrder[i]] = static_cast<uint8_t>(TakeBits(z, 3));
  }
  if (!BuildTable(lengths, 19, CodeLenInfo, kCodeLenBits, z->codeLen))
    return Fail(z, kInflateBadData);
  memset(lengths, 0, sizeof lengths);
  unsigned total = litCount + distCount;
  for (unsigned i = 0; i < total;) {
    if (!Refill(z)) return kInflateTruncated;
    uint32_t e = DecodeSymbol(z, z->codeLen, kCodeLenBits);
    if (EntryKind(e) == kKindInvalid) return Fail(z, kInflateBadData);
    uint32_t symbol = EntryValue(e);
    if (symbol < 16) {
      lengths[i++] = static_cast<uint8_t>(symbol);
      continue;
    }
    uint8_t value = 0;
    unsigned repeat;
    if (symbol == 16) {
      if (i == 0) return Fail(z, kInflateBadData);
      value = lengths[i - 1];
      repeat = 3 + TakeBits(z, 2);
    } else if (symbol == 17) {
      repeat = 3 + TakeBits(z, 3);
    } else {
      repeat = 11 + TakeBits(z, 7);
    }
    if (repeat > total - i) return Fail(z, kInflateBadData);
    memset(lengths + i, value, repeat);
    i += repeat;
  }
  if (Overran(z)) return kInflateTruncated;
  if (lengths[256] == 0) return kInflateBadData;
  if (!BuildTable(lengths, static_cast<int>(litCount), LitInfo, kLitBits, z->lit) ||
      !BuildTable(lengths + litCount, static_cast<int>(distCount), DistInfo, kDistBits, z->dist)) {
    return kInflateBadData;
  }
  return kInflateOk;
}

void BuildFixedTables(Inflater* z) {
  uint8_t lengths[288];
  memset(lengths, 8, 144);
  memset(lengths + 144, 9, 112);
  memset(lengths + 256, 7, 24);
  memset(lengths + 280, 8, 8);
  BuildTable(lengths, 288, LitInfo, kLitBits, z->lit);
  memset(lengths, 5, 32);
  BuildTable(lengths, 32, DistInfo, kDistBits, z->dist);
}

int HuffmanBlock(Inflater* z) {
  uint8_t* const out = z->out;
  const size_t outSize = z->outSize;
  size_t op = z->outPos;
  int status = kInflateOk;
  for (;;) {
    if (!Refill(z)) {
      status = kInflateTruncated;
      break;
    }
    uint32_t e = DecodeSymbol(z, z->lit, kLitBits);
    uint32_t kind = EntryKind(e);
    if (kind == kKindLiteral) {
      if (op == outSize) {
        status = kInflateTooLarge;
        break;
      }
      out[op++] = static_cast<uint8_t>(EntryValue(e));
      continue;
    }
    if (kind == kKindEnd) break;
    if (kind != kKindBase) {
      status = kInflateBadData;
      break;
    }
    size_t len = EntryValue(e) + TakeBits(z, EntryExtra(e));
    e = DecodeSymbol(z, z->dist, kDistBits);
    if (EntryKind(e) != kKindBase) {
      status = kInflateBadData;
      break;
    }
    size_t distance = EntryValue(e) + TakeBits(z, EntryExtra(e));
    if (distance > op) {
      status = kInflateBadData;
      break;
    }
    if (len > outSize - op) {
      status = kInflateTooLarge;
      break;
    }
    uint8_t* dst = out + op;
    const uint8_t* src = dst - distance;
    if (distance >= 8 && outSize - op >= len + 8) {
      // Eight bytes at a time; the last copy may run up to seven bytes past the match, which
      // later output overwrites.
      uint8_t* end = dst + len;
      do {
        memcpy(dst, src, 8);
        dst += 8, src += 8;
      } while (dst < end);
    } else if (distance == 1) {
      memset(dst, *src, len);
    } else {
      for (size_t i = 0; i < len; ++i)
        dst[i] = src[i];
    }
    op += len;
  }
  z->outPos = op;
  return status == kInflateOk ? status : Fail(z, status);
}

}  // namespace

int InflateRaw(const uint8_t* in, size_t inSize, uint8_t* out, size_t outSize, size_t* written,
               size_t* consumed) {
  *written = 0;
  *consumed = 0;
  uint32_t* tables = static_cast<uint32_t*>(
      AllocMem(sizeof(uint32_t) * (kLitTableSize + kDistTableSize + kCodeLenTableSize),
               kOwnerInflateTables));
  if (!tables) return kInflateNoMemory;
  Inflater z = {in,
                inSize,
                0,
                0,
                0,
                0,
                out,
                outSize,
                0,
                tables,
                tables + kLitTableSize,
                tables + kLitTableSize + kDistTableSize};
  int status = kInflateOk;
  bool last = false;
  while (!last && status == kInflateOk) {
    if (!Refill(&z)) {
      status = kInflateTruncated;
      break;
    }
    last = TakeBits(&z, 1) != 0;
    uint32_t type = TakeBits(&z, 2);
    if (Overran(&z)) {
      status = kInflateTruncated;
    } else if (type == 0) {
      status = StoredBlock(&z);
    } else if (type == 1) {
      BuildFixedTables(&z);
      status = HuffmanBlock(&z);
    } else if (type == 2) {
      status = ReadDynamicTables(&z);
      if (status == kInflateOk) status = HuffmanBlock(&z);
    } else {
      status = kInflateBadData;
    }
  }
  if (status == kInflateOk && Overran(&z)) status = kInflateTruncated;
  FreeMem(tables);
  *written = z.outPos;
  *consumed = z.pos - (z.count - z.pad * 8) / 8;
  return status;
}

int InflateZlib(const uint8_t* in, size_t inSize, uint8_t* out, size_t outSize, size_t* written) {
  *written = 0;
  if (inSize < 2) return kInflateTruncated;
  unsigned cmf = in[0], flg = in[1];
  if ((cmf & 15) != 8 || (cmf >> 4) > 7 || (cmf << 8 | flg) % 31 != 0 || (flg & 0x20)) {
    return kInflateBadHeader;
  }
  size_t consumed;
  int status = InflateRaw(in + 2, inSize - 2, out, outSize, written, &consumed);
  if (status != kInflateOk) return status;
  const uint8_t* trailer = in + 2 + consumed;
  if (inSize - 2 - consumed < 4) return kInflateTruncated;
  uint32_t expected =
      static_cast<uint32_t>(trailer[0]) << 24 | trailer[1] << 16 | trailer[2] << 8 | trailer[3];
  return Adler32(1, out, *written) == expected ? kInflateOk : kInflateBadChecksum;
}

uint32_t Adler32(uint32_t adler, const uint8_t* data, size_t size) {
  uint32_t a = adler & 0xFFFF, b = adler >> 16;
  while (size) {
    // The largest run whose sums cannot overflow 32 bits before the reduction.
    size_t run = size < 5552 ? size : 5552;
    size -= run;
    for (; run >= 4; run -= 4, data += 4) {
      a += data[0], b += a;
      a += data[1], b += a;
      a += data[2], b += a;
      a += data[3], b += a;
    }
    for (; run; --run)
      a += *data++, b += a;
    a %= 65521;
    b %= 65521;
  }
  return b << 16 | a;
}

const char* InflateStatusText(int status) {
  switch (status) {
    case kInflateOk:
      return "ok";
    case kInflateTruncated:
      return "compressed data ends early";
    case kInflateBadData:
      return "invalid compressed data";
    case kInflateTooLarge:
      return "compressed data inflates past its size";
    case kInflateBadHeader:
      return "invalid zlib header";
    case kInflateBadChecksum:
      return "Adler-32 mismatch";
    case kInflateNoMemory:
      return "out of memory";
  }
  return "unknown inflate status";
}
