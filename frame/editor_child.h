// The frame's side of the document windows: what it needs to create one, find one by its path,
// reuse an empty new one and ask one to close. Until the editor view window arrives, the window
// behind these functions is a plain document window of the frame's own that loads, shows and
// saves its document; the frame uses nothing else of it.
#pragma once
#include <windows.h>

struct EditDocument;

extern const wchar_t kEditorClassName[];

bool RegisterEditorChildClass(HINSTANCE instance);

// Show state -1: default place and size; -2: the given rectangle as the normal one, the window
// kept only when its file was read, and then maximised.
constexpr int kShowDefault = -1;
constexpr int kShowGiven = -2;

// Creates a document window in the MDI client and loads `path` (null: an empty new document).
// Null when the window could not be made or the file could not be opened (the editor has told
// the user why).
HWND CreateEditorWindow(const char* path, const char* sourcePath, int encoding, int tabSize, int x,
                        int y, int width, int height, int show);

// The document of an editor child, or null for any other window.
EditDocument* EditorWindowDocument(HWND window);
// The same path, compared as the editor compares names (without case, either separator).
bool EditorShowsPath(HWND window, const char* path);
// Sets the window's check-pending flag; false when it was set already (or it is no editor), so
// that activation posts command 112 once per window until the window has answered it.
bool SetCheckPending(HWND window, bool byProgram);
// True for an untitled new document that is unmodified and empty: opening a file reuses it.
bool IsEmptyNewDocument(HWND window);
// Titles a document window with its path in the system's form, in the window menu too.
void ShowDocumentTitle(HWND window, const char* path);
