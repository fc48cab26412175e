// quill-tool commands of the text tools: the line sort, the string code view and the linear
// equation calculator.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "calc/linear_equations.h"
#include "cli/tool.h"
#include "cli/tool_document.h"
#include "editor/line_sort.h"
#include "foundation/memory.h"
#include "foundation/text_builder.h"
#include "foundation/unicode.h"
#include "tools/string_code.h"

namespace {

void PrintLine(const LineRecord* line, const char* end) {
  char buffer[kMaxLineUnits * 3 + 1];
  int length = line ? Utf16ToUtf8(line->text, line->length, buffer, sizeof buffer) : 0;
  fwrite(buffer, 1, static_cast<size_t>(length > 0 ? length : 0), stdout);
  fputs(end, stdout);
}

}  // namespace

// The file opened as File > Open opens it, its lines sorted as the line sort dialog would with
// nothing selected (or, with --block, with a column block over every line), and printed each
// with the file's line end.
int RunSortCommand(int argc, char** argv) {
  LineSortOptions options = {};
  int left = -1;
  int right = -1;
  int i = 0;
  for (; i < argc && argv[i][0] == '-' && argv[i][1]; ++i) {
    const char* option = argv[i];
    if (strcmp(option, "-r") == 0 || strcmp(option, "--descending") == 0) {
      options.descending = 1;
    } else if (strcmp(option, "-f") == 0 || strcmp(option, "--ignore-case") == 0) {
      options.ignoreCase = 1;
    } else if (strcmp(option, "-n") == 0 || strcmp(option, "--numbers") == 0) {
      options.numbers = 1;
    } else if (strcmp(option, "-u") == 0 || strcmp(option, "--unique") == 0) {
      options.unique = 1;
    } else if (strcmp(option, "--block") == 0 && i + 1 < argc) {
      char* end = nullptr;
      left = static_cast<int>(strtol(argv[++i], &end, 10));
      if (*end != '-') return kExitUsage;
      right = static_cast<int>(strtol(end + 1, &end, 10));
      if (*end || left < 0 || right < left) return kExitUsage;
    } else {
      return kExitUsage;
    }
  }
  if (argc - i != 1) return kExitUsage;
  ToolDocument tool;
  if (!OpenToolDocument(&tool, "sort", argv[i], 0, 0)) {
    CloseToolDocument(&tool);
    return kExitFailed;
  }
  EditDocument* document = tool.document;
  if (left >= 0 && document->lineCount > 0) {
    tool.view.blockMode = 1;
    tool.view.selStartColumn = left;
    tool.view.selEndColumn = right;
    tool.view.selEndLine = document->lineCount - 1;
  }
  SortLines(&tool.view, options);
  const char* end = document->lfOnly ? "\n" : "\r\n";
  for (int line = 0; line < document->lineCount; ++line)
    PrintLine(document->lines[line], end);
  CloseToolDocument(&tool);
  return kExitOk;
}

// What the string code view shows for TEXT (the arguments joined by blanks), as if typed into
// its input.
int RunStrcodeCommand(int argc, char** argv) {
  if (argc < 1) return kExitUsage;
  size_t total = 0;
  for (int i = 0; i < argc; ++i)
    total += strlen(argv[i]) + 1;
  auto* units = static_cast<char16_t*>(AllocMem(total * sizeof(char16_t), kOwnerTool));
  if (!units) return kExitFailed;
  int count = 0;
  for (int i = 0; i < argc; ++i) {
    if (i > 0) units[count++] = u' ';
    count += Utf8ToUtf16(argv[i], static_cast<int>(strlen(argv[i])), units + count,
                         static_cast<int>(total) - count);
  }
  char* text = StringCodeText(units, count);
  FreeMem(units);
  if (!text) return kExitFailed;
  fputs(text, stdout);
  FreeMem(text);
  return kExitOk;
}

// What the linear equation calculator shows for the equations, one an argument (or the lines of
// FILE after -f); exit 1 when they have no single answer.
int RunLineqCommand(int argc, char** argv) {
  if (argc < 1) return kExitUsage;
  TextBuilder text(kOwnerTool);
  if (strcmp(argv[0], "-f") == 0) {
    if (argc != 2) return kExitUsage;
    FILE* file = fopen(argv[1], "rb");
    if (!file) {
      fprintf(stderr, "quill-tool: lineq: cannot open %s\n", argv[1]);
      return kExitFailed;
    }
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, file)) > 0)
      text.Append(buffer, n);
    fclose(file);
  } else {
    for (int i = 0; i < argc; ++i) {
      text.Append(argv[i]);
      text.Append('\n');
    }
  }
  if (text.Failed()) return kExitFailed;
  int result = 0;
  char* answer = SolveLinearEquations(text.Text(), &result);
  if (!answer) return kExitFailed;
  fputs(answer, stdout);
  FreeMem(answer);
  return result == kLinearSolved ? kExitOk : kExitFailed;
}
