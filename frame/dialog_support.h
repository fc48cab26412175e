// What every dialog of the frame does alike: runs modally over the frame, keeps its place and is
// translated, and moves texts between controls and the program's internal form.
#pragma once
#include <windows.h>

// The file dialogs' filter for documents: "Source Files" (".cpp" first, the extension a name typed
// without one gets) and "All Files".
extern const char kSourceFileFilter[];

// Runs template `id` modally with `data` as the initialisation parameter; the value given to
// EndDialog, or 0 when the dialog could not be made.
INT_PTR RunDialog(HWND owner, int id, DLGPROC procedure, void* data);

// Called by the dialog procedure with every message: places and translates the dialog and keeps
// its place, and returns the data handed to RunDialog (null for the messages before
// WM_INITDIALOG).
void* DialogData(HWND dialog, UINT message, LPARAM lParam);

// Control text in the internal form (UTF-8; a path's '\' become '/'), and back.
void SetControlText(HWND dialog, int id, const char* text, bool isPath);
void GetControlText(HWND dialog, int id, char* text, int size, bool isPath);

// An up-down control's range and position; an edit box's number (false when it holds none).
void SetSpin(HWND dialog, int spinId, int low, int high, int value);
int GetSpin(HWND dialog, int spinId);
bool GetNumber(HWND dialog, int id, int* value);

// Radio buttons first..last: the index of the checked one (0 when none), and checking one.
int CheckedRadio(HWND dialog, int first, int last);
void CheckRadio(HWND dialog, int first, int last, int index);
