// The keyboard as an editor window receives it, without the window: the accelerator table that
// turns chords into numbered commands, the keys the editor handles itself, and typed characters.
// The window and `quill-tool keys` both go through here, so a key script gives the same text in
// either.
#pragma once

struct EditorView;

// Virtual-key codes of the keys the editor looks at (the Windows values).
enum : int {
  kVkBack = 0x08,
  kVkTab = 0x09,
  kVkReturn = 0x0D,
  kVkEscape = 0x1B,
  kVkPageUp = 0x21,
  kVkPageDown = 0x22,
  kVkEnd = 0x23,
  kVkHome = 0x24,
  kVkLeft = 0x25,
  kVkUp = 0x26,
  kVkRight = 0x27,
  kVkDown = 0x28,
  kVkInsert = 0x2D,
  kVkDelete = 0x2E,
  kVkF1 = 0x70,
  kVkPacket = 0xE7,  // a typed character that came without a key of its own
};

// Modifier flags of a chord.
enum : int {
  kChordShift = 1,
  kChordControl = 2,
  kChordAlt = 4,
};

// The command the frame's accelerator table gives a virtual-key chord; 0 when the chord is not
// in the table (the key then reaches the editor's own handler).
int AcceleratorCommand(int virtualKey, int modifiers);
// The table's rows, in its order: a key (or the character of a character chord), its modifiers
// and its command.
int AcceleratorCount();
void AcceleratorAt(int index, int* key, int* modifiers, int* command, bool* character);

// A key-down that no accelerator took: the second key of a pending prefix, the caret keys,
// Delete, Tab and Insert. True when the editor handled it.
bool ViewKeyDown(EditorView* view, int virtualKey, int modifiers);

// A character message: typed into the text, unless it is the character of a prefix's second key
// or arrives while a prefix is pending. Tab is left to the key-down handler.
void ViewCharacter(EditorView* view, char16_t unit);

// The character message Windows makes of a key-down without Ctrl or Alt (Enter, Backspace, Tab,
// Escape, letters and digits); 0 for keys that make none.
char16_t KeyCharacter(int virtualKey, bool shift);
