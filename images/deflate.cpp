// Matching follows the classic lazy scheme: a match found at one position is sent only when the
// next position has no longer one. Blocks close every 16K symbols, which keeps their codes fitted
// to the text they carry.
#include "images/deflate.h"

#include <algorithm>
#include <cstring>

#include "foundation/memory.h"
#include "images/deflate_tables.h"
#include "images/images_owners.h"

namespace {

constexpr uint32_t kWindowSize = 1u << 15;
constexpr uint32_t kWindowMask = kWindowSize - 1;
constexpr int kHashBits = 15;
constexpr uint32_t kHashSize = 1u << kHashBits;
constexpr uint32_t kNone = 0xFFFFFFFFu;
constexpr int kMinMatch = 3;
constexpr int kMaxMatch = 258;
constexpr int kBlockSymbols = 16383;
constexpr size_t kStoredMax = 65535;
// A three-byte match this far back costs more than its literals.
constexpr uint32_t kTooFar = 4096;
// The effort of zlib's sixth level: good enough that archives compare with the usual tools.
constexpr int kGoodLength = 8;
constexpr int kMaxLazy = 16;
constexpr int kNiceLength = 128;
constexpr int kMaxChain = 128;

constexpr int kLitCodes = 286;
constexpr int kDistCodes = 30;
constexpr int kCodeLenCodes = 19;

struct CodeTables {
  uint8_t lengthCode[256];  // match length - 3 -> index of its length code (0..28)
  uint8_t distCode[512];    // see DistCode
};

constexpr CodeTables MakeCodeTables() {
  CodeTables t = {};
  for (int code = 0; code < 29; ++code) {
    int first = kLengthBase[code] - 3, count = 1 << kLengthExtra[code];
    for (int i = 0; i < count && first + i < 256; ++i)
      t.lengthCode[first + i] = static_cast<uint8_t>(code);
  }
  t.lengthCode[255] = 28;  // 258 has its own code, not 227's last step
  for (int code = 0; code < 30; ++code) {
    int first = kDistBase[code] - 1, count = 1 << kDistExtra[code];
    for (int i = 0; i < count; ++i) {
      int d = first + i;
      if (d < 256)
        t.distCode[d] = static_cast<uint8_t>(code);
      else
        t.distCode[256 + (d >> 7)] = static_cast<uint8_t>(code);
    }
  }
  return t;
}
constexpr CodeTables kCodes = MakeCodeTables();

inline int DistCode(uint32_t dist) {
  uint32_t d = dist - 1;
  return d < 256 ? kCodes.distCode[d] : kCodes.distCode[256 + (d >> 7)];
}

struct State {
  uint32_t head[kHashSize];
  uint32_t prev[kWindowSize];
  uint16_t symLength[kBlockSymbols];  // a literal byte, or a match length
  uint16_t symDist[kBlockSymbols];    // 0 for a literal
  int symbols;
  uint32_t litFreq[kLitCodes];
  uint32_t distFreq[kDistCodes];
};

struct BitWriter {
  uint8_t* out;
  size_t pos;
  uint64_t bits;
  int count;
};

inline void PutBits(BitWriter* w, uint32_t value, int n) {
  w->bits |= static_cast<uint64_t>(value) << w->count;
  w->count += n;
  while (w->count >= 8) {
    w->out[w->pos++] = static_cast<uint8_t>(w->bits);
    w->bits >>= 8;
    w->count -= 8;
  }
}

void AlignToByte(BitWriter* w) {
  if (w->count) PutBits(w, 0, 8 - w->count);
}

// Code lengths of at most `limit` bits for the frequencies. A code that comes out too long is
// built again from flattened frequencies; with at most 286 symbols this converges in a step or two.
void BuildLengths(const uint32_t* freq, int count, int limit, uint8_t* lengths) {
  memset(lengths, 0, static_cast<size_t>(count));
  uint16_t order[kLitCodes];
  uint32_t weight[2 * kLitCodes];
  int parent[2 * kLitCodes];
  uint8_t depth[2 * kLitCodes];
  int n = 0;
  for (int s = 0; s < count; ++s) {
    if (freq[s]) order[n++] = static_cast<uint16_t>(s);
  }
  if (n == 0) return;
  if (n == 1) {
    lengths[order[0]] = 1;
    return;
  }
  uint32_t work[kLitCodes];
  for (int s = 0; s < count; ++s)
    work[s] = freq[s];
  for (;;) {
    std::sort(order, order + n, [&work](uint16_t a, uint16_t b) {
      return work[a] != work[b] ? work[a] < work[b] : a < b;
    });
    for (int i = 0; i < n; ++i)
      weight[i] = work[order[i]];
    // Two queues: the sorted leaves and the internal nodes, which are made in rising weight.
    int leaf = 0, inner = n, made = n;
    auto take = [&]() {
      if (leaf < n && (inner == made || weight[leaf] <= weight[inner])) return leaf++;
      return inner++;
    };
    while (made < 2 * n - 1) {
      int a = take(), b = take();
      weight[made] = weight[a] + weight[b];
      parent[a] = parent[b] = made;
      ++made;
    }
    depth[2 * n - 2] = 0;
    int longest = 0;
    for (int i = 2 * n - 3; i >= 0; --i) {
      depth[i] = static_cast<uint8_t>(depth[parent[i]] + 1);
      if (i < n && depth[i] > longest) longest = depth[i];
    }
    if (longest <= limit) {
      for (int i = 0; i < n; ++i)
        lengths[order[i]] = depth[i];
      return;
    }
    for (int i = 0; i < n; ++i)
      work[order[i]] = (work[order[i]] >> 1) | 1;
  }
}

// Canonical codes, bit-reversed for a writer that fills from the low bit.
void MakeCodes(const uint8_t* lengths, int count, uint16_t* codes) {
  int counts[16] = {};
  for (int s = 0; s < count; ++s)
    counts[lengths[s]]++;
  counts[0] = 0;
  uint16_t next[16] = {};
  uint16_t code = 0;
  for (int len = 1; len <= 15; ++len) {
    code = static_cast<uint16_t>((code + counts[len - 1]) << 1);
    next[len] = code;
  }
  for (int s = 0; s < count; ++s) {
    int len = lengths[s];
    if (!len) {
      codes[s] = 0;
      continue;
    }
    uint32_t c = next[len]++, r = 0;
    for (int i = 0; i < len; ++i)
      r = r << 1 | (c >> i & 1);
    codes[s] = static_cast<uint16_t>(r);
  }
}

// The code-length alphabet's run-length form of the two code tables, as symbol | extra << 8.
int RunLengths(const uint8_t* lengths, int total, uint16_t* out) {
  int n = 0;
  for (int i = 0; i < total;) {
    int value = lengths[i], run = 1;
    while (i + run < total && lengths[i + run] == value)
      ++run;
    i += run;
    if (value == 0) {
      while (run >= 11) {
        int take = std::min(run, 138);
        out[n++] = static_cast<uint16_t>(18 | (take - 11) << 8);
        run -= take;
      }
      if (run >= 3) {
        out[n++] = static_cast<uint16_t>(17 | (run - 3) << 8);
        run = 0;
      }
    } else {
      out[n++] = static_cast<uint16_t>(value);
      --run;
      while (run >= 3) {
        int take = std::min(run, 6);
        out[n++] = static_cast<uint16_t>(16 | (take - 3) << 8);
        run -= take;
      }
    }
    while (run-- > 0)
      out[n++] = static_cast<uint16_t>(value);
  }
  return n;
}

constexpr uint8_t kCodeLenExtra[19] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 3, 7};

struct FixedCodes {
  uint8_t litLen[288];
  uint8_t distLen[30];
};
constexpr FixedCodes MakeFixed() {
  FixedCodes f = {};
  for (int s = 0; s < 288; ++s)
    f.litLen[s] = s < 144 ? 8 : s < 256 ? 9 : s < 280 ? 7 : 8;
  for (int s = 0; s < 30; ++s)
    f.distLen[s] = 5;
  return f;
}
constexpr FixedCodes kFixed = MakeFixed();

uint64_t DataBits(const State* st, const uint8_t* litLen, const uint8_t* distLen) {
  uint64_t bits = 0;
  for (int s = 0; s < kLitCodes; ++s) {
    if (!st->litFreq[s]) continue;
    uint32_t extra = s > 256 ? kLengthExtra[s - 257] : 0;
    bits += static_cast<uint64_t>(st->litFreq[s]) * (litLen[s] + extra);
  }
  for (int s = 0; s < kDistCodes; ++s)
    bits += static_cast<uint64_t>(st->distFreq[s]) * (distLen[s] + kDistExtra[s]);
  return bits;
}

void SendSymbols(const State* st, BitWriter* w, const uint8_t* litLen, const uint16_t* litCode,
                 const uint8_t* distLen, const uint16_t* distCode) {
  for (int i = 0; i < st->symbols; ++i) {
    uint32_t len = st->symLength[i], dist = st->symDist[i];
    if (!dist) {
      PutBits(w, litCode[len], litLen[len]);
      continue;
    }
    int lc = kCodes.lengthCode[len - 3];
    PutBits(w, litCode[257 + lc], litLen[257 + lc]);
    if (kLengthExtra[lc]) PutBits(w, len - kLengthBase[lc], kLengthExtra[lc]);
    int dc = DistCode(dist);
    PutBits(w, distCode[dc], distLen[dc]);
    if (kDistExtra[dc]) PutBits(w, dist - kDistBase[dc], kDistExtra[dc]);
  }
  PutBits(w, litCode[256], litLen[256]);
}

void SendStored(BitWriter* w, const uint8_t* data, size_t size, bool last) {
  do {
    size_t chunk = std::min(size, kStoredMax);
    bool final = last && chunk == size;
    PutBits(w, final ? 1 : 0, 3);
    AlignToByte(w);
    PutBits(w, static_cast<uint32_t>(chunk), 16);
    PutBits(w, static_cast<uint32_t>(~chunk & 0xFFFF), 16);
    memcpy(w->out + w->pos, data, chunk);
    w->pos += chunk;
    data += chunk;
    size -= chunk;
  } while (size);
}

// Sends the gathered symbols, which stand for data[0..size), in the cheapest of the three forms.
void FlushBlock(State* st, BitWriter* w, const uint8_t* data, size_t size, bool last) {
  st->litFreq[256] = 1;
  uint8_t lengths[kLitCodes + kDistCodes];
  uint8_t* litLen = lengths;
  uint8_t* distLen = lengths + kLitCodes;
  BuildLengths(st->litFreq, kLitCodes, 15, litLen);
  BuildLengths(st->distFreq, kDistCodes, 15, distLen);
  int hlit = kLitCodes, hdist = kDistCodes;
  while (hlit > 257 && !litLen[hlit - 1])
    --hlit;
  while (hdist > 1 && !distLen[hdist - 1])
    --hdist;
  // With no match at all one unused distance code still has to be described.
  if (!distLen[0] && hdist == 1) distLen[0] = 1;
  uint8_t joined[kLitCodes + kDistCodes];
  memcpy(joined, litLen, static_cast<size_t>(hlit));
  memcpy(joined + hlit, distLen, static_cast<size_t>(hdist));
  uint16_t runs[kLitCodes + kDistCodes];
  int runCount = RunLengths(joined, hlit + hdist, runs);
  uint32_t clFreq[kCodeLenCodes] = {};
  for (int i = 0; i < runCount; ++i)
    clFreq[runs[i] & 0xFF]++;
  uint8_t clLen[kCodeLenCodes];
  BuildLengths(clFreq, kCodeLenCodes, 7, clLen);
  int hclen = kCodeLenCodes;
  while (hclen > 4 && !clLen[kCodeLenOrder[hclen - 1]])
    --hclen;

  uint64_t dynamicBits = 3 + 14 + 3 * static_cast<uint64_t>(hclen);
  for (int s = 0; s < kCodeLenCodes; ++s)
    dynamicBits += static_cast<uint64_t>(clFreq[s]) * (clLen[s] + kCodeLenExtra[s]);
  dynamicBits += DataBits(st, litLen, distLen);
  uint64_t fixedBits = 3 + DataBits(st, kFixed.litLen, kFixed.distLen);
  uint64_t storedBits = (size / kStoredMax + 1) * (3 + 7 + 32) + 8 * static_cast<uint64_t>(size);

  if (storedBits <= fixedBits && storedBits <= dynamicBits) {
    SendStored(w, data, size, last);
  } else if (fixedBits <= dynamicBits) {
    uint16_t litCode[288], distCode[30];
    MakeCodes(kFixed.litLen, 288, litCode);
    MakeCodes(kFixed.distLen, 30, distCode);
    PutBits(w, (last ? 1 : 0) | 1 << 1, 3);
    SendSymbols(st, w, kFixed.litLen, litCode, kFixed.distLen, distCode);
  } else {
    uint16_t litCode[kLitCodes], distCode[kDistCodes], clCode[kCodeLenCodes];
    MakeCodes(litLen, kLitCodes, litCode);
    MakeCodes(distLen, kDistCodes, distCode);
    MakeCodes(clLen, kCodeLenCodes, clCode);
    PutBits(w, (last ? 1 : 0) | 2 << 1, 3);
    PutBits(w, static_cast<uint32_t>(hlit - 257), 5);
    PutBits(w, static_cast<uint32_t>(hdist - 1), 5);
    PutBits(w, static_cast<uint32_t>(hclen - 4), 4);
    for (int i = 0; i < hclen; ++i)
      PutBits(w, clLen[kCodeLenOrder[i]], 3);
    for (int i = 0; i < runCount; ++i) {
      int symbol = runs[i] & 0xFF;
      PutBits(w, clCode[symbol], clLen[symbol]);
      if (kCodeLenExtra[symbol]) PutBits(w, runs[i] >> 8, kCodeLenExtra[symbol]);
    }
    SendSymbols(st, w, litLen, litCode, distLen, distCode);
  }
  st->symbols = 0;
  memset(st->litFreq, 0, sizeof st->litFreq);
  memset(st->distFreq, 0, sizeof st->distFreq);
}

inline uint32_t Hash(const uint8_t* p) {
  uint32_t v = static_cast<uint32_t>(p[0]) | static_cast<uint32_t>(p[1]) << 8 |
               static_cast<uint32_t>(p[2]) << 16;
  return (v * 2654435761u) >> (32 - kHashBits);
}

// Enters position `pos` (three bytes must follow) and returns the previous one of its hash.
inline uint32_t Insert(State* st, const uint8_t* in, uint32_t pos) {
  uint32_t h = Hash(in + pos);
  uint32_t before = st->head[h];
  st->prev[pos & kWindowMask] = before;
  st->head[h] = pos;
  return before;
}

inline int MatchLength(const uint8_t* a, const uint8_t* b, int limit) {
  int n = 0;
  while (n + 8 <= limit) {
    uint64_t x, y;
    memcpy(&x, a + n, 8);
    memcpy(&y, b + n, 8);
    if (x != y) return n + (__builtin_ctzll(x ^ y) >> 3);
    n += 8;
  }
  while (n < limit && a[n] == b[n])
    ++n;
  return n;
}

// The longest match for `pos` along the chain from `candidate` that beats `best`; `best` when
// none does.
int LongestMatch(const State* st, const uint8_t* in, size_t size, uint32_t pos, uint32_t candidate,
                 int best, uint32_t* distance) {
  int chain = best >= kGoodLength ? kMaxChain >> 2 : kMaxChain;
  int limit = static_cast<int>(std::min<size_t>(kMaxMatch, size - pos));
  int nice = std::min(kNiceLength, limit);
  const uint8_t* here = in + pos;
  while (candidate != kNone && candidate < pos && pos - candidate < kWindowSize && chain-- > 0) {
    const uint8_t* there = in + candidate;
    if (best < limit && there[best] == here[best] && there[0] == here[0] && there[1] == here[1]) {
      int len = MatchLength(there, here, limit);
      if (len > best) {
        best = len;
        *distance = pos - candidate;
        if (len >= nice) break;
      }
    }
    uint32_t next = st->prev[candidate & kWindowMask];
    if (next == kNone || next >= candidate) break;
    candidate = next;
  }
  return best;
}

inline void AddLiteral(State* st, uint8_t byte) {
  st->symLength[st->symbols] = byte;
  st->symDist[st->symbols++] = 0;
  st->litFreq[byte]++;
}

inline void AddMatch(State* st, int len, uint32_t dist) {
  st->symLength[st->symbols] = static_cast<uint16_t>(len);
  st->symDist[st->symbols++] = static_cast<uint16_t>(dist);
  st->litFreq[257 + kCodes.lengthCode[len - 3]]++;
  st->distFreq[DistCode(dist)]++;
}

}  // namespace

size_t DeflateBound(size_t size) {
  size_t blocks = size / kBlockSymbols + 1;
  return size + 6 * (blocks + size / kStoredMax + 1) + 16;
}

int DeflateRaw(const uint8_t* in, size_t size, uint8_t* out, size_t* written,
               const DeflateProgress* progress) {
  *written = 0;
  // Positions are 32-bit; the archive has no room for larger members either.
  if (size > 0xFFFFFFF0u) return kDeflateNoMemory;
  State* st = static_cast<State*>(AllocMem(sizeof(State), kOwnerDeflateState));
  if (!st) return kDeflateNoMemory;
  memset(st->head, 0xFF, sizeof st->head);
  st->symbols = 0;
  memset(st->litFreq, 0, sizeof st->litFreq);
  memset(st->distFreq, 0, sizeof st->distFreq);
  BitWriter w = {out, 0, 0, 0};
  const uint32_t end = static_cast<uint32_t>(size);
  uint32_t pos = 0, blockStart = 0, covered = 0;
  int matchLen = kMinMatch - 1;
  uint32_t matchDist = 0;
  bool pending = false;  // the byte before `pos` waits to see whether a longer match follows
  int status = kDeflateOk;
  auto blockFull = [&]() {
    if (st->symbols < kBlockSymbols) return true;
    FlushBlock(st, &w, in + blockStart, covered - blockStart, false);
    blockStart = covered;
    if (progress && !progress->report(progress->context, covered)) {
      status = kDeflateStopped;
      return false;
    }
    return true;
  };
  while (pos < end) {
    uint32_t candidate = pos + kMinMatch <= end ? Insert(st, in, pos) : kNone;
    int prevLen = matchLen;
    uint32_t prevDist = matchDist;
    matchLen = kMinMatch - 1;
    if (candidate != kNone && prevLen < kMaxLazy && pos - candidate < kWindowSize) {
      matchLen = LongestMatch(st, in, size, pos, candidate, prevLen, &matchDist);
      if (matchLen <= prevLen) matchLen = kMinMatch - 1;
      if (matchLen == kMinMatch && matchDist > kTooFar) matchLen = kMinMatch - 1;
    }
    if (prevLen >= kMinMatch && matchLen <= prevLen) {
      AddMatch(st, prevLen, prevDist);
      uint32_t stop = pos - 1 + static_cast<uint32_t>(prevLen);
      for (uint32_t p = pos + 1; p < stop; ++p) {
        if (p + kMinMatch <= end) Insert(st, in, p);
      }
      pos = stop;
      covered = stop;
      pending = false;
      matchLen = kMinMatch - 1;
      if (!blockFull()) break;
    } else if (pending) {
      AddLiteral(st, in[pos - 1]);
      covered = pos;
      ++pos;
      if (!blockFull()) break;
    } else {
      pending = true;
      ++pos;
    }
  }
  if (status == kDeflateOk) {
    if (pending) {
      AddLiteral(st, in[pos - 1]);
      covered = pos;
    }
    FlushBlock(st, &w, in + blockStart, covered - blockStart, true);
    AlignToByte(&w);
    *written = w.pos;
  }
  FreeMem(st);
  return status;
}
