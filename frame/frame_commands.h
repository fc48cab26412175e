// How the frame's window procedure treats each command id.
#pragma once

enum FrameCommandAction {
  kCommandForward,        // to the active MDI child, if any
  kCommandFrame,          // handled by the frame itself
  kCommandProjectWindow,  // sent to the project window when one is open
  kCommandUnfinished,     // its subsystem is not in this build: "I have not finished it yet."
  kCommandSilent,         // nothing to show yet, as when the logo cannot be shown
  kCommandWindowList,     // 10000 and above: the MDI window list, default handling
};

FrameCommandAction FrameCommand(int id);
// "forward", "frame", "project", "unfinished", "silent", "window-list".
const char* FrameCommandName(FrameCommandAction action);

// The text of command 9999.
extern const char kUnfinishedText[];

// Command ids of the frame (the editor's own are in editor/key_commands.h).
enum : int {
  kCmdToolStringView = 29,
  kCmdSecondInstance = 32,
  kCmdAddFileToProject = 33,
  kCmdSaveAll = 34,
  kCmdLogo = 44,
  kCmdOptions = 75,
  kCmdNew = 79,
  kCmdOpen = 80,
  kCmdCloseChild = 84,
  kCmdExit = 85,
  kCmdCascade = 86,
  kCmdTileVertical = 87,
  kCmdTileHorizontal = 88,
  kCmdArrangeIcons = 89,
  kCmdCloseAll = 91,
  kCmdCloseProject = 119,
  kCmdUnfinished = 9999,
  kFirstChildId = 10000,
};
