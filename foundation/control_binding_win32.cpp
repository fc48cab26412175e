#include <windows.h>

#include "foundation/control_binding.h"
#include "foundation/formatter.h"
#include "foundation/memory.h"
#include "foundation/settings.h"

namespace {

constexpr int kOwnerBinding = 50;
constexpr int kValueSize = 4096;

HWND Dialog(void* dialog) {
  return static_cast<HWND>(dialog);
}

void WriteInt(const char* key, int value) {
  char text[16];
  FormatStr(text, sizeof text, "%d", value);
  WriteStr(kConfigSection, key, text);
}

// A block for one value, freed with the holder; a failed allocation leaves everything untouched.
struct Buffer {
  char* text = static_cast<char*>(AllocMem(kValueSize, kOwnerBinding));
  ~Buffer() { FreeMem(text); }
};

void SetControlText(HWND dialog, int id, const char* utf8) {
  int units = MultiByteToWideChar(CP_UTF8, 0, utf8, -1, nullptr, 0);
  if (units <= 0) return;
  wchar_t* wide =
      static_cast<wchar_t*>(AllocMem(static_cast<size_t>(units) * sizeof(wchar_t), kOwnerBinding));
  if (!wide) return;
  MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, units);
  SetDlgItemTextW(dialog, id, wide);
  FreeMem(wide);
}

// The control's text in the internal form.
bool ControlText(HWND dialog, int id, char* text, int size) {
  wchar_t wide[kValueSize];
  GetDlgItemTextW(dialog, id, wide, kValueSize);
  return WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, size, nullptr, nullptr) > 0;
}

}  // namespace

void BindCheckBox(void* dialog, int id, Bind direction, const char* key, int fallback) {
  if (direction == Bind::kLoad) {
    CheckDlgButton(Dialog(dialog), id,
                   ReadInt(kConfigSection, key, fallback) ? BST_CHECKED : BST_UNCHECKED);
  } else {
    WriteInt(key, IsDlgButtonChecked(Dialog(dialog), id) == BST_CHECKED);
  }
}

void BindEditRaw(void* dialog, int id, Bind direction, const char* key, const char* fallback) {
  Buffer value;
  if (!value.text) return;
  if (direction == Bind::kLoad) {
    ReadStrDef(kConfigSection, key, value.text, kValueSize, fallback);
    SetDlgItemTextA(Dialog(dialog), id, value.text);
  } else {
    GetDlgItemTextA(Dialog(dialog), id, value.text, kValueSize);
    WriteStr(kConfigSection, key, value.text);
  }
}

void BindEditText(void* dialog, int id, Bind direction, const char* key, const char* fallback) {
  Buffer value;
  if (!value.text) return;
  if (direction == Bind::kLoad) {
    ReadText(kConfigSection, key, value.text, kValueSize, fallback);
    SetControlText(Dialog(dialog), id, value.text);
  } else if (ControlText(Dialog(dialog), id, value.text, kValueSize)) {
    WriteText(kConfigSection, key, value.text);
  }
}

void BindNumber(void* dialog, int id, Bind direction, const char* key, int fallback,
                bool isSigned) {
  if (direction == Bind::kLoad) {
    SetDlgItemInt(Dialog(dialog), id, static_cast<UINT>(ReadInt(kConfigSection, key, fallback)),
                  isSigned);
  } else {
    BOOL ok = FALSE;
    UINT value = GetDlgItemInt(Dialog(dialog), id, &ok, isSigned);
    if (ok) WriteInt(key, static_cast<int>(value));
  }
}

void BindRadioGroup(void* dialog, int firstId, int lastId, Bind direction, const char* key,
                    int fallback) {
  if (direction == Bind::kLoad) {
    int index = ReadInt(kConfigSection, key, fallback);
    if (index >= 0 && index <= lastId - firstId) {
      CheckRadioButton(Dialog(dialog), firstId, lastId, firstId + index);
    }
    return;
  }
  for (int id = firstId; id <= lastId; ++id) {
    if (IsDlgButtonChecked(Dialog(dialog), id) == BST_CHECKED) {
      WriteInt(key, id - firstId);
      return;
    }
  }
}
