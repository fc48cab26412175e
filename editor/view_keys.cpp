#include "editor/view_keys.h"

#include "editor/document.h"
#include "editor/editing.h"
#include "editor/editor_view.h"
#include "editor/pending_prefix.h"
#include "editor/view_input.h"

namespace {

struct Accelerator {
  int key;  // a virtual-key code, or the character of a character chord
  int modifiers;
  int command;
  bool character;
};

constexpr int kCtrl = kChordControl;
constexpr int kCtrlShift = kChordControl | kChordShift;

// The frame's accelerator table as the resource file lists it (a test holds the two together).
constexpr Accelerator kAccelerators[] = {
    {0x73, kChordShift, 87, false},  // Shift+F4
    {0x74, kChordShift, 86, false},  // Shift+F5
    {'N', kCtrl, 79, false},
    {'S', kCtrl, 82, false},
    {kVkHome, kCtrl, 92, false},
    {kVkEnd, kCtrl, 93, false},
    {kVkHome, kCtrlShift, 94, false},
    {kVkEnd, kCtrlShift, 95, false},
    {kVkLeft, kCtrl, 48, false},
    {kVkRight, kCtrl, 49, false},
    {kVkUp, kCtrl, 30, false},
    {kVkDown, kCtrl, 31, false},
    {kVkBack, kCtrl, 35, false},
    {'X', kCtrl, 105, false},
    {'C', kCtrl, 106, false},
    {'V', kCtrl, 107, false},
    {'A', kCtrl, 74, false},
    {'F', kCtrl, 108, false},
    {kVkF1, 0, 99, false},
    {0x72, 0, 109, false},      // F3
    {0x74, 0, 111, false},      // F5
    {0x74, kCtrl, 124, false},  // Ctrl+F5
    {0x76, 0, 125, false},      // F7
    {0x76, kCtrl, 46, false},   // Ctrl+F7
    {'H', kCtrl, 110, false},
    {'Z', kCtrl, 70, false},
    {'Y', kCtrl, 71, false},
    {'U', kCtrlShift, 72, false},
    {'I', kCtrlShift, 73, false},
    {'G', kCtrl, 76, false},
    {'O', kCtrl, 40, false},
    {'Q', kCtrl, 41, false},
    {'K', kCtrl, 42, false},
    {'Q', kChordShift | kChordAlt, 47, false},
    {'1', kCtrlShift, 50, false},
    {'2', kCtrlShift, 51, false},
    {'3', kCtrlShift, 52, false},
    {'4', kCtrlShift, 53, false},
    {'5', kCtrlShift, 54, false},
    {'6', kCtrlShift, 55, false},
    {'7', kCtrlShift, 56, false},
    {'8', kCtrlShift, 57, false},
    {'9', kCtrlShift, 58, false},
    {'1', kCtrl, 60, false},
    {'2', kCtrl, 61, false},
    {'3', kCtrl, 62, false},
    {'4', kCtrl, 63, false},
    {'5', kCtrl, 64, false},
    {'6', kCtrl, 65, false},
    {'7', kCtrl, 66, false},
    {'8', kCtrl, 67, false},
    {'9', kCtrl, 68, false},
    {'[', kChordAlt, 113, true},
    {']', kChordAlt, 113, true},
    {0xDC, kCtrlShift, 22, false},  // the backslash key
};

}  // namespace

int AcceleratorCommand(int virtualKey, int modifiers) {
  for (const Accelerator& row : kAccelerators) {
    if (!row.character && row.key == virtualKey && row.modifiers == modifiers) return row.command;
  }
  return 0;
}

int AcceleratorCount() {
  return static_cast<int>(sizeof kAccelerators / sizeof kAccelerators[0]);
}

void AcceleratorAt(int index, int* key, int* modifiers, int* command, bool* character) {
  const Accelerator& row = kAccelerators[index];
  *key = row.key;
  *modifiers = row.modifiers;
  *command = row.command;
  *character = row.character;
}

bool ViewKeyDown(EditorView* view, int virtualKey, int modifiers) {
  if (PendingPrefix != kPrefixNone && PrefixKeyDown(view, virtualKey)) return true;
  bool shift = (modifiers & kChordShift) != 0;
  if ((modifiers & kChordControl) && virtualKey != kVkDelete) return false;
  switch (virtualKey) {
    case kVkHome:
      ViewKeyMove(view, kViewHome, shift);
      return true;
    case kVkEnd:
      ViewKeyMove(view, kViewEnd, shift);
      return true;
    case kVkLeft:
      ViewKeyMove(view, kViewLeft, shift);
      return true;
    case kVkRight:
      ViewKeyMove(view, kViewRight, shift);
      return true;
    case kVkUp:
      ViewKeyMove(view, kViewUp, shift);
      return true;
    case kVkDown:
      ViewKeyMove(view, kViewDown, shift);
      return true;
    case kVkPageUp:
      ViewKeyMove(view, kViewPageUp, shift);
      return true;
    case kVkPageDown:
      ViewKeyMove(view, kViewPageDown, shift);
      return true;
    case kVkDelete:
      KeyDelete(view);
      return true;
    case kVkTab:
      if (view->document->terminal) return false;  // a terminal sends it as a character
      KeyTab(view, shift);
      return true;
    case kVkInsert:
      if (shift) return false;
      view->overwrite = !view->overwrite;
      return true;
  }
  return false;
}

void ViewCharacter(EditorView* view, char16_t unit) {
  if (PrefixKeyTaken) {
    PrefixKeyTaken = false;
    return;
  }
  if (PendingPrefix != kPrefixNone) return;
  if (unit == u'\t') return;  // the key-down handler has indented already
  TypeCharacter(view, unit);
}

char16_t KeyCharacter(int virtualKey, bool shift) {
  switch (virtualKey) {
    case kVkBack:
    case kVkTab:
    case kVkReturn:
    case kVkEscape:
      return static_cast<char16_t>(virtualKey);
  }
  if (virtualKey >= 'A' && virtualKey <= 'Z')
    return static_cast<char16_t>(shift ? virtualKey : virtualKey + 32);
  if (virtualKey >= '0' && virtualKey <= '9' && !shift) return static_cast<char16_t>(virtualKey);
  return 0;
}
