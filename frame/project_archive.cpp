// Command 118: the open project into one archive beside its project file, with a progress window
// whose Cancel stops the archive (nothing is then left on disk).
#include <windows.h>

#include <commctrl.h>

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/message_box.h"
#include "foundation/path.h"
#include "frame/dialog_support.h"
#include "frame/frame_state.h"
#include "frame/tool_windows.h"
#include "resources/resource.h"
#include "tools/project_zip.h"
#include "tools/tool_owners.h"
#include "tools/zip_archive.h"

namespace {

struct ArchiveProgress {
  HWND dialog;
  bool cancelled;
  unsigned lastTick;
};

INT_PTR CALLBACK ProgressProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_INITDIALOG) {
    SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    SendDlgItemMessageW(dialog, IDC_PROGRESS_BAR, PBM_SETRANGE32, 0, 1000);
    return TRUE;
  }
  if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
    auto* progress = reinterpret_cast<ArchiveProgress*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (progress) progress->cancelled = true;
    EnableWindow(GetDlgItem(dialog, IDCANCEL), FALSE);
    return TRUE;
  }
  return FALSE;
}

// Shows where the archive stands and lets the window's own messages through, so that Cancel
// can be pressed while the frame stays disabled.
bool Report(void* context, int file, int files, const char* name, uint64_t done, uint64_t size) {
  auto* progress = static_cast<ArchiveProgress*>(context);
  if (done == 0) {
    char text[kPathSize + 64];
    FormatStr(text, sizeof text, GetStr(450), name, file + 1, files);
    SetControlText(progress->dialog, IDC_PROGRESS_TEXT, text, false);
  }
  double part = size ? static_cast<double>(done) / static_cast<double>(size) : 0.0;
  int position = files ? static_cast<int>((file + part) * 1000.0 / files) : 0;
  SendDlgItemMessageW(progress->dialog, IDC_PROGRESS_BAR, PBM_SETPOS, position, 0);
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      progress->cancelled = true;
      break;
    }
    if (!IsDialogMessageW(progress->dialog, &message)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  return !progress->cancelled;
}

// The summary: members written, then the skipped files (the first twenty of them).
void ShowSummary(HWND owner, const char* archive, const ProjectZipResult& result) {
  TextBuilder text(kOwnerZipSummary);
  char shown[kPathSize];
  ShownPath(archive, shown, sizeof shown);
  text.Format(GetStr(451), shown, result.members);
  if (result.skipped) {
    TextBuilder list(kOwnerZipSummary);
    const char* p = TextOf(&result.skippedList);
    for (int count = 0; *p && count < 20; ++count) {
      const char* end = strchr(p, '\n');
      char path[kPathSize];
      FormatStr(path, sizeof path, "%s", p);
      path[end - p < kPathSize ? end - p : kPathSize - 1] = '\0';
      ShownPath(path, shown, sizeof shown);
      list.Append(shown);
      list.Append('\n');
      p = end + 1;
    }
    if (*p) list.Append("...\n");
    text.Append("\n\n");
    text.Format(GetStr(452), result.skipped, list.Text());
  }
  ShowMessage(owner, text.Text(),
              MB_OK | (result.skipped ? MB_ICONEXCLAMATION : MB_ICONINFORMATION));
}

}  // namespace

void CompressProjectWithProgress(HWND owner, const Project* project) {
  char archive[kPathSize];
  if (!project->path[0] || !ProjectArchivePath(project->path, archive, sizeof archive)) return;
  if (FileGetAttributes(archive) != kNoAttributes) {
    char question[kPathSize + 128];
    FormatStr(question, sizeof question, GetStr(116), archive);
    if (ShowMessage(owner, question, MB_YESNO | MB_ICONQUESTION) != IDYES) return;
  }
  ArchiveProgress progress = {nullptr, false, 0};
  progress.dialog =
      CreateDialogParamW(g_frame.instance, MAKEINTRESOURCEW(IDD_ZIP_PROGRESS), g_frame.frame,
                         ProgressProc, reinterpret_cast<LPARAM>(&progress));
  EnableWindow(g_frame.frame, FALSE);
  if (progress.dialog) ShowWindow(progress.dialog, SW_SHOW);
  ProjectZipHost host = {progress.dialog ? Report : nullptr, &progress};
  ProjectZipResult result;
  CompressProject(project, archive, &host, &result);
  EnableWindow(g_frame.frame, TRUE);
  if (progress.dialog) DestroyWindow(progress.dialog);
  SetForegroundWindow(g_frame.frame);
  char text[kPathSize + 256];
  switch (result.status) {
    case kZipOk:
      ShowSummary(owner, archive, result);
      break;
    case kZipStopped:
      ShowMessageId(owner, 455, MB_OK | MB_ICONINFORMATION);
      break;
    case kZipTooLarge:
      ShowMessageId(owner, 454, MB_OK);
      break;
    case kZipNoMemory:
      ShowMessageId(owner, 456, MB_OK);
      break;
    default:
      char shown[kPathSize];
      ShownPath(archive, shown, sizeof shown);
      FormatStr(text, sizeof text, GetStr(453), shown, result.error);
      ShowMessage(owner, text, MB_OK);
      break;
  }
  FreeText(&result.skippedList);
}
