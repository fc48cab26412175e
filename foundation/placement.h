// Where dialogs and tool windows appear: their places are kept in section "DlgPos" and brought
// back, fitted to the screen. Windows builds only.
#pragma once

// Called by a dialog procedure with each message. WM_INITDIALOG adds the size grip (resizable
// dialogs), translates the dialog and moves it to its stored place; WM_MOVE and WM_SIZE store the
// place when `saveOnMove` is set and it changed. The key is the text of control 996.
void PlaceDialog(void* dialog, unsigned message, bool resizable, bool saveOnMove);

// Called by a tool window's procedure on each move; the key is the window's title. A window marked
// with MarkFirstMove goes to its stored place on its first move; later moves are stored.
void PlaceToolWindow(void* window, unsigned message);
void MarkFirstMove(void* window);

// Keeps a place that lies on a monitor (or, without monitor support, whose top-left icon-sized
// corner lies on the primary screen); anything else is centred on the primary screen.
void FitToScreen(int* left, int* top, int width, int height);

constexpr int kSizeGripControl = 994;
constexpr int kAbsentPlace = 30000;
