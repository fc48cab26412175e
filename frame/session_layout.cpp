#include "frame/session_layout.h"

#include <windows.h>

#include "editor/document.h"
#include "foundation/path.h"
#include "foundation/settings.h"
#include "frame/command_line.h"
#include "frame/editor_child.h"
#include "frame/frame_state.h"
#include "frame/project_window.h"
#include "frame/session_list.h"

namespace {

const char* FramePlaceKey() {
  return g_frame.startedWithFile ? kCommandLineFramePlaceKey : kFramePlaceKey;
}

// The restored rectangle of a child relative to the client; minimised and maximised children are
// restored first, as the desk is being closed anyway.
void TakePlace(HWND child, POINT origin, SessionWindow* window) {
  window->show = IsIconic(child) ? kShowMinimized : IsZoomed(child) ? kShowMaximized : kShowNormal;
  if (window->show != kShowNormal)
    SendMessageW(g_frame.mdiClient, WM_MDIRESTORE, reinterpret_cast<WPARAM>(child), 0);
  RECT rect;
  GetWindowRect(child, &rect);
  window->left = rect.left - origin.x;
  window->top = rect.top - origin.y;
  window->width = rect.right - rect.left;
  window->height = rect.bottom - rect.top;
}

}  // namespace

// A maximised child is restored by the MDI client as soon as the next child opens, so the one
// that was maximised is opened normally and maximised when all are there; it was the active
// window when the list was saved, and it ends up active and on top again.
void RestoreDocumentList(const char* file) {
  int length = SessionListLength(file);
  HWND maximised = nullptr;
  for (int i = 0; i < length; ++i) {
    SessionEntry entry;
    if (!ReadSessionEntry(file, i, &entry)) continue;
    bool zoom = entry.show == kShowMaximized;
    HWND window = CreateEditorWindow(entry.path, nullptr, 0, 0, entry.left, entry.top, entry.width,
                                     entry.height, zoom ? kShowNormal : entry.show);
    if (window && zoom) maximised = window;
  }
  if (maximised) {
    SendMessageW(g_frame.mdiClient, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(maximised), 0);
    SendMessageW(g_frame.mdiClient, WM_MDIMAXIMIZE, reinterpret_cast<WPARAM>(maximised), 0);
  }
}

void SaveDocumentList(const char* file) {
  SessionWindow windows[kMaxSessionWindows];
  int count = 0;
  POINT origin = {0, 0};
  ClientToScreen(g_frame.mdiClient, &origin);
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child && count < kMaxSessionWindows;
       child = GetWindow(child, GW_HWNDNEXT)) {
    // Icon titles and other helpers of the client are not documents.
    if (GetWindow(child, GW_OWNER)) continue;
    SessionWindow& window = windows[count];
    if (child == g_frame.projectWindow) {
      window.path = nullptr;
      window.untitled = false;
    } else if (const EditDocument* document = EditorWindowDocument(child)) {
      window.path = document->path;
      window.untitled = document->untitled != 0;
    } else {
      continue;
    }
    TakePlace(child, origin, &window);
    ++count;
  }
  SaveSessionList(file, windows, count);
}

void SaveSessionAtClose() {
  HWND frame = g_frame.frame;
  if (IsIconic(frame) || IsZoomed(frame)) ShowWindow(frame, SW_RESTORE);
  RECT rect;
  GetWindowRect(frame, &rect);
  WriteNums(kDlgPosSection, FramePlaceKey(), rect.left, rect.top, rect.right - rect.left,
            rect.bottom - rect.top);
  if (g_frame.startedWithFile || !g_frame.settingsPath) return;
  // With a project open the list goes into the project, and the settings remember the project.
  if (g_frame.projectWindow) {
    const char* file = ProjectListFile();
    if (file) SaveDocumentList(file);
    WriteText(kDocListSection, kProjectKey, file ? file : "");
    return;
  }
  SaveDocumentList(g_frame.settingsPath);
  WriteText(kDocListSection, kProjectKey, "");
}

bool RestoreSession() {
  char text[kPathSize];
  if (ReadStr(kDlgPosSection, FramePlaceKey(), text, sizeof text) > 0) {
    FramePlace place;
    if (ParseFramePlace(text, &place)) {
      FitFramePlace(&place, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN),
                    GetSystemMetrics(SM_CYCAPTION));
      MoveWindow(g_frame.frame, place.left, place.top, place.width, place.height, FALSE);
    }
  }
  if (g_frame.commandPath[0]) {
    // A project that can't be opened says why; the program stays, with an empty desk.
    if (IsProjectPath(g_frame.commandPath)) {
      OpenProjectLater(g_frame.commandPath);
      return true;
    }
    // The client is not laid out yet while the frame is being created: take what it will get.
    RECT client;
    GetClientRect(g_frame.frame, &client);
    int height = client.bottom > kStatusBarHeight ? client.bottom - kStatusBarHeight : 0;
    return CreateEditorWindow(g_frame.commandPath, nullptr, 0, 0, 0, 0, client.right, height,
                              kShowGiven) != nullptr;
  }
  ReadText(kDocListSection, kProjectKey, text, sizeof text, "");
  if (text[0]) {
    OpenProjectLater(text);  // which restores the project's own list
    return true;
  }
  if (g_frame.settingsPath) RestoreDocumentList(g_frame.settingsPath);
  return true;
}
