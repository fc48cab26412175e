// quill-tool keys: a key and mouse script played into a file opened as the editor opens it,
// through the same calls the editor window makes for each message, so that the text left behind
// is the text Quill.exe leaves for the same input. Ctrl+S in the script saves, as in the window.
#include <cstdio>
#include <cstring>

#include "cli/tool.h"
#include "cli/tool_document.h"
#include "editor/key_commands.h"
#include "editor/view_input.h"
#include "editor/view_keys.h"
#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/unicode.h"

namespace {

// The run's state; the document comes first, so that the editor host's context (the document)
// is the run as well.
struct KeysRun {
  ToolDocument tool;  // first: see above
  char16_t* clipboard;
  int clipboardUnits;
  unsigned clock;  // milliseconds, advanced by the script's waits
};

bool SetClipboard(void* context, const char16_t* units, int count) {
  KeysRun* run = reinterpret_cast<KeysRun*>(context);
  auto* copy = static_cast<char16_t*>(AllocMem((static_cast<size_t>(count) + 1) * 2, kOwnerTool));
  if (!copy) return false;
  memcpy(copy, units, static_cast<size_t>(count) * 2);
  FreeMem(run->clipboard);
  run->clipboard = copy;
  run->clipboardUnits = count;
  return true;
}

const char16_t* GetClipboard(void* context, int* count) {
  KeysRun* run = reinterpret_cast<KeysRun*>(context);
  *count = run->clipboardUnits;
  return run->clipboard;
}

unsigned TickCount(void* context) {
  return reinterpret_cast<KeysRun*>(context)->clock;
}

struct KeyName {
  const char* name;
  int key;
};

const KeyName kKeyNames[] = {
    {"Enter", kVkReturn},  {"Back", kVkBack},         {"Tab", kVkTab},   {"Escape", kVkEscape},
    {"Delete", kVkDelete}, {"Insert", kVkInsert},     {"Home", kVkHome}, {"End", kVkEnd},
    {"Left", kVkLeft},     {"Right", kVkRight},       {"Up", kVkUp},     {"Down", kVkDown},
    {"PageUp", kVkPageUp}, {"PageDown", kVkPageDown}, {"F1", kVkF1},     {"F3", 0x72},
};

// "Ctrl+Shift+Left", "K", "Enter": the key and its modifiers; false for a name not known.
bool ParseChord(const char* text, int* key, int* modifiers) {
  *modifiers = 0;
  for (;;) {
    if (strncmp(text, "Ctrl+", 5) == 0) {
      *modifiers |= kChordControl;
      text += 5;
    } else if (strncmp(text, "Shift+", 6) == 0) {
      *modifiers |= kChordShift;
      text += 6;
    } else if (strncmp(text, "Alt+", 4) == 0) {
      *modifiers |= kChordAlt;
      text += 4;
    } else {
      break;
    }
  }
  if (text[0] && !text[1] &&
      ((text[0] >= 'A' && text[0] <= 'Z') || (text[0] >= '0' && text[0] <= '9'))) {
    *key = text[0];
    return true;
  }
  for (const KeyName& name : kKeyNames) {
    if (strcmp(name.name, text) == 0) {
      *key = name.key;
      return true;
    }
  }
  return false;
}

// A key-down as the message loop delivers it: the accelerator table first, then the editor's
// key handler, then the character the key makes (none while Ctrl or Alt is held).
void PressKey(EditorView* view, int key, int modifiers) {
  int command = AcceleratorCommand(key, modifiers);
  if (command) {
    RunEditorCommand(view, command);
    return;
  }
  ViewKeyDown(view, key, modifiers);
  if (modifiers & (kChordControl | kChordAlt)) return;
  char16_t unit = KeyCharacter(key, (modifiers & kChordShift) != 0);
  if (unit) ViewCharacter(view, unit);
}

// Characters typed without keys of their own, as an input method or SendInput delivers them.
bool TypeText(EditorView* view, const char* text) {
  char16_t units[4096];
  int count = Utf8ToUtf16(text, static_cast<int>(strlen(text)), units, 4096);
  if (count < 0) return false;
  for (int i = 0; i < count; ++i) {
    ViewKeyDown(view, kVkPacket, 0);
    ViewCharacter(view, units[i]);
  }
  return true;
}

// A press of the left button at a cell of the text area, as the window handles it.
void Click(EditorView* view, int row, int column, bool shift) {
  int cellColumn, cellLine;
  CellOfView(view, row, column, &cellColumn, &cellLine);
  ViewClick(view, cellColumn, cellLine, shift);
}

bool RunLine(KeysRun* run, char* line) {
  EditorView* view = &run->tool.view;
  ++run->clock;
  int a, b, c, d;
  if (line[0] == 0 || line[0] == '#') return true;
  if (strncmp(line, "text ", 5) == 0) return TypeText(view, line + 5);
  if (strncmp(line, "key ", 4) == 0) {
    int key, modifiers;
    if (!ParseChord(line + 4, &key, &modifiers)) return false;
    PressKey(view, key, modifiers);
    return true;
  }
  if (sscanf(line, "page %d %d", &a, &b) == 2 && a > 0 && b > 0) {
    SetViewPage(view, a, b);
    return true;
  }
  if (sscanf(line, "wait %d", &a) == 1 && a >= 0) {
    run->clock += static_cast<unsigned>(a);
    return true;
  }
  if (sscanf(line, "click %d %d", &a, &b) == 2) {
    Click(view, a, b, false);
    return true;
  }
  if (sscanf(line, "shiftclick %d %d", &a, &b) == 2) {
    Click(view, a, b, true);
    return true;
  }
  // The second press of a double click arrives as a double-click message alone.
  if (sscanf(line, "dblclick %d %d", &a, &b) == 2) {
    Click(view, a, b, false);
    ViewSelectWord(view);
    return true;
  }
  if (sscanf(line, "drag %d %d %d %d", &a, &b, &c, &d) == 4) {
    Click(view, a, b, false);
    int cellColumn, cellLine;
    CellOfView(view, c, d, &cellColumn, &cellLine);
    ViewDrag(view, cellColumn, cellLine);
    return true;
  }
  return false;
}

}  // namespace

int RunKeysCommand(int argc, char** argv) {
  if (argc != 2) return kExitUsage;
  size_t length = 0;
  char* script = ReadWholeFile(argv[1], &length, kOwnerTool);
  if (!script) {
    fprintf(stderr, "quill-tool: keys: cannot read %s\n", argv[1]);
    return kExitFailed;
  }
  KeysRun run = {};
  int status = kExitFailed;
  if (OpenToolDocument(&run.tool, "keys", argv[0], 0, 0)) {
    run.clock = 1;
    run.tool.editorHost.setClipboard = SetClipboard;
    run.tool.editorHost.getClipboard = GetClipboard;
    run.tool.editorHost.tickCount = TickCount;
    SetViewPage(&run.tool.view, 25, 80);
    status = kExitOk;
    int number = 0;
    for (char* line = script; line && status == kExitOk; ++number) {
      char* end = strchr(line, '\n');
      if (end) *end = 0;
      size_t size = strlen(line);
      if (size && line[size - 1] == '\r') line[size - 1] = 0;
      if (!RunLine(&run, line)) {
        fprintf(stderr, "quill-tool: keys: line %d: not an event: %s\n", number + 1, line);
        status = kExitUsage;
      }
      line = end ? end + 1 : nullptr;
    }
  }
  CloseToolDocument(&run.tool);
  FreeMem(run.clipboard);
  FreeMem(script);
  return status;
}
