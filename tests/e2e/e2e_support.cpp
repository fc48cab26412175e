#include "tests/e2e/e2e_support.h"

#include <initializer_list>

std::wstring FolderOf(const std::wstring& exe) {
  return exe.substr(0, exe.find_last_of(L'\\') + 1);
}

std::string Utf8Text(const std::wstring& text) {
  char bytes[MAX_PATH * 3];
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
  return bytes;
}

std::string ToSlashes(std::string path) {
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return path;
}

RECT Place(HWND window) {
  RECT rect;
  GetWindowRect(window, &rect);
  return rect;
}

std::wstring BoxMessage(HWND box) {
  std::wstring longest;
  auto take = [](HWND child, LPARAM found) -> BOOL {
    wchar_t text[512];
    SendMessageW(child, WM_GETTEXT, 512, reinterpret_cast<LPARAM>(text));
    std::wstring* kept = reinterpret_cast<std::wstring*>(found);
    if (wcslen(text) > kept->size()) *kept = text;
    return TRUE;
  };
  EnumChildWindows(box, take, reinterpret_cast<LPARAM>(&longest));
  return longest;
}

void WriteBytes(const std::wstring& path, const std::string& bytes) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  CloseHandle(file);
}

std::string ReadBytes(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                            OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::string bytes(GetFileSize(file, nullptr), '\0');
  DWORD read = 0;
  ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  CloseHandle(file);
  bytes.resize(read);
  return bytes;
}

std::string Setting(const std::wstring& ini, const wchar_t* section, const wchar_t* key) {
  wchar_t value[1024];
  GetPrivateProfileStringW(section, key, L"<none>", value, 1024, ini.c_str());
  char bytes[3072];
  WideCharToMultiByte(CP_UTF8, 0, value, -1, bytes, sizeof bytes, nullptr, nullptr);
  return bytes;
}

std::vector<HWND> Children(const QuillProcess& quill) {
  std::vector<HWND> children;
  for (HWND child = GetWindow(quill.Child(77), GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    if (!GetWindow(child, GW_OWNER)) children.push_back(child);
  }
  return children;
}

HWND OnlyChild(const QuillProcess& quill) {
  std::vector<HWND> children = Children(quill);
  return children.size() == 1 ? children[0] : nullptr;
}

HWND WaitForWindow(const QuillProcess& quill, const std::wstring& caption, DWORD timeoutMs) {
  DWORD process = 0;
  GetWindowThreadProcessId(quill.Frame(), &process);
  for (DWORD waited = 0; waited < timeoutMs; waited += 50) {
    for (HWND window = GetTopWindow(nullptr); window; window = GetWindow(window, GW_HWNDNEXT)) {
      DWORD owner = 0;
      GetWindowThreadProcessId(window, &owner);
      if (owner != process || window == quill.Frame() || !IsWindowVisible(window)) continue;
      if (caption.empty() ? ClassName(window) == L"#32770" : WindowText(window) == caption)
        return window;
    }
    Sleep(50);
  }
  return nullptr;
}

bool WaitUntilGone(HWND window, DWORD timeoutMs) {
  for (DWORD waited = 0; waited < timeoutMs && IsWindow(window); waited += 50)
    Sleep(50);
  return !IsWindow(window);
}

void FocusEditor(const QuillProcess& quill, HWND editor) {
  SetForegroundWindow(quill.Frame());
  SendMessageW(quill.Child(77), WM_MDIACTIVATE, reinterpret_cast<WPARAM>(editor), 0);
  SetFocus(editor);
  Settle();
}

void Key(WORD key, bool up) {
  INPUT input = {};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
  SendInput(1, &input, sizeof input);
}

void Press(WORD key) {
  Key(key, false);
  Key(key, true);
}

void Chord(std::initializer_list<WORD> modifiers, WORD key) {
  for (WORD modifier : modifiers)
    Key(modifier, false);
  Press(key);
  for (WORD modifier : modifiers)
    Key(modifier, true);
}

void TypeText(const std::wstring& text) {
  for (wchar_t unit : text) {
    INPUT input[2] = {};
    for (int i = 0; i < 2; ++i) {
      input[i].type = INPUT_KEYBOARD;
      input[i].ki.wScan = unit;
      input[i].ki.dwFlags = KEYEVENTF_UNICODE | (i ? KEYEVENTF_KEYUP : 0);
    }
    SendInput(2, input, sizeof input[0]);
  }
}

void Settle() {
  Sleep(400);
}
