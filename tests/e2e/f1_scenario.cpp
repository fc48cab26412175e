#include "tests/e2e/f1_scenario.h"

#include <commctrl.h>

#include <cstdio>

#include "tests/e2e/e2e_support.h"

const wchar_t kMingwHeaders[] = L"Z:\\usr\\share\\mingw-w64\\include";

const char F1Scenario::kSource[] =
    "#include <windows.h>\r\n"
    "struct Local { int a; };\r\n"
    "int Use(void) {\r\n"
    "  return (int)sizeof(\r\n"
    "RECT\r\n"
    ") +\r\n"
    "WM_USER\r\n"
    "+ (int)sizeof(struct\r\n"
    "Local\r\n"
    ") + (\r\n"
    "CreateWindowExW\r\n"
    "!= 0);\r\n"
    "}\r\n";

std::wstring Wide(const std::string& utf8) {
  if (utf8.empty()) return L"";
  int length =
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
  std::wstring text(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), &text[0], length);
  return text;
}

namespace {

std::string Narrow(const std::wstring& text) {
  char bytes[MAX_PATH * 3];
  WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
  return bytes;
}

}  // namespace

F1Scenario::F1Scenario(const std::wstring& name)
    : exe_(PrepareFreshCopy(name)),
      folder_(FolderOf(exe_)),
      project_(folder_ + L"Demo.prj"),
      source_(folder_ + L"main.c") {
  // The compiler's own make file takes the target's options into C_OPTION.
  CreateDirectoryW((folder_ + L"VC9").c_str(), nullptr);
  WriteBytes(folder_ + L"VC9\\Console.mak", "C_OPTION=/nologo $(ADD_C_OPT)\r\n");
  WriteBytes(source_, kSource);
  // quill-tool finds the compiler folder beside itself, as Quill does.
  CopyFileW((ProgramFolder() + L"quill-tool.exe").c_str(), (folder_ + L"quill-tool.exe").c_str(),
            FALSE);
  WriteBytes(project_,
             "[Head]\r\nInfo=Quill Project File 1.00\r\n"
             "[Target00]\r\nInfo=\"demo\" 0 0 1 0\r\nFile00=\"main.c\"\r\nFile01=\r\n"
             "Compiler=VC9\r\nCOption=/I" +
                 Narrow(kMingwHeaders) + " /DSTRICT\r\n[Target01]\r\nInfo=\r\n");
}

bool F1Scenario::Start() {
  if (!quill_.Start(exe_, L"\"" + project_ + L"\"")) return false;
  Settle();
  return true;
}

HWND F1Scenario::OpenSource() {
  HWND project = nullptr;
  for (HWND child : Children(quill_)) {
    if (ClassName(child) == L"QuillProject") project = child;
  }
  HWND tree = project ? GetDlgItem(project, 127) : nullptr;
  if (!tree) return nullptr;
  HTREEITEM target = reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_GETNEXTITEM, TVGN_ROOT, 0));
  HTREEITEM file = reinterpret_cast<HTREEITEM>(
      SendMessageW(tree, TVM_GETNEXTITEM, TVGN_CHILD, reinterpret_cast<LPARAM>(target)));
  if (!file) return nullptr;
  SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(file));
  PostMessageW(project, WM_COMMAND, 123, 0);  // open file, as a double click posts it
  Settle();
  for (HWND child : Children(quill_)) {
    if (WindowText(child) == source_) return child;
  }
  return nullptr;
}

void F1Scenario::CaretOn(HWND editor, const std::string& word) {
  std::string text = kSource;
  size_t at = text.find("\r\n" + word + "\r\n");
  at = at == std::string::npos ? text.find(word) : at + 2;
  if (word.empty()) at = text.size();  // the empty line after the last
  int line = 0;
  size_t lineStart = 0;
  for (size_t i = 0; i < at && i < text.size(); ++i) {
    if (text[i] == '\n') {
      ++line;
      lineStart = i + 1;
    }
  }
  FocusEditor(quill_, editor);
  Chord({VK_CONTROL}, VK_HOME);
  for (int i = 0; i < line; ++i)
    Press(VK_DOWN);
  for (size_t i = lineStart; i < at; ++i)
    Press(VK_RIGHT);
  Settle();
}

void F1Scenario::PressF1On(HWND editor, const std::string& word) {
  CaretOn(editor, word);
  Press(VK_F1);
  Settle();
  DWORD_PTR ignored;
  SendMessageTimeoutW(quill_.Frame(), WM_NULL, 0, 0, SMTO_BLOCK, 30000, &ignored);
}

double F1Scenario::CommandF1On(HWND editor, const std::string& word) {
  CaretOn(editor, word);
  LARGE_INTEGER frequency, start, end;
  QueryPerformanceFrequency(&frequency);
  QueryPerformanceCounter(&start);
  SendMessageW(editor, WM_COMMAND, 99, 0);
  QueryPerformanceCounter(&end);
  Settle();
  return static_cast<double>(end.QuadPart - start.QuadPart) /
         static_cast<double>(frequency.QuadPart);
}

HWND F1Scenario::ParserWindow() const {
  for (HWND child : Children(quill_)) {
    if (WindowText(child) == L"Parser Window") return child;
  }
  return nullptr;
}

std::wstring F1Scenario::WindowCopy() {
  HWND parser = ParserWindow();
  if (!parser) return L"<no window>";
  FocusEditor(quill_, parser);
  Chord({VK_CONTROL}, 'A');
  Chord({VK_CONTROL}, 'C');
  Settle();
  std::wstring copied = L"<none>";
  if (OpenClipboard(nullptr)) {
    if (HANDLE data = GetClipboardData(CF_UNICODETEXT)) {
      copied = static_cast<const wchar_t*>(GlobalLock(data));
      GlobalUnlock(data);
    }
    CloseClipboard();
  }
  return copied;
}

std::string F1Scenario::Lookup(const std::string& word) const {
  std::wstring output = folder_ + L"lookup.txt";
  SECURITY_ATTRIBUTES inherit = {sizeof inherit, nullptr, TRUE};
  HANDLE file = CreateFileW(output.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherit, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return "<no output file>";
  std::wstring tool = folder_ + L"quill-tool.exe";
  std::wstring command = L"\"" + tool + L"\" lookup --project \"" + project_ + L"\" \"" + source_ +
                         L"\" \"" + Wide(word) + L"\"";
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = file;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  PROCESS_INFORMATION process = {};
  bool started = CreateProcessW(tool.c_str(), &command[0], nullptr, nullptr, TRUE, 0, nullptr,
                                folder_.c_str(), &startup, &process);
  if (started) {
    WaitForSingleObject(process.hProcess, 60000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(file);
  return started ? ReadBytes(output) : "<quill-tool did not start>";
}

void F1Scenario::Shot(const std::wstring& name) const {
  SaveScreenshot(ScreenshotFolder() + name + L".bmp");
}
