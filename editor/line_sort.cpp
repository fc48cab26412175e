#include "editor/line_sort.h"

#include <cstring>

#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/undo.h"
#include "foundation/host.h"
#include "foundation/memory.h"
#include "foundation/settings.h"

namespace {

constexpr int kNoRoomText = 408;
constexpr char kOrderKey[] = "SortOrder";  // radio index: 0 ascending, 1 descending
constexpr char kIgnoreCaseKey[] = "SortIgnoreCaseFg";
constexpr char kNumbersKey[] = "SortNumbersFg";
constexpr char kUniqueKey[] = "SortUniqueFg";

// UTF-16 order puts U+E000...U+FFFF after the surrogates; moving them below keeps pairs last, so
// that the order is the code points' (and a UTF-8 byte comparison's).
inline int Ordinal(char16_t unit, bool fold) {
  if (fold && unit >= u'a' && unit <= u'z') return unit - 32;
  if (unit >= 0xE000) return unit - 0x800;
  if (unit >= 0xD800) return unit + 0x2000;
  return unit;
}

inline bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

int ComparePlain(const SortKey& a, const SortKey& b, bool fold) {
  int n = a.length < b.length ? a.length : b.length;
  for (int i = 0; i < n; ++i) {
    if (a.text[i] == b.text[i]) continue;
    int d = Ordinal(a.text[i], fold) - Ordinal(b.text[i], fold);
    if (d) return d < 0 ? -1 : 1;
  }
  return a.length == b.length ? 0 : (a.length < b.length ? -1 : 1);
}

// Digit runs by value: leading zeros skipped, then the longer run is the larger, then digit by
// digit. Runs of any length compare without overflow.
int CompareNumbers(const SortKey& a, const SortKey& b, bool fold) {
  int i = 0;
  int j = 0;
  while (i < a.length && j < b.length) {
    if (IsDigit(a.text[i]) && IsDigit(b.text[j])) {
      while (i < a.length && a.text[i] == u'0')
        ++i;
      while (j < b.length && b.text[j] == u'0')
        ++j;
      int endA = i;
      int endB = j;
      while (endA < a.length && IsDigit(a.text[endA]))
        ++endA;
      while (endB < b.length && IsDigit(b.text[endB]))
        ++endB;
      if (endA - i != endB - j) return endA - i < endB - j ? -1 : 1;
      for (; i < endA; ++i, ++j) {
        if (a.text[i] != b.text[j]) return a.text[i] < b.text[j] ? -1 : 1;
      }
      continue;
    }
    int d = Ordinal(a.text[i], fold) - Ordinal(b.text[j], fold);
    if (d) return d < 0 ? -1 : 1;
    ++i;
    ++j;
  }
  int restA = a.length - i;
  int restB = b.length - j;
  return restA == restB ? 0 : (restA < restB ? -1 : 1);
}

// What the sort moves: the key with its first units packed into two numbers, so that most
// comparisons are integer comparisons over memory read in order.
struct Entry {
  uint64_t prefix[2];
  SortKey key;
  int32_t index;
};

constexpr int kPrefixUnits = 8;  // 16 bits each, four to a number

// The first units as ordinals + 1 (0: past the end; the one ordinal that would not fit is kept
// at the top with the one below it, which only sends those two to the whole comparison). In
// number mode a run of digits stands as '0' (any digit beside a unit that is none compares as
// one), then its count of significant digits and those digits, as the runs compare by value.
// Two different prefixes order their keys as the whole comparison would.
void Prefix(const SortKey& key, bool fold, bool numbers, uint64_t* prefix) {
  uint64_t slots[kPrefixUnits] = {};
  int k = 0;
  for (int i = 0; i < key.length && k < kPrefixUnits;) {
    if (!numbers || !IsDigit(key.text[i])) {
      int ordinal = Ordinal(key.text[i++], fold) + 1;
      slots[k++] = static_cast<uint64_t>(ordinal < 0xFFFF ? ordinal : 0xFFFF);
      continue;
    }
    slots[k++] = static_cast<uint64_t>(Ordinal(u'0', false)) + 1;
    while (i < key.length && key.text[i] == u'0')
      ++i;
    int end = i;
    while (end < key.length && IsDigit(key.text[end]))
      ++end;
    if (k < kPrefixUnits) slots[k++] = static_cast<uint64_t>(end - i < 0xFFFF ? end - i : 0xFFFF);
    if (end - i >= 0xFFFF) break;
    for (; i < end && k < kPrefixUnits; ++i)
      slots[k++] = static_cast<uint64_t>(key.text[i] - u'0' + 1);
  }
  for (int word = 0; word < 2; ++word) {
    prefix[word] = 0;
    for (int j = 0; j < 4; ++j)
      prefix[word] = prefix[word] << 16 | slots[word * 4 + j];
  }
}

struct SortRun {
  const LineSortOptions* options;
  int sign;  // -1 for descending
};

inline bool Before(const SortRun& run, const Entry& a, const Entry& b) {
  if (a.prefix[0] != b.prefix[0]) return (a.prefix[0] < b.prefix[0]) == (run.sign > 0);
  if (a.prefix[1] != b.prefix[1]) return (a.prefix[1] < b.prefix[1]) == (run.sign > 0);
  return run.sign * CompareSortKeys(a.key, b.key, *run.options) < 0;
}

// Bottom-up merge sort: insertion sort of short runs, then merges that take the left element on
// a tie, so equal keys keep their order.
void MergeSort(const SortRun& run, Entry* items, Entry* scratch, int count) {
  constexpr int kRun = 16;
  for (int start = 0; start < count; start += kRun) {
    int end = start + kRun < count ? start + kRun : count;
    for (int i = start + 1; i < end; ++i) {
      Entry item = items[i];
      int j = i;
      while (j > start && Before(run, item, items[j - 1])) {
        items[j] = items[j - 1];
        --j;
      }
      items[j] = item;
    }
  }
  Entry* from = items;
  Entry* to = scratch;
  for (int width = kRun; width < count; width *= 2) {
    for (int start = 0; start < count; start += 2 * width) {
      int middle = start + width < count ? start + width : count;
      int end = start + 2 * width < count ? start + 2 * width : count;
      int i = start;
      int j = middle;
      int k = start;
      // Already in order: the merge is a copy.
      if (middle >= end || !Before(run, from[middle], from[middle - 1])) {
        memcpy(to + start, from + start, static_cast<size_t>(end - start) * sizeof(Entry));
        continue;
      }
      while (i < middle && j < end)
        to[k++] = Before(run, from[j], from[i]) ? from[j++] : from[i++];
      while (i < middle)
        to[k++] = from[i++];
      while (j < end)
        to[k++] = from[j++];
    }
    Entry* swap = from;
    from = to;
    to = swap;
  }
  if (from != items) memcpy(items, from, static_cast<size_t>(count) * sizeof(Entry));
}

}  // namespace

int CompareSortKeys(const SortKey& a, const SortKey& b, const LineSortOptions& options) {
  bool fold = options.ignoreCase != 0;
  if (!options.numbers) return ComparePlain(a, b, fold);
  int result = CompareNumbers(a, b, fold);
  return result ? result : ComparePlain(a, b, fold);
}

int SortKeys(const SortKey* keys, int count, const LineSortOptions& options, int32_t* order) {
  for (int i = 0; i < count; ++i)
    order[i] = i;
  if (count < 2) return count;
  auto* items =
      static_cast<Entry*>(AllocMem(static_cast<size_t>(count) * 2 * sizeof(Entry), kOwnerLineSort));
  if (!items) return -1;
  bool fold = options.ignoreCase != 0;
  bool numbers = options.numbers != 0;
  for (int i = 0; i < count; ++i) {
    items[i].key = keys[i];
    items[i].index = i;
    Prefix(keys[i], fold, numbers, items[i].prefix);
  }
  SortRun run = {&options, options.descending ? -1 : 1};
  MergeSort(run, items, items + count, count);
  int kept = 0;
  for (int i = 0; i < count; ++i) {
    // Equal keys are neighbours now; of each run only the first stays.
    if (options.unique && kept > 0 &&
        CompareSortKeys(keys[order[kept - 1]], items[i].key, options) == 0)
      continue;
    order[kept++] = items[i].index;
  }
  FreeMem(items);
  return kept;
}

namespace {

// The sort's working arrays could not be had: said, and the text left as it was.
bool NoRoom(int count) {
  HostMessageIdNumber(kNoRoomText, kMbOk | kMbIconExclamation, count);
  return false;
}

}  // namespace

bool SortLines(EditorView* view, const LineSortOptions& options) {
  EditDocument* document = view->document;
  if (!document || document->lineCount < 2) return false;
  int first = 0;
  int last = document->lineCount - 1;
  bool block = false;
  int left = 0;
  int right = 0;
  if (HasSelection(view)) {
    Selection s = NormalisedSelection(view);
    first = s.startLine;
    last = s.endLine < document->lineCount ? s.endLine : document->lineCount - 1;
    if (view->blockMode == 1) {
      block = true;
      left = s.startColumn;
      right = s.endColumn;
    } else if (s.endColumn == 0 && last > first && last == s.endLine) {
      --last;
    }
  }
  int count = last - first + 1;
  if (count < 2) return false;
  size_t size = static_cast<size_t>(count) * (sizeof(SortKey) + sizeof(int32_t));
  auto* keys = static_cast<SortKey*>(AllocMem(size, kOwnerLineSort));
  if (!keys) return NoRoom(count);
  auto* order = reinterpret_cast<int32_t*>(keys + count);
  for (int i = 0; i < count; ++i) {
    const LineRecord* record = document->lines[first + i];
    int start = 0;
    int end = LineLength(record);
    if (block) {
      // A line that ends left of the block has an empty key.
      start = UnitIndexAtColumn(record, left);
      end = UnitIndexAtColumn(record, right);
    }
    keys[i] = {record ? record->text + start : nullptr, end - start};
  }
  int kept = SortKeys(keys, count, options, order);
  bool moved = kept >= 0 && kept < count;
  for (int i = 0; i < kept && !moved; ++i)
    moved = order[i] != i;
  LinesChange change;
  if (!moved || !BeginLinesChange(view, first, last, &change)) {
    FreeMem(keys);
    return kept < 0 || moved ? NoRoom(count) : false;
  }
  // The keys' array is free now: it holds the new order of the line records, the dropped ones
  // behind the kept, so that removing the tail frees exactly those.
  auto** lines = reinterpret_cast<LineRecord**>(keys);
  static_assert(sizeof(SortKey) >= sizeof(LineRecord*), "a key's slot holds a line pointer");
  auto* dropped = static_cast<uint8_t*>(AllocMem(static_cast<size_t>(count), kOwnerLineSort));
  if (!dropped) {
    FreeMem(change.oldText);
    FreeMem(keys);
    return NoRoom(count);
  }
  memset(dropped, 1, static_cast<size_t>(count));
  for (int i = 0; i < kept; ++i)
    dropped[order[i]] = 0;
  int tail = kept;
  for (int i = 0; i < count; ++i) {
    if (dropped[i]) order[tail++] = i;
  }
  for (int i = 0; i < count; ++i)
    lines[i] = document->lines[first + order[i]];
  memcpy(document->lines + first, lines, static_cast<size_t>(count) * sizeof(LineRecord*));
  FreeMem(dropped);
  FreeMem(keys);
  if (kept < count) RemoveLines(document, first + kept, count - kept);
  // The sorted lines stay selected as whole lines.
  view->blockMode = 0;
  int endLine = first + kept;
  int endColumn = 0;
  if (endLine >= document->lineCount) {
    endLine = document->lineCount - 1;
    endColumn = LineColumns(document->lines[endLine]);
  }
  view->caretColumn = endColumn;
  view->caretLine = endLine;
  view->selStartColumn = 0;
  view->selStartLine = first;
  view->selEndColumn = endColumn;
  view->selEndLine = endLine;
  EndLinesChange(&change);
  document->modified = 1;
  EditorRepaintAll(view);
  EditorCaretMoved(view);
  return true;
}

void ReadLineSortOptions(LineSortOptions* options) {
  options->descending = ReadInt(kConfigSection, kOrderKey, 0) == 1;
  options->ignoreCase = ReadInt(kConfigSection, kIgnoreCaseKey, 0) != 0;
  options->numbers = ReadInt(kConfigSection, kNumbersKey, 1) != 0;
  options->unique = ReadInt(kConfigSection, kUniqueKey, 0) != 0;
}

void WriteLineSortOptions(const LineSortOptions& options) {
  WriteNums(kConfigSection, kOrderKey, options.descending ? 1 : 0);
  WriteNums(kConfigSection, kIgnoreCaseKey, options.ignoreCase ? 1 : 0);
  WriteNums(kConfigSection, kNumbersKey, options.numbers ? 1 : 0);
  WriteNums(kConfigSection, kUniqueKey, options.unique ? 1 : 0);
}
