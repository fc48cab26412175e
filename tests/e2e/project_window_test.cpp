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

constexpr int kCmdBuildRun = 124;
constexpr int kCmdBuild = 125;
constexpr int kCmdNewProject = 114;
constexpr int kCmdAddTarget = 121;
constexpr int kCmdRemove = 122;
constexpr int kCmdCloseProject = 119;
constexpr int kCmdModifyTarget = 45;
constexpr int kCmdOpenFile = 123;

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
    std::string compiler = Utf8Text(folder) + "VCTEST";
    EXPECT_NE(batch.find(compiler + "\\NMAKE hello.mak VCPATH=" + compiler + "\r\n"),
              std::string::npos)
        << batch;
    std::string log = ReadBytes(folder + L"NMAKE.LOG");
    EXPECT_NE(log.find("|hello.mak|VCPATH=" + compiler), std::string::npos) << log;
    EXPECT_EQ(quill.CloseAndWait(15000), 0);
  }
  // The settings remember the project; the project holds its desk.
  EXPECT_EQ(Setting(folder + L"QUILL.INI", L"DocList", L"Project"), ToSlashes(Utf8Text(prj)));
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

// The screen point of visible row `row` of the tree (rows counted from the top, all expanded).
POINT RowPoint(HWND tree, int row) {
  int height = static_cast<int>(SendMessageW(tree, TVM_GETITEMHEIGHT, 0, 0));
  POINT point = {40, row * height + height / 2};
  ClientToScreen(tree, &point);
  return point;
}

void MouseTo(POINT point) {
  SetCursorPos(point.x, point.y);
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dx = point.x * 65535 / (GetSystemMetrics(SM_CXSCREEN) - 1);
  input.mi.dy = point.y * 65535 / (GetSystemMetrics(SM_CYSCREEN) - 1);
  input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
  SendInput(1, &input, sizeof input);
  Sleep(60);
}

void MouseButton(DWORD flags) {
  INPUT input = {};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = flags;
  SendInput(1, &input, sizeof input);
  Sleep(60);
}

// A drag with the left button from one row to another, in small steps as a hand moves.
void Drag(HWND tree, int from, int to) {
  POINT start = RowPoint(tree, from), end = RowPoint(tree, to);
  MouseTo(start);
  MouseButton(MOUSEEVENTF_LEFTDOWN);
  for (int step = 1; step <= 8; ++step)
    MouseTo(
        POINT{start.x + 4 + (end.x - start.x) * step / 8, start.y + (end.y - start.y) * step / 8});
  MouseButton(MOUSEEVENTF_LEFTUP);
  Settle();
}

int ChildCount(HWND tree, HTREEITEM parent) {
  int count = 0;
  for (HTREEITEM item = Next(tree, parent, TVGN_CHILD); item; item = Next(tree, item, TVGN_NEXT))
    ++count;
  return count;
}

// The whole way of a new user: a new project in a folder with a blank, a console target from its
// template, a change, Build and Build and Run through the stand-in compiler; a second target, a
// file dragged to it and a target dragged onto a file; the pop-up menu; Delete of a file.
TEST(ProjectWindow, NewProjectTargetBuildRunAndDrag) {
  std::wstring exe = PrepareFreshCopy(L"project-new");
  std::wstring folder = FolderOf(exe);
  CreateDirectoryW((folder + L"VCTEST").c_str(), nullptr);
  CopyFileW((ProgramFolder() + L"VCTEST\\NMAKE.exe").c_str(),
            (folder + L"VCTEST\\NMAKE.exe").c_str(), FALSE);
  CreateDirectoryW((folder + L"TEMPLATE").c_str(), nullptr);
  CopyFileW((ProgramFolder() + L"TEMPLATE\\CONSOLE.CPP").c_str(),
            (folder + L"TEMPLATE\\CONSOLE.CPP").c_str(), FALSE);
  std::wstring work = folder + L"Work Dir\\";
  QuillProcess quill;
  ASSERT_TRUE(quill.Start(exe));
  PostMessageW(quill.Frame(), WM_COMMAND, kCmdNewProject, 0);
  HWND dialog = WaitForWindow(quill, L"새 프로젝트");
  ASSERT_NE(dialog, nullptr);
  wchar_t text[MAX_PATH] = L"";
  GetDlgItemTextW(dialog, 101, text, MAX_PATH);
  EXPECT_STREQ(text, L"NoName");
  SetDlgItemTextW(dialog, 101, L"my app");
  SetDlgItemTextW(dialog, 102, (folder + L"Work Dir").c_str());
  SaveScreenshot(ScreenshotFolder() + L"project-new-dialog.bmp");
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(dialog));

  // The new window asks for its first target.
  dialog = WaitForWindow(quill, L"타겟 추가");
  ASSERT_NE(dialog, nullptr);
  SetDlgItemTextW(dialog, 111, L"con app");
  SendMessageW(GetDlgItem(dialog, 101), BM_CLICK, 0, 0);  // console
  SetDlgItemTextW(dialog, 112, L"VCTEST");
  SaveScreenshot(ScreenshotFolder() + L"project-target-add.bmp");
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(dialog));
  Settle();
  HWND project = ProjectChild(quill);
  ASSERT_NE(project, nullptr);
  EXPECT_EQ(WindowText(project), work + L"my app.prj");
  HWND tree = Tree(project);
  EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 2);
  EXPECT_EQ(ReadBytes(work + L"CONSOLE.CPP"),
            ReadBytes(ProgramFolder() + L"TEMPLATE\\CONSOLE.CPP"));
  HWND editor = nullptr;
  for (HWND child : Children(quill)) {
    if (WindowText(child) == work + L"CONSOLE.CPP") editor = child;
  }
  ASSERT_NE(editor, nullptr);

  FocusEditor(quill, editor);
  TypeText(L"// mine\r");
  Settle();
  PostMessageW(quill.Frame(), WM_COMMAND, kCmdBuild, 0);
  HWND question = WaitForWindow(quill, L"");
  ASSERT_NE(question, nullptr);
  PostMessageW(question, WM_COMMAND, IDYES, 0);
  EXPECT_TRUE(WaitUntilGone(question));
  ASSERT_TRUE(WaitForFile(work + L"NMAKE.LOG"));
  Sleep(500);
  EXPECT_EQ(ReadBytes(work + L"CONSOLE.CPP").rfind("// mine\r\n", 0), 0u);
  std::string compiler = Utf8Text(folder) + "VCTEST";
  std::string log = ReadBytes(work + L"NMAKE.LOG");
  EXPECT_NE(log.find("|con app.mak|VCPATH=" + compiler + "\n"), std::string::npos) << log;
  EXPECT_NE(ReadBytes(work + L"con app.mak").find("T=con app.exe\r\nS=\\\r\n CONSOLE.CPP\\\r\n"),
            std::string::npos);

  // Build and run: the output is built again and run.
  PostMessageW(quill.Frame(), WM_COMMAND, kCmdBuildRun, 0);
  for (int i = 0; i < 200 && ReadBytes(work + L"NMAKE.LOG").find("RUN|") == std::string::npos; ++i)
    Sleep(100);
  log = ReadBytes(work + L"NMAKE.LOG");
  EXPECT_NE(log.find("RUN|"), std::string::npos) << log;
  EXPECT_NE(ReadBytes(work + L"C.BAT")
                .find("If not exist \"con app.exe\" goto Exit\r\nCls\r\n"
                      "\"con app.exe\"\r\n"),
            std::string::npos);

  // A second target, a static library: no template.
  SendMessageW(quill.Child(77), WM_MDIACTIVATE, reinterpret_cast<WPARAM>(project), 0);
  PostMessageW(project, WM_COMMAND, kCmdAddTarget, 0);
  dialog = WaitForWindow(quill, L"타겟 추가");
  ASSERT_NE(dialog, nullptr);
  // The dialog starts from the defaults the first target stored.
  GetDlgItemTextW(dialog, 111, text, MAX_PATH);
  EXPECT_STREQ(text, L"con app");
  EXPECT_EQ(SendMessageW(GetDlgItem(dialog, 101), BM_GETCHECK, 0, 0), BST_CHECKED);
  SetDlgItemTextW(dialog, 111, L"two");
  SendMessageW(GetDlgItem(dialog, 105), BM_CLICK, 0, 0);  // static library
  PostMessageW(dialog, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(dialog));
  Settle();
  EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 3);
  HTREEITEM first = Next(tree, nullptr, TVGN_ROOT);
  HTREEITEM second = Next(tree, first, TVGN_NEXT);
  SendMessageW(tree, TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(first));
  SetForegroundWindow(quill.Frame());
  Settle();
  SaveScreenshot(ScreenshotFolder() + L"project-two-targets.bmp");

  // Rows: 0 "con app", 1 CONSOLE.CPP, 2 "two". A target dropped on a file beeps; the file
  // dropped on the other target moves there.
  Drag(tree, 2, 1);
  EXPECT_EQ(ChildCount(tree, first), 1);
  EXPECT_EQ(Next(tree, nullptr, TVGN_ROOT), first);
  Drag(tree, 1, 2);
  first = Next(tree, nullptr, TVGN_ROOT);
  second = Next(tree, first, TVGN_NEXT);
  EXPECT_EQ(ChildCount(tree, first), 0);
  EXPECT_EQ(ChildCount(tree, second), 1);
  SaveScreenshot(ScreenshotFolder() + L"project-dragged.bmp");

  // The right button opens the project menu at the cursor.
  MouseTo(RowPoint(tree, 0));
  MouseButton(MOUSEEVENTF_RIGHTDOWN);
  MouseButton(MOUSEEVENTF_RIGHTUP);
  Settle();
  HWND menu = FindWindowW(L"#32768", nullptr);
  EXPECT_TRUE(menu && IsWindowVisible(menu));
  SaveScreenshot(ScreenshotFolder() + L"project-menu.bmp");
  Press(VK_ESCAPE);
  Settle();

  // Delete of a file takes it out at once; of a target, after the question (cancelled here).
  HTREEITEM moved = Next(tree, second, TVGN_CHILD);
  ASSERT_NE(moved, nullptr);
  Select(tree, moved);
  PostMessageW(project, WM_COMMAND, kCmdRemove, 0);
  Settle();
  EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 2);
  Select(tree, second);
  PostMessageW(project, WM_COMMAND, kCmdRemove, 0);
  question = WaitForWindow(quill, L"");
  ASSERT_NE(question, nullptr);
  PostMessageW(question, WM_COMMAND, IDCANCEL, 0);
  EXPECT_TRUE(WaitUntilGone(question));
  EXPECT_EQ(SendMessageW(tree, TVM_GETCOUNT, 0, 0), 2);
  EXPECT_EQ(quill.CloseAndWait(15000), 0);
  // Closing saved the modified project: two targets, the file list as the tree left it.
  std::wstring prj = work + L"my app.prj";
  EXPECT_EQ(Setting(prj, L"Target00", L"Info"), "\"con app\" 0 0 1 0");
  EXPECT_EQ(Setting(prj, L"Target00", L"File00"), "");
  EXPECT_EQ(Setting(prj, L"Target01", L"Info"), "\"two\" 0 4 1 0");
  EXPECT_EQ(Setting(prj, L"Target02", L"Info"), "");
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
  // Its file vanishes before Close: closing makes no new file of the desk alone.
  ASSERT_TRUE(DeleteFileW((folder + L"Good.prj").c_str()));
  PostMessageW(quill.Frame(), WM_COMMAND, kCmdCloseProject, 0);
  Settle();
  EXPECT_EQ(ProjectChild(quill), nullptr);
  EXPECT_EQ(GetFileAttributesW((folder + L"Good.prj").c_str()), INVALID_FILE_ATTRIBUTES);

  // Ten thousand targets with names of 100,000 characters: the first thousand are read, cut to
  // the name's size, after a message; the file is not rewritten at close.
  std::string big = "[Head]\r\nInfo=Quill Project File 1.00\r\n";
  std::string longName(100000, 'n');
  for (int i = 0; i < 10000; ++i)
    big += "[Target" + std::string(i < 10 ? "0" : "") + std::to_string(i) + "]\r\nInfo=\"" +
           (i == 0 ? longName : "t" + std::to_string(i)) + "\" 0 0 1 0\r\nFile00=\"f.c\"\r\n";
  big += "[Target10000]\r\nInfo=\r\n";
  WriteBytes(folder + L"Big.prj", big);
  DWORD started = GetTickCount();
  ASSERT_TRUE(quill.DropFiles({folder + L"Big.prj"}, POINT{200, 200}));
  box = WaitForWindow(quill, L"", 60000);
  ASSERT_NE(box, nullptr);
  printf("ten thousand targets: the message after %lu ms\n", GetTickCount() - started);
  PostMessageW(box, WM_COMMAND, IDOK, 0);
  EXPECT_TRUE(WaitUntilGone(box));
  Settle();
  project = ProjectChild(quill);
  ASSERT_NE(project, nullptr);
  EXPECT_EQ(SendMessageW(Tree(project), TVM_GETCOUNT, 0, 0), 2000);  // targets and their files
  SaveScreenshot(ScreenshotFolder() + L"project-big.bmp");
  EXPECT_EQ(quill.CloseAndWait(30000), 0);
  EXPECT_EQ(ReadBytes(folder + L"Bad.prj"), binary);  // never written
  EXPECT_EQ(ReadBytes(folder + L"Big.prj").substr(0, big.size()), big);
}

}  // namespace
