// Putting the loaded language into menus and dialogs. Windows builds only.
#pragma once

// Each item by position: a submenu takes the entry (position + 1) and is translated in turn, a
// command its id's entry; an empty entry keeps the resource text.
void TranslateMenu(void* menu);
// Puts the texts of `resourceMenu` (a fresh copy of the same menu) back into `menu` by position,
// so that a language can be dropped again. Pictures and items past the copy's end (the MDI
// window list) are left as they are.
void RestoreMenu(void* menu, void* resourceMenu);
// A dialog with control 996 naming its key: the key's number N gives the caption entry N and the
// entries N + id of its controls below 900.
void TranslateDialog(void* dialog);
// Fills a combo box with "Korean" and the base names of LANGUAGE/*.LNG, and selects `current`
// (internal form), or the first entry when it is empty or not there.
void FillLanguageList(void* comboBox, const char* current);

constexpr int kDialogNameControl = 996;
