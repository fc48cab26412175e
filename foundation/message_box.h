// The program's message boxes: caption from the owner's title or "Quill", an exclamation icon
// when none is named, always task-modal. Windows builds only.
#pragma once

// Shows `text` (internal form) with the MB_* `flags`; returns the button chosen (IDCANCEL when the
// text cannot be converted).
int ShowMessage(void* owner, const char* text, unsigned flags);
// The same with the text of string `id`.
int ShowMessageId(void* owner, int id, unsigned flags);
