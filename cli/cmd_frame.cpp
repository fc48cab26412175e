// quill-tool frame: the frame's rules without its window (command line, status texts, menu
// state, command table, the kept document list, bitmap font files).
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "cli/tool.h"
#include "encoding/text_encoding.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "frame/bitmap_font.h"
#include "frame/command_line.h"
#include "frame/frame_commands.h"
#include "frame/menu_state.h"
#include "frame/session_list.h"
#include "frame/status_text.h"

namespace {

bool ParseInt(const char* text, int* value) {
  char* end;
  long number = strtol(text, &end, 10);
  if (end == text || *end || number < -0x7FFFFFFFL || number > 0x7FFFFFFFL) return false;
  *value = static_cast<int>(number);
  return true;
}

// The program's line ends are CR LF; a tab is shown as it stands.
void PrintLine(const char* text) {
  fputs(text, stdout);
  fputs("\r\n", stdout);
}

int RunCmdline(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  char path[kPathSize];
  bool withFile = ParseCommandLine(argv[0], path);
  PrintLine(path);
  if (!path[0])
    PrintLine("none");
  else
    PrintLine(withFile ? "document" : "project");
  return kExitOk;
}

int RunStatus(int argc, char** argv) {
  int column, line;
  if (argc < 2 || argc > 3 || !ParseInt(argv[0], &column) || !ParseInt(argv[1], &line))
    return kExitUsage;
  bool modified = false;
  if (argc == 3) {
    if (strcmp(argv[2], "--modified") != 0) return kExitUsage;
    modified = true;
  }
  char text[64];
  FormatCursorStatus(column, line, text, sizeof text);
  PrintLine(text);
  PrintLine(ModifiedStatus(modified));
  return kExitOk;
}

// The encoding part: "format ENCODING [--bom] [--lf]" with one of the four encoding names.
int RunFormat(int argc, char** argv) {
  if (argc < 1) return kExitUsage;
  int encoding = ParseEncodingName(argv[0], 0);
  if (!encoding) return kExitUsage;
  bool mark = false, lfOnly = false;
  for (int i = 1; i < argc; ++i) {
    if (strcmp(argv[i], "--bom") == 0)
      mark = true;
    else if (strcmp(argv[i], "--lf") == 0)
      lfOnly = true;
    else
      return kExitUsage;
  }
  char text[40];
  FormatFileFormatStatus(encoding, mark, lfOnly, text, sizeof text);
  PrintLine(text);
  return kExitOk;
}

int RunMenu(int argc, char** argv) {
  int mode, quick, project;
  if (argc != 3 || !ParseInt(argv[0], &mode) || !ParseInt(argv[1], &quick) ||
      !ParseInt(argv[2], &project) || mode < 0 || mode > 2)
    return kExitUsage;
  MenuStatePlan plan;
  PlanMenuState(mode, quick != 0, project != 0, &plan);
  char text[64];
  for (int i = 0; i < plan.count; ++i) {
    const MenuItemState& item = plan.items[i];
    snprintf(text, sizeof text, "%s%d %s", item.byPosition ? "bar:" : "", item.id,
             item.enabled ? "enabled" : "grey");
    PrintLine(text);
  }
  if (plan.redrawBar) PrintLine("redraw");
  return kExitOk;
}

int RunCommand(int argc, char** argv) {
  int id;
  if (argc != 1 || !ParseInt(argv[0], &id) || id < 0 || id > 0xFFFF) return kExitUsage;
  FrameCommandAction action = FrameCommand(id);
  PrintLine(FrameCommandName(action));
  if (action == kCommandUnfinished) PrintLine(kUnfinishedText);
  return kExitOk;
}

int RunSession(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  if (!IsPlainFile(argv[0])) {
    fprintf(stderr, "quill-tool: cannot read %s\n", argv[0]);
    return kExitFailed;
  }
  int length = SessionListLength(argv[0]);
  for (int i = 0; i < length; ++i) {
    SessionEntry entry;
    char text[kPathSize + 80];
    if (ReadSessionEntry(argv[0], i, &entry)) {
      snprintf(text, sizeof text, "%d: %s %d %d %d %d %d", i, entry.path, entry.left, entry.top,
               entry.width, entry.height, entry.show);
    } else {
      snprintf(text, sizeof text, "%d: (skipped)", i);
    }
    PrintLine(text);
  }
  return kExitOk;
}

int RunFont(int argc, char** argv) {
  if (argc != 1) return kExitUsage;
  size_t length = 0;
  char* data = ReadWholeFile(argv[0], &length, kOwnerTool);
  if (!data) {
    fprintf(stderr, "quill-tool: cannot read %s\n", argv[0]);
    return kExitFailed;
  }
  BitmapFont font;
  bool ok = ParseBitmapFont(data, length, &font);
  if (ok) {
    int halfCount = 0, fullCount = 0, rowBytes, width;
    for (int unit = 0; unit < 256; ++unit)
      halfCount += BitmapFontGlyph(font, static_cast<char16_t>(unit), &rowBytes, &width) != nullptr;
    for (int unit = 0xAC00; unit <= 0xD7A3; ++unit)
      fullCount += BitmapFontGlyph(font, static_cast<char16_t>(unit), &rowBytes, &width) != nullptr;
    char text[96];
    snprintf(text, sizeof text, "cell %d %d", BitmapFontCellWidth(font), font.height);
    PrintLine(text);
    snprintf(text, sizeof text, "glyphs %d %d", halfCount, fullCount);
    PrintLine(text);
  } else {
    fprintf(stderr, "quill-tool: %s is not a bitmap font\n", argv[0]);
  }
  FreeMem(data);
  return ok ? kExitOk : kExitFailed;
}

}  // namespace

int RunFrameCommand(int argc, char** argv) {
  if (argc < 1) return kExitUsage;
  const char* what = argv[0];
  if (strcmp(what, "cmdline") == 0) return RunCmdline(argc - 1, argv + 1);
  if (strcmp(what, "status") == 0) return RunStatus(argc - 1, argv + 1);
  if (strcmp(what, "format") == 0) return RunFormat(argc - 1, argv + 1);
  if (strcmp(what, "menu") == 0) return RunMenu(argc - 1, argv + 1);
  if (strcmp(what, "command") == 0) return RunCommand(argc - 1, argv + 1);
  if (strcmp(what, "session") == 0) return RunSession(argc - 1, argv + 1);
  if (strcmp(what, "font") == 0) return RunFont(argc - 1, argv + 1);
  return kExitUsage;
}
