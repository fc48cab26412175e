#include "frame/frame_commands.h"

const char kUnfinishedText[] = "I have not finished it yet.";

namespace {

struct CommandRow {
  int id;
  FrameCommandAction action;
};

// Everything not listed here and below 10000 belongs to the active child.
const CommandRow kRows[] = {
    {79, kCommandFrame},  // new document
    {32, kCommandFrame},  // second copy of the program
    {80, kCommandFrame},  // open
    {37, kCommandFrame},  // open in another format
    {43, kCommandFrame},  // help
    {34, kCommandFrame},  // save all
    {75, kCommandFrame},  // options sheet
    {85, kCommandFrame},  // exit
    {84, kCommandFrame},  // close the active child
    {86, kCommandFrame},
    {87, kCommandFrame},
    {88, kCommandFrame},
    {89, kCommandFrame},
    {91, kCommandFrame},   // close all
    {119, kCommandFrame},  // close project
    {114, kCommandFrame},  // new project
    {115, kCommandFrame},  // open project
    {116, kCommandProjectWindow},
    {117, kCommandProjectWindow},
    {118, kCommandProjectWindow},  // compress the project
    {124, kCommandProjectWindow},
    {125, kCommandProjectWindow},
    {126, kCommandProjectWindow},
    // Dialogs and tool windows that come with their own subsystems.
    {27, kCommandFrame},  // open with a coding-style conversion
    {39, kCommandFrame},  // terminal
    {46, kCommandFrame},       // integer calculator
    {47, kCommandFrame},       // precision calculator
    {29, kCommandFrame},  // string code view
    {28, kCommandFrame},  // binary to source
    {25, kCommandFrame},  // linear equations
    {24, kCommandFrame},  // error lookup
    {23, kCommandUnfinished},
    {9999, kCommandUnfinished},
    {44, kCommandFrame},  // the logo window
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
    case kCommandSilent:
      return "silent";
    case kCommandWindowList:
      return "window-list";
  }
  return "?";
}
