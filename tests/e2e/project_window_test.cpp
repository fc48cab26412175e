// The project window in the real program: a project named on the command line opens with its
// tree, a file opens from the tree, Build writes the makefile and C.BAT and runs a stand-in NMAKE,
// the project and its documents come back after a restart, and a broken project file is refused.
#include <gtest/gtest.h>
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "tests/e2e/e2e_support.h"
#include "tests/e2e/quill_driver.h"

namespace {

constexpr int kCmdBuild = 125;
constexpr int kCmdCloseProject = 119;
constexpr int kCmdModifyTarget = 45;
constexpr int kCmdOpenFile = 123;

std::string Utf8(const std::wstring& text) {
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

HWND ProjectChild(const QuillProcess& quill) {
  for (HWND child : Children(quill)) {
    if (ClassName(child) == L"QuillProject") return child;
  }
  return nullptr;
}

HWND Tree(HWND project) {
  return project ? GetDlgItem(project, 127) : nullptr;
}

// Tree items are handles of Quill's process; as values they pass between processes.
HTREEITEM Next(HWND tree, HTREEITEM item, UINT relation) {
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(tree, TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
}

void Select(HWND tree, HTREEITEM item) {
  SendMessageW(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

bool WaitForFile(const std::wstring& path, DWORD timeoutMs = 15000) {
  for (DWORD waited = 0; waited < timeoutMs; waited += 100, Sleep(100)) {
    if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
  }
  return false;
}

// A project of two targets; the first builds with the stand-in compiler folder "VCTEST".
std::wstring PrepareProject(const std::wstring& scenario) {
  std::wstring exe = PrepareFreshCopy(scenario);
  std::wstring folder = FolderOf(exe);
  std::wstring compiler = folder + L"VCTEST\\";
  CreateDirectoryW(compiler.c_str(), nullptr);
  CopyFileW((ProgramFolder() + L"VCTEST\\NMAKE.exe").c_str(), (compiler + L"NMAKE.exe").c_str(),
            FALSE);
  WriteBytes(folder + L"main.c", "int main(void) { return 0; }\r\n");
  WriteBytes(folder + L"util.h", "#define UTIL 1\r\n");
  WriteBytes(folder + L"Demo.prj",
             "[Head]\r\nInfo=Quill Project File 1.00\r\n"
             "[Target00]\r\nInfo=\"hello\" 0 0 1 0\r\nFile00=\"main.c\"\r\nFile01=\"util.h\"\r\n"
             "File02=\r\nCompiler=VCTEST\r\n"
             "[Target01]\r\nInfo=\"second app\" 0 1 1 0\r\nFile00=\"win.c\"\r\nFile01=\r\n"
             "Compiler=VC9\r\n[Target02]\r\nInfo=\r\n");
  return exe;
}

TEST(ProjectWindow, OpensFromTheCommandLineBuildsAndComesBackAfterARestart) {
  std::wstring exe = PrepareProject(L"project-window");
  std::wstring folder = FolderOf(exe);
  std::wstring prj = folder + L"Demo.prj";
  {
    QuillProcess quill;
    ASSERT_TRUE(quill.Start(exe, L"\"" + prj + L"\""));
    Settle();
    HWND project = ProjectChild(quill);
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(WindowText(project), prj);
    HWND tree = Tree(project);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(ClassName(tree), L"SysTreeView32");
    // Two targets and three files.
    EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 5);
    HTREEITEM hello = Next(tree, nullptr, TVGN_ROOT);
    HTREEITEM second = Next(tree, hello, TVGN_NEXT);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(Next(tree, second, TVGN_NEXT), nullptr);
    HTREEITEM mainFile = Next(tree, hello, TVGN_CHILD);
    ASSERT_NE(mainFile, nullptr);
    ASSERT_NE(Next(tree, mainFile, TVGN_NEXT), nullptr);
    SaveScreenshot(ScreenshotFolder() + L"project-tree.bmp");

    // Open file (123, as a double click posts it) opens main.c beside the project.
    Select(tree, mainFile);
    PostMessageW(project, WM_COMMAND, kCmdOpenFile, 0);
    Settle();
    std::vector<HWND> children = Children(quill);
    ASSERT_EQ(children.size(), 2u);
    HWND editor = children[0] == project ? children[1] : children[0];
    EXPECT_EQ(WindowText(editor), folder + L"main.c");

    // The target dialog for the selected file's target, titled "타겟 수정"; cancelled.
    SendMessageW(quill.Child(77), WM_MDIACTIVATE, reinterpret_cast<WPARAM>(project), 0);
    PostMessageW(project, WM_COMMAND, kCmdModifyTarget, 0);
    HWND dialog = WaitForWindow(quill, L"타겟 수정");
    ASSERT_NE(dialog, nullptr);
    wchar_t name[64] = L"";
    GetDlgItemTextW(dialog, 111, name, 64);
    EXPECT_STREQ(name, L"hello");
    SaveScreenshot(ScreenshotFolder() + L"project-target-dialog.bmp");
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    EXPECT_TRUE(WaitUntilGone(dialog));

    // A typed change, then Build (F7's command): the unsaved source is asked about; Yes saves
    // it, writes the makefile and C.BAT, and the stand-in NMAKE runs on the makefile.
    FocusEditor(quill, editor);
    TypeText(L"// built\r");
    Settle();
    Select(tree, mainFile);  // a file selected builds its target
    PostMessageW(quill.Frame(), WM_COMMAND, kCmdBuild, 0);
    HWND question = WaitForWindow(quill, L"");
    ASSERT_NE(question, nullptr);
    PostMessageW(question, WM_COMMAND, IDYES, 0);
    EXPECT_TRUE(WaitUntilGone(question));
    ASSERT_TRUE(WaitForFile(folder + L"NMAKE.LOG"));
    Sleep(500);
    EXPECT_EQ(ReadBytes(folder + L"main.c").rfind("// built", 0), 0u);
    std::string makefile = ReadBytes(folder + L"hello.mak");
    EXPECT_NE(makefile.find("T=hello.exe\r\nS=\\\r\n main.c\\\r\n\r\n"), std::string::npos)
        << makefile;
    std::string batch = ReadBytes(folder + L"C.BAT");
    std::string compiler = Utf8(folder) + "VCTEST";
    EXPECT_NE(batch.find(compiler + "\\NMAKE hello.mak VCPATH=" + compiler + "\r\n"),
              std::string::npos)
        << batch;
    std::string log = ReadBytes(folder + L"NMAKE.LOG");
    EXPECT_NE(log.find("|hello.mak|VCPATH=" + compiler), std::string::npos) << log;
    EXPECT_EQ(quill.CloseAndWait(15000), 0);
  }
  // The settings remember the project; the project holds its desk.
  EXPECT_EQ(Setting(folder + L"QUILL.INI", L"DocList", L"Project"), ToSlashes(Utf8(prj)));
  std::string entry = Setting(prj, L"DocList", L"0");
  EXPECT_NE(entry.find("main.c\""), std::string::npos) << entry;
  EXPECT_NE(Setting(prj, L"DocList", L"Project"), "<none>");

  QuillProcess again;
  ASSERT_TRUE(again.Start(exe));
  Settle();
  HWND project = ProjectChild(again);
  ASSERT_NE(project, nullptr);
  EXPECT_EQ(WindowText(project), prj);
  EXPECT_EQ(Children(again).size(), 2u);
  SaveScreenshot(ScreenshotFolder() + L"project-restored.bmp");
  // Close project (119): its list is written and every window goes.
  PostMessageW(again.Frame(), WM_COMMAND, kCmdCloseProject, 0);
  Settle();
  EXPECT_TRUE(Children(again).empty());
  EXPECT_EQ(again.CloseAndWait(15000), 0);
  EXPECT_EQ(Setting(folder + L"QUILL.INI", L"DocList", L"Project"), "");
}

TEST(ProjectWindow, ABrokenProjectFileIsRefusedAndTheProgramStays) {
  std::wstring exe = PrepareFreshCopy(L"project-broken");
  std::wstring folder = FolderOf(exe);
  std::string binary(4096, '\0');
  for (size_t i = 0; i < binary.size(); ++i)
    binary[i] = static_cast<char>(i * 7 + 3);
  WriteBytes(folder + L"Bad.prj", binary);
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe, L"\"" + folder + L"Bad.prj\""));
  HWND box = WaitForWindow(quill, L"");
  ASSERT_NE(box, nullptr);
  SaveScreenshot(ScreenshotFolder() + L"project-broken.bmp");
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(box));
  Settle();
  EXPECT_TRUE(quill.Running());
  EXPECT_EQ(ProjectChild(quill), nullptr);
  // Dropped on the frame, the good project opens in its place.
  WriteBytes(folder + L"Good.prj",
             "[Head]\r\nInfo=Quill Project File 1.01\r\n[Target00]\r\nInfo=\"one\" 0 0 1 0\r\n"
             "File00=\r\n[Target01]\r\nInfo=\r\n");
  ASSERT_TRUE(quill.DropFiles({folder + L"Good.prj"}, POINT{200, 200}));
  Settle();
  HWND project = ProjectChild(quill);
  ASSERT_NE(project, nullptr);
  EXPECT_EQ(SendMessageW(Tree(project), TVM_GETCOUNT, 0, 0), 1);
  EXPECT_EQ(quill.CloseAndWait(15000), 0);
  EXPECT_EQ(ReadBytes(folder + L"Bad.prj"), binary);  // never written
}

}  // namespace
