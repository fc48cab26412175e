// A document opened the way File > Open opens it, for the commands that work on one: messages go
// to stderr, questions get their cancelling answer, and the tab-width question is answered with
// the given width (its box left checked).
#pragma once

#include "editor/document.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "foundation/host.h"

struct ToolDocument {
  EditorView view;
  EditDocument* document;
  const char* command;  // named in the messages
  int tabSize;
  UiHost messages;
  EditorHost editorHost;
  const UiHost* previousMessages;
  const EditorHost* previousEditorHost;
};

// Loads `path` (encoding 0 detects; tabSize 0 takes `DefTabSize`). False, with the reason on
// stderr, when it could not be opened; CloseToolDocument is due either way.
bool OpenToolDocument(ToolDocument* tool, const char* command, const char* path, int encoding,
                      int tabSize);
void CloseToolDocument(ToolDocument* tool);
