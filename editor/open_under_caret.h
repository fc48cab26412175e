// F1: the file named under the caret ("name", <name>, or [name #line] as the parser window writes
// its places), resolved against the document's folder and the include folders and opened in a new
// editor window; else the word at the caret goes to the declaration look-up.
#pragma once

struct EditorView;
struct LineRecord;

constexpr int kNameUnits = 260;

// The text between the nearest enclosing "", <> or [] pair around unit `index` (the opening one
// searched leftwards from the unit before the caret, the closing one rightwards from the caret),
// in the internal form with '\' turned into '/'. A [] pair counts only when it holds " #" after at
// least two characters. A " #" followed by a number n splits off the line number n (0 when there
// is none). False when there is no such pair or it is empty.
bool FileNameAt(const LineRecord* line, int index, char* name, int size, int* lineNumber);
// The first existing file of: the name as it stands when absolute, else the base folder (the
// document's, or for the "Parser Window" document the folder of the file last analysed) joined
// with it, then each include folder joined with it.
bool ResolveFileName(EditorView* view, const char* name, char* path, int size);
// Command 99. True when a file was found and handed to the window to open.
bool OpenFileUnderCaret(EditorView* view);
