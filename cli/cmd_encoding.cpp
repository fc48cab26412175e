// quill-tool command of the encodings: what opening a file would take it for.
#include <cstdio>

#include "cli/tool.h"
#include "encoding/encoding_detect.h"
#include "encoding/encoding_settings.h"
#include "encoding/text_encoding.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"

int RunDetectCommand(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  size_t length = 0;
  char* data = ReadWholeFile(argv[0], &length, kOwnerTool);
  if (!data) {
    fprintf(stderr, "quill-tool: detect: cannot read %s\n", argv[0]);
    return kExitFailed;
  }
  if (length == 0) {
    // An empty file opens with no encoding; it gets one when it is saved.
    puts("NONE");
  } else if (length > 0x7FFFFFFF) {
    fprintf(stderr, "quill-tool: detect: %s is too large\n", argv[0]);
  } else {
    int bomLength = 0;
    int encoding =
        DetectTextEncoding(data, static_cast<int>(length), ReadUnrecognisedEncoding(), &bomLength);
    printf("%s%s\n", EncodingName(encoding), bomLength ? " BOM" : "");
  }
  FreeMem(data);
  return length > 0x7FFFFFFF ? kExitFailed : kExitOk;
}
