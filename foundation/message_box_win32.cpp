#include <windows.h>

#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/message_box.h"

namespace {
constexpr int kOwnerMessageText = 40;
constexpr int kCaptionSize = 81;
constexpr int kStringQuill = 80;
}  // namespace

int ShowMessage(void* owner, const char* text, unsigned flags) {
  HWND window = static_cast<HWND>(owner);
  wchar_t caption[kCaptionSize] = L"";
  if (!window || GetWindowTextW(window, caption, kCaptionSize) == 0) {
    MultiByteToWideChar(CP_UTF8, 0, GetStr(kStringQuill), -1, caption, kCaptionSize);
  }
  int units = MultiByteToWideChar(CP_UTF8, 0, text, -1, nullptr, 0);
  wchar_t* wide = units > 0 ? static_cast<wchar_t*>(AllocMem(
                                  static_cast<size_t>(units) * sizeof(wchar_t), kOwnerMessageText))
                            : nullptr;
  if (!wide) return IDCANCEL;
  MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, units);
  if (!(flags & MB_ICONMASK)) flags |= MB_ICONEXCLAMATION;
  int answer = MessageBoxW(window, wide, caption, flags | MB_TASKMODAL);
  FreeMem(wide);
  return answer;
}

int ShowMessageId(void* owner, int id, unsigned flags) {
  return ShowMessage(owner, GetStr(id), flags);
}
