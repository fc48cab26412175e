// Line sort: the selected lines (or the whole document) reordered by a key, in one undo record.
#pragma once
#include <cstdint>

struct EditorView;

struct LineSortOptions {
  int descending;
  int ignoreCase;  // ASCII letters compare as their capitals
  int numbers;     // a run of digits compares by its value: "file2" before "file10"
  int unique;      // of lines whose keys compare equal only the first stays
};

// Owner of the sort's working arrays.
constexpr int kOwnerLineSort = 7100;

struct SortKey {
  const char16_t* text;
  int length;
};

// Code-point order (a surrogate pair after every unit below it), with the options' folding and
// numbers; under `numbers` keys of equal value are told apart by their plain text ("a01" before
// "a1"). Ignores `descending`.
int CompareSortKeys(const SortKey& a, const SortKey& b, const LineSortOptions& options);
// A stable sort of `count` keys: `order` receives their indexes in the sorted order. Returns how
// many of them stay (all, or the first of each run of equal keys under `unique`), or -1 when the
// working array could not be allocated.
int SortKeys(const SortKey* keys, int count, const LineSortOptions& options, int32_t* order);

// Sorts the lines the selection touches (a line selection ending at column 0 leaves that line
// out; a column block sorts whole lines by the block's columns) or, with nothing selected, the
// whole document. The sorted lines stay selected. False, with nothing
// recorded, when no line moved or went.
bool SortLines(EditorView* view, const LineSortOptions& options);

// The options as the dialog last confirmed them, from section "Config".
void ReadLineSortOptions(LineSortOptions* options);
void WriteLineSortOptions(const LineSortOptions& options);
