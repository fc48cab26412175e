// quill-tool commands of the images subsystem: a PNG's size and a digest of its pixels.
#include <cstdio>

#include "cli/tool.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/sha256.h"
#include "images/png.h"

int RunPngCommand(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  size_t length;
  char* file = ReadWholeFile(argv[0], &length, kOwnerTool);
  if (!file) {
    fprintf(stderr, "quill-tool: cannot read %s\n", argv[0]);
    return kExitFailed;
  }
  PngImage image;
  int status = DecodePng(reinterpret_cast<const uint8_t*>(file), length, kPngRgbaStraight, &image);
  FreeMem(file);
  if (status != kPngOk) {
    fprintf(stderr, "quill-tool: %s: %s\n", argv[0], PngStatusText(status));
    return kExitFailed;
  }
  Sha256 sha;
  Sha256Start(&sha);
  Sha256Add(&sha, image.pixels, static_cast<size_t>(image.width) * image.height * 4);
  uint8_t digest[32];
  Sha256Finish(&sha, digest);
  char hex[65];
  Sha256Hex(digest, hex);
  printf("%d %d %s\n", image.width, image.height, hex);
  FreePngImage(&image);
  return kExitOk;
}
