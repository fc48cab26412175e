// The parser window: the one "Parser Window" document into which F1 writes what the word at the
// caret stands for. It belongs to no file, is never modified and is never offered for saving.
#pragma once
#include <windows.h>

#include "editor/command_host.h"

// F1 on a word in `view`: brings the symbol table of the view's file up to date (with the open
// project's target options), looks the word up and shows the text in the parser window, which is
// made on first use at its stored place or across the bottom sixth of the desk, and brought to
// the front.
void LookUpDeclaration(void* context, EditorView* view, const char16_t* word, int length);
// The include folders of the view's file: its target's /I folders when a project holds it.
int IncludeFoldersOf(void* context, EditorView* view, char* list, int size);
// The file the parser window's text was last made from.
bool LastAnalysedFile(void* context, char* path, int size);

// True for the parser window itself: it closes without a question.
bool IsParserWindow(HWND window);
// The parser window is going: its place is kept for the next one.
void ParserWindowClosing(HWND window);
// At exit: the symbol table goes (the leak report counts it otherwise).
void FreeParserTable();
