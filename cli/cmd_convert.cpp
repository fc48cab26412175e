// quill-tool convert: a file opened as File > Open would and written as "save in other format"
// would, so that the document's reading and writing can be checked and scripted from outside.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_document.h"
#include "editor/document_io.h"
#include "encoding/encoding_settings.h"
#include "encoding/text_encoding.h"
#include "foundation/formatter.h"

namespace {

struct ConvertOptions {
  int from = 0;
  int tab = 0;
  int to = 0;
  int saveTab = -1;
  int lfOnly = -1;
  int bom = -1;
  bool force = false;
  const char* in = nullptr;
  const char* out = nullptr;
};

bool ParseNumber(const char* text, int low, int high, int* value) {
  char* end = nullptr;
  long number = strtol(text, &end, 10);
  if (!*text || *end || number < low || number > high) return false;
  *value = static_cast<int>(number);
  return true;
}

bool ParseOptions(int argc, char** argv, ConvertOptions* options) {
  int i = 0;
  for (; i < argc && strncmp(argv[i], "--", 2) == 0; ++i) {
    const char* name = argv[i];
    bool hasValue = i + 1 < argc;
    if (strcmp(name, "--from") == 0 && hasValue) {
      options->from = ParseEncodingName(argv[++i], 0);
      if (!options->from) return false;
    } else if (strcmp(name, "--to") == 0 && hasValue) {
      options->to = ParseEncodingName(argv[++i], 0);
      if (!options->to) return false;
    } else if (strcmp(name, "--tab") == 0 && hasValue) {
      if (!ParseNumber(argv[++i], 2, 16, &options->tab)) return false;
    } else if (strcmp(name, "--save-tab") == 0 && hasValue) {
      if (!ParseNumber(argv[++i], 0, 16, &options->saveTab)) return false;
    } else if (strcmp(name, "--lf") == 0) {
      options->lfOnly = 1;
    } else if (strcmp(name, "--crlf") == 0) {
      options->lfOnly = 0;
    } else if (strcmp(name, "--bom") == 0) {
      options->bom = 1;
    } else if (strcmp(name, "--no-bom") == 0) {
      options->bom = 0;
    } else if (strcmp(name, "--force") == 0) {
      options->force = true;
    } else {
      return false;
    }
  }
  if (argc - i != 2) return false;
  options->in = argv[i];
  options->out = argv[i + 1];
  return true;
}

// With --force the characters the encoding cannot hold are written as its substitutes.
int SaveAnyway(void*, EditorView*, int, const UnmappableText*) {
  return kIdNo;
}

}  // namespace

int RunConvertCommand(int argc, char** argv) {
  ConvertOptions options;
  if (!ParseOptions(argc, argv, &options)) return kExitUsage;
  if (strlen(options.out) >= kPathSize) {
    fprintf(stderr, "quill-tool: convert: path too long\n");
    return kExitFailed;
  }
  ToolDocument tool;
  int status = kExitFailed;
  if (OpenToolDocument(&tool, "convert", options.in, options.from, options.tab)) {
    EditDocument* document = tool.document;
    if (options.to) document->encoding = static_cast<uint8_t>(options.to);
    if (options.saveTab >= 0) document->tabSize = static_cast<uint8_t>(options.saveTab);
    if (options.lfOnly >= 0) document->lfOnly = static_cast<uint8_t>(options.lfOnly);
    if (options.bom >= 0) document->hasBom = static_cast<uint8_t>(options.bom);
    FormatStr(document->path, sizeof document->path, "%s", options.out);
    document->untitled = 0;
    int encoding = document->encoding ? document->encoding : ReadUnrecognisedEncoding();
    UnmappableText unmappable = FindUnmappable(document, encoding);
    if (options.force) tool.editorHost.askUnmappable = SaveAnyway;
    if (unmappable.count > 0 && !options.force) {
      // A script must not get substitutes it did not ask for.
      fprintf(stderr,
              "quill-tool: convert: %d character%s cannot be written in %s, the first at line %d, "
              "column %d (--force writes substitutes)\n",
              unmappable.count, unmappable.count == 1 ? "" : "s", EncodingName(encoding),
              unmappable.line, unmappable.column);
    } else if (SaveDocument(&tool.view, true)) {
      status = kExitOk;
    } else {
      fprintf(stderr, "quill-tool: convert: cannot write %s\n", options.out);
    }
  }
  CloseToolDocument(&tool);
  return status;
}
