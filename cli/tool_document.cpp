#include "cli/tool_document.h"

#include "cli/tool_support.h"

#include <cstdio>
#include <cstring>

#include "editor/document_io.h"
#include "foundation/formatter.h"
#include "foundation/settings.h"

namespace {

bool AnswerTabSize(void* context, int, TabSizeAnswer* answer) {
  answer->size = static_cast<ToolDocument*>(context)->tabSize;
  answer->keep = true;
  answer->remember = false;
  return true;
}

}  // namespace

bool OpenToolDocument(ToolDocument* tool, const char* command, const char* path, int encoding,
                      int tabSize) {
  memset(tool, 0, sizeof *tool);
  tool->command = command;
  tool->tabSize = tabSize;
  if (tool->tabSize == 0) {
    tool->tabSize = ReadInt(kConfigSection, "DefTabSize", 8);
    if (tool->tabSize < 2 || tool->tabSize > 16) tool->tabSize = 8;
  }
  tool->messages = {PrintToolMessage, const_cast<char*>(command)};
  tool->previousMessages = SetUiHost(&tool->messages);
  tool->editorHost.context = tool;
  tool->editorHost.askTabSize = AnswerTabSize;
  tool->previousEditorHost = SetEditorHost(&tool->editorHost);
  if (strlen(path) >= kPathSize) {
    fprintf(stderr, "quill-tool: %s: path too long\n", command);
    return false;
  }
  tool->document = NewDocument();
  tool->view.document = tool->document;
  if (!tool->document) return false;
  FormatStr(tool->document->path, sizeof tool->document->path, "%s", path);
  tool->document->encoding = static_cast<uint8_t>(encoding);
  if (!LoadDocument(&tool->view)) {
    fprintf(stderr, "quill-tool: %s: cannot open %s\n", command, path);
    return false;
  }
  return true;
}

void CloseToolDocument(ToolDocument* tool) {
  FreeDocument(tool->document);
  tool->document = nullptr;
  SetEditorHost(tool->previousEditorHost);
  SetUiHost(tool->previousMessages);
}
