// quill-tool colour: the colour runs of every line of a file, as the editor paints them from the
// top after opening it.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_document.h"
#include "editor/colouring.h"
#include "editor/comment_states.h"

int RunColourCommand(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  ToolDocument tool;
  bool opened = OpenToolDocument(&tool, "colour", argv[0], 0, 0);
  ColourRuns* runs = opened ? NewColourRuns() : nullptr;
  if (runs) {
    EditDocument* document = tool.document;
    for (int i = 0; i < document->lineCount; ++i) {
      if (document->lines[i]) {
        ColourDocumentLine(document, i, &runs);
        for (int run = 0; run < runs->count; ++run)
          printf(run ? " %d:%d" : "%d:%d", runs->entries[run].start,
                 runs->entries[run].colourClass);
      }
      putchar('\n');
    }
  }
  FreeColourRuns(runs);
  CloseToolDocument(&tool);
  return opened && runs ? kExitOk : kExitFailed;
}
