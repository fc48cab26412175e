// The frame's readers of outside text and bytes: the command line, a kept document entry, a
// frame placement, a bitmap font file and the update check's version text. Each stays inside its
// buffers, and what it accepts keeps its promises (a path without backslashes, a glyph inside the
// file, a version and a web page).
#include <cstdint>
#include <cstring>
#include <string>

#include "foundation/path.h"
#include "frame/bitmap_font.h"
#include "frame/command_line.h"
#include "frame/logo_rules.h"
#include "frame/session_list.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  text = text.c_str();

  char path[kPathSize];
  bool withFile = ParseCommandLine(text.c_str(), path);
  size_t length = strlen(path);
  if (length >= kPathSize || strchr(path, '\\')) __builtin_trap();
  if (withFile && (length == 0 || IsProjectPath(path))) __builtin_trap();

  SessionEntry entry;
  if (ParseSessionEntry(text.c_str(), &entry)) {
    if (!entry.path[0] || strlen(entry.path) >= kPathSize) __builtin_trap();
    // What is written back reads back the same, unless the path holds a quote of its own.
    if (!strchr(entry.path, '"')) {
      char again[kPathSize + 80];
      FormatSessionEntry(&entry, again, sizeof again);
      SessionEntry reread;
      if (!ParseSessionEntry(again, &reread) || strcmp(reread.path, entry.path) != 0 ||
          reread.left != entry.left || reread.show != entry.show)
        __builtin_trap();
    }
  }
  // The update check's text from a server: what it accepts is a version and a web page.
  VersionOffer offer;
  if (ParseVersionOffer(reinterpret_cast<const char*>(data), size, "http://h/Version.txt", &offer)) {
    if (CompareVersions(offer.version, offer.version) != 0 ||
        CompareVersions(offer.version, "") <= 0 ||
        (strncmp(offer.page, "http://", 7) != 0 && strncmp(offer.page, "https://", 8) != 0))
      __builtin_trap();
  }
  FramePlace place;
  if (ParseFramePlace(text.c_str(), &place)) FitFramePlace(&place, 1024, 768, 23);

  BitmapFont font;
  if (ParseBitmapFont(data, size, &font)) {
    for (unsigned unit : {0u, 65u, 255u, 256u, 0xAC00u, 0xBBBBu, 0xD7A3u, 0xFFFFu}) {
      int rowBytes = 0, width = 0;
      const unsigned char* glyph =
          BitmapFontGlyph(font, static_cast<char16_t>(unit), &rowBytes, &width);
      if (!glyph) continue;
      size_t end = static_cast<size_t>(glyph - data) + static_cast<size_t>(rowBytes) * font.height;
      if (end > size || rowBytes * 8 < width) __builtin_trap();
    }
  }
  return 0;
}
