// Drives the real Quill.exe from another process: starts it, finds its windows, reads what they
// show, takes screenshots and closes it.
#pragma once
#include <windows.h>

#include <string>
#include <vector>

// The folder of the running test program, with a trailing backslash.
std::wstring ProgramFolder();

// Copies Quill.exe (found beside the test program) into a new empty folder of the build tree
// named after the scenario, so that it gets settings of its own; returns the copy's path.
std::wstring PrepareFreshCopy(const std::wstring& scenario);

// Size of DEBUG.TXT in the temporary folder, and what was appended to it past `offset`.
long long DebugLogSize();
std::string DebugLogSince(long long offset);

class QuillProcess {
 public:
  QuillProcess() = default;
  ~QuillProcess();
  QuillProcess(const QuillProcess&) = delete;
  QuillProcess& operator=(const QuillProcess&) = delete;

  // Starts `exe` in its own folder with `arguments`, and waits for the frame window.
  bool Start(const std::wstring& exe, const std::wstring& arguments = L"", DWORD timeoutMs = 30000);
  HWND Frame() const { return frame_; }
  HWND Child(int id) const { return GetDlgItem(frame_, id); }

  // The status bar's part edges and texts, read from Quill's own memory.
  std::vector<int> StatusEdges() const;
  std::wstring StatusText(int part) const;

  // Drops files on the frame as the shell would (WM_DROPFILES), with the list in Quill's memory.
  bool DropFiles(const std::vector<std::wstring>& paths, POINT point) const;

  // Asks the frame to close (WM_CLOSE) and waits; the exit code, or -1 when it did not end.
  int CloseAndWait(DWORD timeoutMs = 10000);
  bool Running() const;

 private:
  PROCESS_INFORMATION process_ = {};
  HWND frame_ = nullptr;
};

std::wstring WindowText(HWND window);
std::wstring ClassName(HWND window);

// Saves the whole screen (Wine's virtual desktop) as a 24-bit BMP file.
bool SaveScreenshot(const std::wstring& path);
// The screenshot folder of the build tree, created when missing.
std::wstring ScreenshotFolder();
