// The open and save file dialogs and the folder browser, with names in the internal form.
// Windows builds only.
#pragma once

// `filter` is a list of zero-terminated strings (description, pattern, ...) ended by an empty
// one. A null title takes string 8 ("open") or 9 ("save"). On success `name` holds the chosen
// file (or, with several chosen, the folder and the names as zero-terminated strings ended by an
// empty one). Failures other than cancelling are screen notes.
bool AskOpenFileName(void* owner, char* name, int size, const char* title, const char* filter,
                     const char* initialFolder, unsigned flags);
// The save dialog adds `defaultExtension` (without the dot) to a name typed without one.
bool AskSaveFileName(void* owner, char* name, int size, const char* title, const char* filter,
                     const char* initialFolder, unsigned flags,
                     const char* defaultExtension = nullptr);
// The shell's folder browser, opening on the folder already in `folder` and limited to `root`
// when one is given.
bool AskFolder(void* owner, const char* title, char* folder, int size, const char* root);
