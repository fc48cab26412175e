// quill-tool command of the encodings: what opening a file would take it for.
#include <cstdio>

#include "cli/tool.h"
#include "encoding/encoding_detect.h"
#include "encoding/encoding_settings.h"
#include "encoding/text_encoding.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"

namespace {

// Prints the choice for one file; false when it cannot be read.
bool DetectOneFile(const char* path, int unrecognised) {
  size_t length = 0;
  char* data = ReadWholeFile(path, &length, kOwnerTool);
  if (!data) {
    fprintf(stderr, "quill-tool: detect: cannot read %s\n", path);
    return false;
  }
  bool ok = length <= 0x7FFFFFFF;
  if (length == 0) {
    // An empty file opens with no encoding; it gets one when it is saved.
    puts("NONE");
  } else if (!ok) {
    fprintf(stderr, "quill-tool: detect: %s is too large\n", path);
  } else {
    int bomLength = 0;
    int encoding = DetectTextEncoding(data, static_cast<int>(length), unrecognised, &bomLength);
    printf("%s%s\n", EncodingName(encoding), bomLength ? " BOM" : "");
  }
  FreeMem(data);
  return ok;
}

}  // namespace

// One line a file, in order; the first file that cannot be read ends the run.
int RunDetectCommand(int argc, char** argv) {
  if (argc < 1) return kExitUsage;
  int unrecognised = ReadUnrecognisedEncoding();
  for (int i = 0; i < argc; ++i) {
    if (!DetectOneFile(argv[i], unrecognised)) return kExitFailed;
  }
  return kExitOk;
}
