#include "tests/e2e/quill_driver.h"

#include <commctrl.h>
#include <shellapi.h>
#include <shlobj.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

namespace {

const wchar_t kFrameClass[] = L"QuillMainWndClsName";

std::wstring ParentFolder(const std::wstring& folder) {
  std::wstring trimmed = folder.substr(0, folder.size() - 1);
  return trimmed.substr(0, trimmed.find_last_of(L'\\') + 1);
}

std::wstring BuildFolder() {
  return ParentFolder(ProgramFolder());
}

void RemoveTree(const std::wstring& folder) {
  WIN32_FIND_DATAW found;
  HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
  if (search != INVALID_HANDLE_VALUE) {
    do {
      std::wstring name = found.cFileName;
      if (name == L"." || name == L"..") continue;
      std::wstring path = folder + name;
      if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        RemoveTree(path + L"\\");
      } else {
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        DeleteFileW(path.c_str());
      }
    } while (FindNextFileW(search, &found));
    FindClose(search);
  }
  RemoveDirectoryW(folder.c_str());
}

std::wstring DebugLogPath() {
  wchar_t folder[MAX_PATH];
  GetTempPathW(MAX_PATH, folder);
  return std::wstring(folder) + L"DEBUG.TXT";
}

struct FrameSearch {
  DWORD processId;
  HWND found;
};

BOOL CALLBACK FindFrame(HWND window, LPARAM param) {
  auto* search = reinterpret_cast<FrameSearch*>(param);
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner == search->processId && ClassName(window) == kFrameClass && IsWindowVisible(window)) {
    search->found = window;
    return FALSE;
  }
  return TRUE;
}

// A buffer inside another process, for the messages whose answers are written through pointers.
class RemoteBuffer {
 public:
  RemoteBuffer(HANDLE process, size_t size) : process_(process), size_(size) {
    address_ = VirtualAllocEx(process, nullptr, size, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  }
  ~RemoteBuffer() {
    if (address_) VirtualFreeEx(process_, address_, 0, MEM_RELEASE);
  }
  LPARAM Address() const { return reinterpret_cast<LPARAM>(address_); }
  bool Read(void* target, size_t size) const {
    SIZE_T read = 0;
    return address_ && size <= size_ && ReadProcessMemory(process_, address_, target, size, &read);
  }

 private:
  HANDLE process_;
  size_t size_;
  void* address_;
};

}  // namespace

std::wstring ProgramFolder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  std::wstring text = path;
  return text.substr(0, text.find_last_of(L'\\') + 1);
}

std::wstring PrepareFreshCopy(const std::wstring& scenario) {
  std::wstring runs = BuildFolder() + L"e2e-runs\\";
  CreateDirectoryW(runs.c_str(), nullptr);
  std::wstring folder = runs + scenario + L"\\";
  RemoveTree(folder);
  CreateDirectoryW(folder.c_str(), nullptr);
  std::wstring copy = folder + L"Quill.exe";
  // Under load the copy has been seen to fail once: it is tried again, and a failure is told.
  for (int attempt = 0; attempt < 5; ++attempt) {
    if (CopyFileW((ProgramFolder() + L"Quill.exe").c_str(), copy.c_str(), FALSE)) return copy;
    fprintf(stderr, "PrepareFreshCopy: copying Quill.exe failed with %lu\n", GetLastError());
    Sleep(200);
  }
  return copy;
}

long long DebugLogSize() {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(DebugLogPath().c_str(), GetFileExInfoStandard, &data)) return 0;
  return (static_cast<long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
}

std::string DebugLogSince(long long offset) {
  std::ifstream file(DebugLogPath().c_str(), std::ios::binary);
  if (!file) return {};
  file.seekg(offset);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

QuillProcess::~QuillProcess() {
  if (Running()) TerminateProcess(process_.hProcess, 99);
  if (process_.hProcess) CloseHandle(process_.hProcess);
  if (process_.hThread) CloseHandle(process_.hThread);
}

bool QuillProcess::Start(const std::wstring& exe, const std::wstring& arguments, DWORD timeoutMs) {
  std::wstring folder = exe.substr(0, exe.find_last_of(L'\\') + 1);
  std::wstring commandLine = L"\"" + exe + L"\"" + (arguments.empty() ? L"" : L" " + arguments);
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  bool started = false;
  for (int attempt = 0; attempt < 3 && !started; ++attempt) {
    started = CreateProcessW(exe.c_str(), &commandLine[0], nullptr, nullptr, FALSE, 0, nullptr,
                             folder.c_str(), &startup, &process_);
    if (!started) {
      fprintf(stderr, "QuillProcess::Start: CreateProcess failed with %lu\n", GetLastError());
      Sleep(200);
    }
  }
  if (!started) return false;
  WaitForInputIdle(process_.hProcess, timeoutMs);
  for (DWORD waited = 0; waited < timeoutMs && Running(); waited += 50) {
    FrameSearch search = {process_.dwProcessId, nullptr};
    EnumWindows(FindFrame, reinterpret_cast<LPARAM>(&search));
    if (search.found) {
      frame_ = search.found;
      // Once the frame answers a message its first paint is done.
      DWORD_PTR ignored;
      SendMessageTimeoutW(frame_, WM_NULL, 0, 0, SMTO_BLOCK, timeoutMs, &ignored);
      return true;
    }
    Sleep(50);
  }
  DWORD code = 0;
  if (GetExitCodeProcess(process_.hProcess, &code) && code != STILL_ACTIVE)
    fprintf(stderr, "QuillProcess::Start: Quill ended before showing its frame, code %lu\n", code);
  return false;
}

bool QuillProcess::DropFiles(const std::vector<std::wstring>& paths, POINT point) const {
  // DROPFILES, then the names, each terminated, and an empty one to end the list.
  std::vector<char> block(sizeof(DROPFILES));
  DROPFILES header = {};
  header.pFiles = sizeof(DROPFILES);
  header.pt = point;
  header.fWide = TRUE;
  memcpy(block.data(), &header, sizeof header);
  for (const std::wstring& path : paths) {
    const char* bytes = reinterpret_cast<const char*>(path.c_str());
    block.insert(block.end(), bytes, bytes + (path.size() + 1) * sizeof(wchar_t));
  }
  block.insert(block.end(), sizeof(wchar_t), '\0');
  // The shell's drop handle is fixed memory, which locks to itself: memory of Quill's process
  // serves the same. It is left there, as the handle's release does not know it.
  void* remote = VirtualAllocEx(process_.hProcess, nullptr, block.size(), MEM_COMMIT | MEM_RESERVE,
                                PAGE_READWRITE);
  SIZE_T written = 0;
  if (!remote ||
      !WriteProcessMemory(process_.hProcess, remote, block.data(), block.size(), &written))
    return false;
  return PostMessageW(frame_, WM_DROPFILES, reinterpret_cast<WPARAM>(remote), 0);
}

std::vector<int> QuillProcess::StatusEdges() const {
  HWND bar = Child(78);
  int count = static_cast<int>(SendMessageW(bar, SB_GETPARTS, 0, 0));
  if (count <= 0) return {};
  std::vector<int> edges(static_cast<size_t>(count));
  RemoteBuffer remote(process_.hProcess, edges.size() * sizeof(int));
  SendMessageW(bar, SB_GETPARTS, static_cast<WPARAM>(count), remote.Address());
  if (!remote.Read(edges.data(), edges.size() * sizeof(int))) return {};
  return edges;
}

std::wstring QuillProcess::StatusText(int part) const {
  HWND bar = Child(78);
  int length = LOWORD(SendMessageW(bar, SB_GETTEXTLENGTHW, static_cast<WPARAM>(part), 0));
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  RemoteBuffer remote(process_.hProcess, text.size() * sizeof(wchar_t));
  SendMessageW(bar, SB_GETTEXTW, static_cast<WPARAM>(part), remote.Address());
  if (!remote.Read(&text[0], text.size() * sizeof(wchar_t))) return {};
  text.resize(static_cast<size_t>(length));
  return text;
}

bool QuillProcess::Running() const {
  return process_.hProcess && WaitForSingleObject(process_.hProcess, 0) == WAIT_TIMEOUT;
}

int QuillProcess::CloseAndWait(DWORD timeoutMs) {
  if (frame_) PostMessageW(frame_, WM_CLOSE, 0, 0);
  if (WaitForSingleObject(process_.hProcess, timeoutMs) != WAIT_OBJECT_0) return -1;
  DWORD code = 0;
  GetExitCodeProcess(process_.hProcess, &code);
  return static_cast<int>(code);
}

std::wstring WindowText(HWND window) {
  wchar_t text[512];
  int length = GetWindowTextW(window, text, 512);
  return std::wstring(text, static_cast<size_t>(length > 0 ? length : 0));
}

std::wstring ClassName(HWND window) {
  wchar_t name[256];
  int length = GetClassNameW(window, name, 256);
  return std::wstring(name, static_cast<size_t>(length > 0 ? length : 0));
}

std::wstring ScreenshotFolder() {
  std::wstring folder = BuildFolder() + L"e2e-shots\\";
  CreateDirectoryW(folder.c_str(), nullptr);
  return folder;
}

bool SaveScreenshot(const std::wstring& path) {
  int width = GetSystemMetrics(SM_CXSCREEN);
  int height = GetSystemMetrics(SM_CYSCREEN);
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  BITMAPINFO info = {};
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  void* bits = nullptr;
  HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  bool ok = false;
  if (bitmap) {
    HGDIOBJ old = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, 0, 0, SRCCOPY);
    GdiFlush();
    DWORD stride = ((static_cast<DWORD>(width) * 3 + 3) & ~3u);
    DWORD imageSize = stride * static_cast<DWORD>(height);
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info.bmiHeader;
    file.bfSize = file.bfOffBits + imageSize;
    std::ofstream out(path.c_str(), std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info.bmiHeader), sizeof info.bmiHeader);
    out.write(static_cast<const char*>(bits), imageSize);
    ok = static_cast<bool>(out);
    SelectObject(memory, old);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return ok;
}
