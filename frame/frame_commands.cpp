#include "frame/frame_commands.h"

const char kUnfinishedText[] = "I have not finished it yet.";

namespace {

struct CommandRow {
  int id;
  FrameCommandAction action;
};

// Everything not listed here and below 10000 belongs to the active child.
const CommandRow kRows[] = {
    {kCmdNew, kCommandFrame},
    {kCmdSecondInstance, kCommandFrame},
    {kCmdOpen, kCommandFrame},
    {kCmdImport, kCommandFrame},  // open in another format
    {kCmdHelp, kCommandFrame},
    {kCmdSaveAll, kCommandFrame},
    {kCmdOptions, kCommandFrame},
    {kCmdExit, kCommandFrame},
    {kCmdCloseChild, kCommandFrame},
    {kCmdCascade, kCommandFrame},
    {kCmdTileVertical, kCommandFrame},
    {kCmdTileHorizontal, kCommandFrame},
    {kCmdArrangeIcons, kCommandFrame},
    {kCmdCloseAll, kCommandFrame},
    {kCmdCloseProject, kCommandFrame},
    {kCmdNewProject, kCommandFrame},
    {kCmdOpenProject, kCommandFrame},
    {kCmdSaveProject, kCommandProjectWindow},
    {kCmdSaveProjectAs, kCommandProjectWindow},
    {kCmdCompressProject, kCommandProjectWindow},
    {kCmdBuildRun, kCommandProjectWindow},
    {kCmdBuild, kCommandProjectWindow},
    {kCmdRebuild, kCommandProjectWindow},
    // Dialogs and tool windows that come with their own subsystems.
    {kCmdOpenWithStyle, kCommandFrame},
    {kCmdTerminal, kCommandFrame},
    {kCmdToolCalc, kCommandFrame},
    {kCmdToolRealCalc, kCommandFrame},
    {kCmdToolStringView, kCommandFrame},
    {kCmdToolBin2Src, kCommandFrame},
    {kCmdToolEquations, kCommandFrame},
    {kCmdToolErrorLookup, kCommandFrame},
    {kCmdToolKeywords, kCommandUnfinished},
    {kCmdUnfinished, kCommandUnfinished},
    {kCmdLogo, kCommandFrame},
};

}  // namespace

FrameCommandAction FrameCommand(int id) {
  if (id >= kFirstChildId) return kCommandWindowList;
  for (const CommandRow& row : kRows) {
    if (row.id == id) return row.action;
  }
  return kCommandForward;
}

const char* FrameCommandName(FrameCommandAction action) {
  switch (action) {
    case kCommandForward:
      return "forward";
    case kCommandFrame:
      return "frame";
    case kCommandProjectWindow:
      return "project";
    case kCommandUnfinished:
      return "unfinished";
    case kCommandWindowList:
      return "window-list";
  }
  return "?";
}
