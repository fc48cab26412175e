// The library's table of open modeless tool dialogs. The message loop offers every message to
// each of them first; the library's shutdown destroys whatever is still open.
#pragma once

constexpr int kMaxModelessDialogs = 10;

// Adds a dialog window to the table; false when all places are taken.
bool RegisterModelessDialog(void* window);
void RemoveModelessDialog(void* window);
// The dialog in place `index`, or null.
void* ModelessDialogAt(int index);
// Destroys every dialog of the table and empties it.
void DestroyModelessDialogs();
