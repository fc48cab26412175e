// Loading a document from its file and saving it back, the per-file memory of caret and
// bookmarks, and the check that someone else changed the file.
#pragma once

struct EditorView;
struct EditDocument;
struct LineRecord;

// Files of this size or more are refused (the message says 50 MByte).
constexpr long long kMaxFileSize = 52480000;
// A line longer than this (in bytes, or units for UTF-16) means the data is not text.
constexpr int kMaxTextLine = 4096;

// The line at index, the caret's line for a negative index; null for an empty line or an index
// out of range.
LineRecord* GetLine(const EditorView* view, int index);

// Converts one line of file data (without its line end) to UTF-16, expands its tabs with the
// document's tab width and appends it. A line longer than a record holds becomes several lines.
// Returns the number of lines appended (0 when memory ran out).
int AppendUtf16Line(EditDocument* document, const char16_t* units, int count);
int AppendEucKrLine(EditDocument* document, const char* bytes, int count);
int AppendJohabLine(EditDocument* document, const char* bytes, int count);
int AppendUtf8Line(EditDocument* document, const char* bytes, int count);

// Command 81: reads the file at sourcePath (when set) or path. True on success.
bool LoadDocument(EditorView* view);
// Command 82: writes the document in its encoding, tab width, line ends and mark. asCopy leaves
// the modified flag, the title and the stamp alone. An untitled document asks for a name first.
bool SaveDocument(EditorView* view, bool asCopy);
// Characters of a document that an encoding cannot hold: how many, and where the first one is
// (its line and display column, counted from 1 as the status bar shows them).
struct UnmappableText {
  int count;
  int line;
  int column;
};
constexpr int kMessageUnmappable = 161;
// Saving onto a read-only file asks first (Yes/No); the file stays read-only.
constexpr int kMessageReadOnly = 162;
UnmappableText FindUnmappable(const EditDocument* document, int encoding);
// The save's question about them (message 161 through the editor host): kIdYes saves as UTF-8,
// kIdNo saves with the encoding's substitutes, kIdCancel does not save. The same question comes
// from every save, Save in other format's copy included.
// Command 83: asks for a name, then saves; the old name comes back when the save fails.
bool SaveDocumentAs(EditorView* view);

// Whether the data would pass the loader's text check.
bool LooksLikeText(const char* data, long long size);
// Spaces compressed into tabs for saving; `target` holds at least `count` units. Returns the
// length, trailing units below 33 dropped.
int CompressTabs(const char16_t* units, int count, int tabSize, char16_t* target);

// On activation: asks to reload a file that changed on disk (message 89) or reports one that
// vanished (message 115). True when the document was reloaded.
bool CheckChangedOnDisk(EditorView* view);
// Message 85 for a modified document: kIdYes, kIdNo or kIdCancel (kIdNo when unmodified).
int ConfirmSaveIfModified(EditorView* view);

// Caret, view and bookmarks in the settings section named by the CRC-32 of the path.
void SaveFileState(const EditorView* view);
void RestoreFileState(EditorView* view);
// CRC-32 with the reflected polynomial 0xEDB88320, initial value 0, no final inversion.
unsigned PathCrc32(const char* bytes, int count);
