// The editor's numbered commands, as the accelerator table, the menu and internal posts send
// them to the active editor window, run on its document and view.
#pragma once

struct EditorView;

enum EditorCommand : int {
  kCmdContinuation = 22,
  kCmdLineSort = 26,
  kCmdScrollUp = 30,
  kCmdScrollDown = 31,
  kCmdDeleteWordLeft = 35,
  kCmdSaveOtherFormat = 38,
  kCmdPrefixO = 40,
  kCmdPrefixQ = 41,
  kCmdPrefixK = 42,
  kCmdWordLeft = 48,
  kCmdWordRight = 49,
  kCmdSetBookmark1 = 50,   // ... 58
  kCmdJumpBookmark1 = 60,  // ... 68
  kCmdUndo = 70,
  kCmdRedo = 71,
  kCmdUnindent = 72,
  kCmdIndent = 73,
  kCmdSelectAll = 74,
  kCmdGoToLine = 76,
  kCmdLoad = 81,
  kCmdSave = 82,
  kCmdSaveAs = 83,
  kCmdTextStart = 92,
  kCmdTextEnd = 93,
  kCmdSelectToTextStart = 94,
  kCmdSelectToTextEnd = 95,
  kCmdOpenUnderCaret = 99,
  kCmdCut = 105,
  kCmdCopy = 106,
  kCmdPaste = 107,
  kCmdFind = 108,
  kCmdFindNext = 109,
  kCmdReplace = 110,
  kCmdDateTime = 111,
  kCmdActivated = 112,
  kCmdMatchBrace = 113,
  kCmdNotFinished = 9999,
};

// Runs command `id`; false when it is not an editor command. Every command but the three prefix
// commands ends a pending prefix after it has run.
bool RunEditorCommand(EditorView* view, int id);

// Ctrl+O C and Ctrl+O K: column (1) or line (0) blocks from now on.
void SetBlockMode(EditorView* view, int mode);
// Command 38: the save-in-other-format dialog filled from the document; OK writes a converted
// copy (asking with message 116 before overwriting a file), leaving the document as it was.
bool SaveInOtherFormat(EditorView* view);
