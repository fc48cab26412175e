#include "frame/window_host.h"

#include <windows.h>

#include "foundation/host.h"
#include "foundation/message_box.h"

namespace {

// The core's flags and answers are the Win32 ones, so they pass straight through.
int AskWithMessageBox(void*, const char* text, unsigned flags) {
  return ShowMessage(GetActiveWindow(), text, flags);
}

const UiHost kWindowHost = {AskWithMessageBox, nullptr};

}  // namespace

void InstallWindowHost() {
  SetUiHost(&kWindowHost);
}
