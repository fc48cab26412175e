// How the frame's window procedure treats each command id.
#pragma once

enum FrameCommandAction {
  kCommandForward,        // to the active MDI child, if any
  kCommandFrame,          // handled by the frame itself
  kCommandProjectWindow,  // sent to the project window when one is open
  kCommandUnfinished,     // its subsystem is not in this build: "I have not finished it yet."
  kCommandWindowList,     // 10000 and above: the MDI window list, default handling
};

FrameCommandAction FrameCommand(int id);
// "forward", "frame", "project", "unfinished", "window-list".
const char* FrameCommandName(FrameCommandAction action);

// The text of command 9999.
extern const char kUnfinishedText[];

// Command ids of the frame (the editor's own are in editor/key_commands.h).
enum : int {
  kCmdToolKeywords = 23,
  kCmdToolErrorLookup = 24,
  kCmdToolEquations = 25,
  kCmdOpenWithStyle = 27,
  kCmdToolBin2Src = 28,
  kCmdToolStringView = 29,
  kCmdSecondInstance = 32,
  kCmdAddFileToProject = 33,
  kCmdSaveAll = 34,
  kCmdImport = 37,
  kCmdTerminal = 39,
  kCmdHelp = 43,
  kCmdLogo = 44,
  kCmdToolCalc = 46,
  kCmdToolRealCalc = 47,
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
  kCmdNewProject = 114,
  kCmdOpenProject = 115,
  kCmdSaveProject = 116,
  kCmdSaveProjectAs = 117,
  kCmdCompressProject = 118,
  kCmdCloseProject = 119,
  kCmdBuildRun = 124,
  kCmdBuild = 125,
  kCmdRebuild = 126,
  kCmdUnfinished = 9999,
  kFirstChildId = 10000,
};