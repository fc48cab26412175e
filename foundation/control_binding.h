// Dialog controls bound to keys of section "Config": a dialog loads its options when it opens and
// saves them on OK, each control through one call with the direction. Windows builds only.
#pragma once

enum class Bind { kLoad, kSave };

void BindCheckBox(void* dialog, int id, Bind direction, const char* key, int fallback);
// The control's text written as it stands ("raw") or converted from the internal form ("text").
void BindEditRaw(void* dialog, int id, Bind direction, const char* key, const char* fallback);
void BindEditText(void* dialog, int id, Bind direction, const char* key, const char* fallback);
void BindNumber(void* dialog, int id, Bind direction, const char* key, int fallback, bool isSigned);
// Radio buttons firstId..lastId stored as the index of the checked one.
void BindRadioGroup(void* dialog, int firstId, int lastId, Bind direction, const char* key,
                    int fallback);
