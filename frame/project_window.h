// The project window: one MDI child of class "QuillProject" whose client area is a tree of the
// project's targets and their files. The frame opens, creates and closes it; the window handles
// the project commands of the menu, the tree and the keys.
#pragma once
#include <windows.h>

extern const wchar_t kProjectClassName[];

// Registers the class and installs the project code's window host (unsaved sources, the file list).
bool RegisterProjectChildClass(HINSTANCE instance);

// Opens the project file `path` (internal form) in a new project window after closing the open
// project or, without one, every window. Null after the project code's message (or when a
// document refused to close).
HWND OpenProjectWindow(const char* path);
// At start-up the project opens once the frame is shown, so that its messages have a frame to
// stand on: the path is kept and command 115 posted, which then opens it without asking.
void OpenProjectLater(const char* path);
// Command 115: asks for the file first (string 82, "Project File").
void OpenProjectWithDialog(HWND frame);
// Command 114: the new-project dialog; the project file is written, the window opened and sent
// command 121.
void NewProjectWithDialog(HWND frame);

// The open project's file (internal form), or null without a project window.
const char* OpenProjectPath();
// The open project itself, or null.
struct Project;
Project* OpenProject();
// The file the desk is kept in while a project is open: its project file, or null when there is
// no project window or the file has vanished (a desk alone would make a file that is no project).
const char* ProjectListFile();
