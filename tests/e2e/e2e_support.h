// What the end-to-end scenarios share: files in the scenario's folder, Quill's windows and
// dialogs, and real keyboard input sent to whichever window has the focus.
#pragma once
#include <windows.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/e2e/quill_driver.h"

std::wstring FolderOf(const std::wstring& exe);
// UTF-8 as the program keeps paths in its files, and the same with '/' separators.
std::string Utf8Text(const std::wstring& text);
std::string ToSlashes(std::string path);
void WriteBytes(const std::wstring& path, const std::string& bytes);
// The file's bytes; empty when it cannot be read.
std::string ReadBytes(const std::wstring& path);
// What the settings file holds under a key, as the program reads it; "<none>" when absent.
std::string Setting(const std::wstring& ini, const wchar_t* section, const wchar_t* key);

// The MDI children of the running frame, top first, and the only one (null unless one).
std::vector<HWND> Children(const QuillProcess& quill);
HWND OnlyChild(const QuillProcess& quill);
// A visible top-level window of Quill's process other than the frame: with the given caption,
// or any dialog box when the caption is empty. Null after the time-out.
HWND WaitForWindow(const QuillProcess& quill, const std::wstring& caption, DWORD timeoutMs = 5000);
// Waits until `window` has gone; false when it is still there.
bool WaitUntilGone(HWND window, DWORD timeoutMs = 5000);

// A window's place on the screen.
RECT Place(HWND window);
// The longest text among a message box's controls: its message.
std::wstring BoxMessage(HWND box);

// Brings the frame to the front with the focus in `editor`.
void FocusEditor(const QuillProcess& quill, HWND editor);

// Keyboard input through the system's input queue, as a user types it.
void Key(WORD key, bool up);
void Press(WORD key);
// A key with modifiers held: any of VK_CONTROL, VK_SHIFT, VK_MENU.
void Chord(std::initializer_list<WORD> modifiers, WORD key);
// Each unit as a typed character.
void TypeText(const std::wstring& text);

// Time for the posted input to be handled and painted.
void Settle();
