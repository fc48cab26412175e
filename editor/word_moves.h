// Words of a line for the caret commands: the word at the caret (find's proposal, the case
// commands), and the word starts that Ctrl+Left, Ctrl+Right and Ctrl+Backspace go to.
#pragma once

#include "editor/text_edit.h"

struct EditorView;
struct LineRecord;

// The word around unit `index` of `line`: the maximal run of identifier characters that holds the
// unit at `index` or the one before it, or else such a run of word characters. False (and *start =
// *end = index) when the caret touches neither.
bool WordAt(const LineRecord* line, int index, int* start, int* end);
// The same around the view's caret, in units of the caret line.
bool WordAtCaret(const EditorView* view, int* start, int* end);

// The start of the previous word: blanks are stepped over leftwards, then the run of the class
// (identifier, other word characters, separators) left of them. From column 0 the search goes on
// at the end of the line above; (0, 0) stays.
TextPosition PreviousWordStart(const EditDocument* document, TextPosition from);
// The start of the next word: the run the caret stands in, then blanks, are stepped over; at the
// end of a line the search goes on in the line below. Behind the last word of the document: the
// end of the last line.
TextPosition NextWordStart(const EditDocument* document, TextPosition from);

// Commands 48, 49: the caret to those starts; the selection goes.
void CaretToPreviousWord(EditorView* view);
void CaretToNextWord(EditorView* view);
// Command 35: deletes from the caret back to the start of the previous word, recorded as a
// Backspace run so that one Ctrl+Z brings it back.
void DeletePreviousWord(EditorView* view);
