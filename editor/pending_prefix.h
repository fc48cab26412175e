// The three two-key prefixes Ctrl+O, Ctrl+K and Ctrl+Q. The prefix is one for the whole process,
// not per window: a prefix typed in one editor is taken by the next command in whichever window
// gets it.
#pragma once

struct EditorView;

enum PrefixKind : int {
  kPrefixNone = 0,
  kPrefixCtrlO = 1,
  kPrefixCtrlK = 2,
  kPrefixCtrlQ = 3,
};

extern int PendingPrefix;
// Set when the key-down handler took the second key of a prefix: the character message that
// follows that key is not typed. Cleared whenever a prefix is set.
extern bool PrefixKeyTaken;

// The status-bar reminder of a prefix ("" for none).
const char* PrefixReminder(int prefix);
// Sets the prefix and shows its reminder in the status bar.
void SetPendingPrefix(int prefix);
// Ends a pending prefix and clears the reminder; nothing happens when none is pending.
void ResetPendingPrefix();

// Virtual-key codes of the keys the prefixes look at.
enum : int {
  kKeyShift = 0x10,
  kKeyControl = 0x11,
  kKeyAlt = 0x12,
};

// The key-down handler's part: with a prefix pending, runs the action of its second key (the
// letters of the reminder) and ends the prefix. True when the key was one of them; a modifier key
// alone leaves the prefix pending; any other key ends it and is handled as usual.
bool PrefixKeyDown(EditorView* view, int virtualKey);
