// What the editor asks of its window and of the user beyond message boxes: repaints, the caret,
// status texts, the clipboard, the tab-width and fill-character questions, the save dialog, the
// terminal opener, the clock. Every entry may be null: the editor then does what a window that
// is not there would do (nothing, no answer, an empty clipboard). Tests install scripted hosts.
#pragma once

struct EditorView;
struct EditDocument;
struct UnmappableText;

// Default-button flag of a message box (Cancel as the default of an OK/Cancel question).
constexpr unsigned kMbDefButton2 = 0x100;

struct TabSizeAnswer {
  int size;       // 2 ... 16
  bool keep;      // the check box: keep the width for saving
  bool remember;  // store the size as `DefTabSize` (the dialog does; quill-tool does not)
};

struct LocalTime {
  int year, month, day, hour, minute;
};

struct EditorHost {
  void* context;
  void (*repaintLine)(void* context, EditorView* view, int line);
  void (*repaintAll)(void* context, EditorView* view);
  void (*caretMoved)(void* context, EditorView* view);
  void (*titleChanged)(void* context, EditorView* view);
  // After a load: scroll ranges, colouring state.
  void (*documentLoaded)(void* context, EditorView* view);
  void (*statusText)(void* context, int part, const char* text);
  // The tab-width dialog, proposing `proposed`; false for Cancel.
  bool (*askTabSize)(void* context, int proposed, TabSizeAnswer* answer);
  // The fill dialog: one character, 0 for Cancel.
  char16_t (*askFillCharacter)(void* context);
  // The save dialog (title, "Source Files", "cpp"): the chosen path in the internal form.
  bool (*askSavePath)(void* context, const char* title, char* path, int size);
  // Puts text on the clipboard as CF_UNICODETEXT.
  bool (*setClipboard)(void* context, const char16_t* units, int count);
  // The clipboard's CF_UNICODETEXT, valid until the next call; null when there is no text.
  const char16_t* (*getClipboard)(void* context, int* count);
  // Opens the serial terminal of a port specification "COM%d,..."; false when the port could
  // not be opened.
  bool (*openTerminal)(void* context, EditDocument* document, const char* specification);
  unsigned (*tickCount)(void* context);  // milliseconds
  LocalTime (*localTime)(void* context);
  // A save meets characters that `encoding` cannot hold: kIdYes saves as UTF-8, kIdNo saves
  // anyway, kIdCancel does not save. Null asks with message 161 in a Yes/No/Cancel box.
  int (*askUnmappable)(void* context, EditorView* view, int encoding, const UnmappableText* found);
};

// Installs `host` (kept by pointer; null restores the default) and returns the previous one.
const EditorHost* SetEditorHost(const EditorHost* host);

void EditorRepaintLine(EditorView* view, int line);
void EditorRepaintAll(EditorView* view);
void EditorCaretMoved(EditorView* view);
void EditorTitleChanged(EditorView* view);
void EditorDocumentLoaded(EditorView* view);
void EditorStatusText(int part, const char* text);
bool EditorAskTabSize(int proposed, TabSizeAnswer* answer);
char16_t EditorAskFillCharacter();
bool EditorAskSavePath(const char* title, char* path, int size);
bool EditorSetClipboard(const char16_t* units, int count);
const char16_t* EditorGetClipboard(int* count);
bool EditorOpenTerminal(EditDocument* document, const char* specification);
unsigned EditorTickCount();
LocalTime EditorLocalTime();
int EditorAskUnmappable(EditorView* view, int encoding, const UnmappableText* found);
// Message 161 filled in for the document of `view`.
void FormatUnmappableQuestion(const EditorView* view, int encoding, const UnmappableText* found,
                              char* text, int size);
