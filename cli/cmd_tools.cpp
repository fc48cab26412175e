// quill-tool commands of the tools: binary to source and the Win32 error lookup.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "tools/bin2src.h"
#include "tools/error_lookup.h"

namespace {

struct Bin2SrcRun {
  bool force = false;
  const char* output = nullptr;
};

void PrintError(void*, int, const char* text) {
  fprintf(stderr, "quill-tool: %s\n", text);
}

bool AnswerOverwrite(void* context, int, const char*) {
  const Bin2SrcRun* run = static_cast<const Bin2SrcRun*>(context);
  if (!run->force) fprintf(stderr, "quill-tool: %s exists; --force overwrites it\n", run->output);
  return run->force;
}

int IndexOf(const char* value, const char* const* names, int count) {
  for (int i = 0; i < count; ++i) {
    if (strcmp(value, names[i]) == 0) return i;
  }
  return -1;
}

bool CopyText(char* target, size_t size, const char* text) {
  if (strlen(text) >= size) return false;
  strcpy(target, text);
  return true;
}

bool ParseLineLen(const char* text, unsigned* lineLen) {
  char* end;
  unsigned long value = strtoul(text, &end, 10);
  if (end == text || *end || text[0] == '-' || value > kBin2SrcMaxLineLen) return false;
  *lineLen = static_cast<unsigned>(value);
  return true;
}

// Reads the options; false on a usage error.
bool ParseBin2SrcArgs(int argc, char** argv, Bin2SrcOptions* options, Bin2SrcRun* run) {
  static const char* const kLanguages[] = {"c", "asm", "java"};
  static const char* const kForms[] = {"hex", "signed", "unsigned"};
  static const char* const kSizes[] = {"1", "2", "4"};
  const char* files[2] = {};
  int fileCount = 0;
  for (int i = 0; i < argc; ++i) {
    const char* arg = argv[i];
    const char* value = i + 1 < argc ? argv[i + 1] : nullptr;
    bool takesValue = true;
    if (strcmp(arg, "--swap") == 0) {
      options->endian = 1, takesValue = false;
    } else if (strcmp(arg, "--force") == 0) {
      run->force = true, takesValue = false;
    } else if (arg[0] == '-' && arg[1] == '-' && !value) {
      return false;
    } else if (strcmp(arg, "--lang") == 0) {
      if ((options->type = IndexOf(value, kLanguages, 3)) < 0) return false;
    } else if (strcmp(arg, "--form") == 0) {
      if ((options->dataExp = IndexOf(value, kForms, 3)) < 0) return false;
    } else if (strcmp(arg, "--size") == 0) {
      if ((options->dataSize = IndexOf(value, kSizes, 3)) < 0) return false;
    } else if (strcmp(arg, "--format") == 0) {
      if (!CopyText(options->dataForm, sizeof options->dataForm, value)) return false;
    } else if (strcmp(arg, "--skip") == 0) {
      if (!CopyText(options->skipBytes, sizeof options->skipBytes, value)) return false;
    } else if (strcmp(arg, "--line-len") == 0) {
      if (!ParseLineLen(value, &options->lineLen)) return false;
    } else if (arg[0] == '-' && arg[1] == '-') {
      return false;
    } else {
      if (fileCount == 2) return false;
      files[fileCount++] = arg, takesValue = false;
    }
    if (takesValue) ++i;
  }
  // The dialog offers no unsigned numbers for Java.
  if (fileCount == 0 || (options->type == kBin2SrcJava && options->dataExp == kBin2SrcUnsigned))
    return false;
  if (!CopyText(options->binFile, sizeof options->binFile, files[0])) return false;
  if (files[1] && !CopyText(options->saveFile, sizeof options->saveFile, files[1])) return false;
  return true;
}

}  // namespace

int RunBin2SrcCommand(int argc, char** argv) {
  Bin2SrcOptions options;
  SetDefaultBin2SrcOptions(&options);
  options.dataForm[0] = '\0';  // the default follows the chosen language, form and size
  Bin2SrcRun run;
  if (!ParseBin2SrcArgs(argc, argv, &options, &run)) return kExitUsage;
  run.output = options.saveFile;
  Bin2SrcHost host{&run, PrintError, AnswerOverwrite};
  if (RunBin2Src(&options, host) != Bin2SrcResult::kDone) return kExitFailed;
  printf("%s\n", options.saveFile);
  return kExitOk;
}

int RunErrMsgCommand(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  char text[4096];
  unsigned code = 0;
  if (LookUpErrorText(argv[0], text, sizeof text, &code) < 0) {
    fputs("quill-tool: errmsg: this system has no Win32 message table\n", stderr);
    return kExitFailed;
  }
  fputs(text, stdout);
  return kExitOk;
}
