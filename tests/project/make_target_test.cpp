#include "project/make_target.h"

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/memory.h"
#include "foundation/path.h"
#include "project/project.h"
#include "tests/project/project_fixture.h"

namespace {

std::string Take(char* block) {
  std::string text = block ? block : "(null)";
  FreeMem(block);
  return text;
}

class MakeTargetTest : public ProjectTest {
 protected:
  std::string Makefile(const ProjectTarget* target) { return Take(ComposeMakefile(target)); }
  std::string Batch(const ProjectTarget* target, bool run) {
    return Take(ComposeBatch(target, "C:/My Work/proj", "D:/Tools/Quill", run));
  }
  std::string Program() {
    char folder[kPathSize];
    EXPECT_GT(ProgramFolder(folder, sizeof folder), 0);
    return folder;
  }
  static std::string Backslashed(std::string path) {
    for (char& c : path) {
      if (c == '/') c = '\\';
    }
    return path;
  }
};

TEST_F(MakeTargetTest, ATargetWithoutOptionsHasEmptyCAndRcLinesAndNoAsmOrLib) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  EXPECT_EQ(Makefile(target),
            "O=OBJ\\app\r\n"
            "T=app.exe\r\n"
            "S=\\\r\n"
            "\r\n"
            "ADD_C_OPT=\r\n"
            "ADD_RC_OPT=\r\n"
            "ADD_LINK_OPT=\r\n"
            "\r\n"
            "!INCLUDE $(VCPATH)\\Windows.mak\r\n");
}

TEST_F(MakeTargetTest, EveryPartInOrderWithTheOptionAsymmetries) {
  ProjectTarget* target = AddTarget("tool", kTargetConsole);
  target->platform = kPlatform64;
  target->useDefaultLib = 0;
  SetTargetText(&target->makeStart, "CPU=x64\r\nMODE=1");
  SetTargetText(&target->addCompile, "lib/a.cpp\r\n\r\nb.c");
  AppendTargetFile(target, "main.CPP");
  AppendTargetFile(target, "main.h");  // headers are not compiled
  AppendTargetFile(target, "sub/res.Rc");
  AppendTargetFile(target, "x.asm");
  AppendTargetFile(target, "notes.txt");
  AppendTargetFile(target, "dir.c/README");  // a dot in a folder is no extension
  AppendTargetFile(target, "old.cpp.bak");
  AppendTargetFile(target, "k.C");
  SetTargetText(&target->cOption, "/O2");
  SetTargetText(&target->rcOption, "/l 0x412");
  SetTargetText(&target->asmOption, "/coff");
  SetTargetText(&target->linkOption, "/MAP");
  SetTargetText(&target->libraries, "user32.lib\r\ngdi32.lib");
  SetTargetText(&target->defines, "DEBUG\r\n\r\nVER=2");
  SetTargetText(&target->includes, "inc\r\n../common");
  EXPECT_EQ(Makefile(target),
            "CPU=x64\r\nMODE=1\r\n\r\n"
            "O=OBJ\\tool\r\n"
            "T=tool.exe\r\n"
            "S=\\\r\n"
            " lib\\a.cpp\\\r\n"
            " b.c\\\r\n"
            " main.CPP\\\r\n"
            " sub/res.Rc\\\r\n"
            " x.asm\\\r\n"
            " k.C\\\r\n"
            "\r\n"
            "ADD_C_OPT=/DNODEFAULTLIB /O2 /DDEBUG /DVER=2 /Iinc /I..\\common\r\n"
            "ADD_RC_OPT=/l 0x412 /DDEBUG /DVER=2 /Iinc /I..\\common\r\n"
            "ADD_ASM_OPT=/coff\r\n"
            "ADD_LINK_OPT=/NODEFAULTLIB /MAP\r\n"
            "ADD_LIB=user32.lib gdi32.lib\r\n"
            "\r\n"
            "!INCLUDE $(VCPATH)\\ConsoleX64.mak\r\n");

  // Without C, RC or link options the lists follow '=' without a blank.
  SetTargetText(&target->cOption, nullptr);
  SetTargetText(&target->rcOption, nullptr);
  SetTargetText(&target->linkOption, nullptr);
  target->useDefaultLib = 1;
  std::string text = Makefile(target);
  EXPECT_NE(text.find("\r\nADD_C_OPT=/DDEBUG /DVER=2 /Iinc /I..\\common\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nADD_RC_OPT=/DDEBUG /DVER=2 /Iinc /I..\\common\r\n"), std::string::npos);
  EXPECT_NE(text.find("\r\nADD_LINK_OPT=\r\n"), std::string::npos);
  target->useDefaultLib = 0;
  text = Makefile(target);
  EXPECT_NE(text.find("\r\nADD_C_OPT=/DNODEFAULTLIB /DDEBUG"), std::string::npos);
  EXPECT_NE(text.find("\r\nADD_RC_OPT=/DDEBUG"), std::string::npos);
  EXPECT_NE(text.find("\r\nADD_LINK_OPT=/NODEFAULTLIB\r\n"), std::string::npos);
}

TEST_F(MakeTargetTest, EachTypeAndPlatformIncludesItsMakeFile) {
  const char* const kinds[] = {"Console", "Windows", "Windows", "MakeDll",
                               "MakeLib", "Windows", "Windows"};
  const char* const outputs[] = {"t.exe", "t.exe", "t.exe", "t.dll", "t.lib", "t.exe", "t.exe"};
  for (int type = 0; type <= kTargetTypeCount; ++type) {
    for (int platform = 0; platform < 2; ++platform) {
      ProjectTarget* target = AddTarget("t", type);
      target->platform = platform;
      std::string text = Makefile(target);
      std::string include =
          std::string("!INCLUDE $(VCPATH)\\") + kinds[type] + (platform ? "X64" : "") + ".mak\r\n";
      EXPECT_EQ(text.substr(text.size() - include.size()), include) << type << platform;
      EXPECT_NE(text.find(std::string("\r\nT=") + outputs[type] + "\r\n"), std::string::npos);
      RemoveTarget(&project_, target);
    }
  }
}

TEST_F(MakeTargetTest, TheBatchFileForEveryModeAndType) {
  const std::string head =
      "@Echo Off\r\nC:\r\nCD C:\\My Work\\proj\r\n\r\n"
      "D:\\Tools\\Quill\\VC15\\NMAKE t.mak VCPATH=D:\\Tools\\Quill\\VC15\r\n"
      "Del TargetList.mak\r\nDel TargetCompile.mak\r\n\r\n";
  const std::string runWindow = "If not exist t.exe goto Exit\r\nt.exe\r\n:Exit\r\n";
  const std::string tails[] = {"If not exist t.exe goto Exit\r\nCls\r\nt.exe\r\n:Exit\r\nPause\r\n",
                               runWindow,
                               runWindow,
                               "Pause\r\n",
                               "Pause\r\n",
                               runWindow,
                               ""};
  for (int type = 0; type <= kTargetTypeCount; ++type) {
    ProjectTarget* target = AddTarget("t", type);
    strcpy(target->compiler, "VC15");
    // Build and rebuild only pause; a DLL or a library is never run.
    EXPECT_EQ(Batch(target, false), head + "Pause\r\n") << type;
    EXPECT_EQ(Batch(target, true), head + tails[type]) << type;
    RemoveTarget(&project_, target);
  }
}

TEST_F(MakeTargetTest, BuildWritesBothFilesAndStartsTheBatchShown) {
  ProjectTarget* target = AddTarget("app", kTargetConsole);
  AppendTargetFile(target, "app.cpp");
  MakeFolder(In("OBJ/app"));
  WriteFileBytes(In("OBJ/app/app.obj"), "obj");
  ASSERT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 1);
  EXPECT_TRUE(asked_.empty());
  EXPECT_EQ(ReadFileBytes(In("app.mak")), Sys(Makefile(target)));
  std::string program = Backslashed(Program());
  std::string folder = Backslashed(folder_);
  EXPECT_EQ(ReadFileBytes(In("C.BAT")),
            Sys(std::string("@Echo Off\r\n") + folder_[0] + ":\r\nCD " + folder + "\r\n\r\n" +
                program + "\\VC9\\NMAKE app.mak VCPATH=" + program + "\\VC9\r\n" +
                "Del TargetList.mak\r\nDel TargetCompile.mak\r\n\r\nPause\r\n"));
  ASSERT_EQ(started_.size(), 1u);
  EXPECT_EQ(started_[0].first, "\"" + In("C.BAT") + "\"");
  EXPECT_EQ(started_[0].second, 5);
  EXPECT_TRUE(FileExists(In("OBJ/app/app.obj")));  // only a rebuild starts afresh
}

TEST_F(MakeTargetTest, RebuildDeletesTheObjectFolderWithEverythingInIt) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  MakeFolder(In("OBJ/app/deeper"));
  WriteFileBytes(In("OBJ/app/a.obj"), "obj");
  WriteFileBytes(In("OBJ/app/deeper/b.res"), "res");
  WriteFileBytes(In("OBJ/top.pch"), "pch");
  WriteFileBytes(In("keep.cpp"), "int x;");
  ASSERT_EQ(MakeTarget(&project_, target, BuildMode::kRebuild), 1);
  EXPECT_FALSE(FileExists(In("OBJ")));
  EXPECT_TRUE(FileExists(In("keep.cpp")));
  EXPECT_TRUE(FileExists(In("C.BAT")));
  // No object folder at all is no failure either.
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kRebuild), 1);
  EXPECT_EQ(started_.size(), 2u);
}

TEST_F(MakeTargetTest, RunDeletesTheOldOutputFirstAndStopsWhenItCannot) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  WriteFileBytes(In("app.exe"), "old");
  ASSERT_EQ(MakeTarget(&project_, target, BuildMode::kRun), 1);
  EXPECT_FALSE(FileExists(In("app.exe")));
  EXPECT_TRUE(asked_.empty());
  // Missing output: nothing to delete, nothing to say.
  ASSERT_EQ(MakeTarget(&project_, target, BuildMode::kRun), 1);
  EXPECT_TRUE(asked_.empty());
  EXPECT_EQ(started_.size(), 2u);

  // An output that can't be deleted (here a folder) is probably still running.
  std::remove(In("app.mak").c_str());
  std::remove(In("C.BAT").c_str());
  MakeFolder(In("app.exe/inside"));
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kRun), 0);
  ASSERT_EQ(asked_.size(), 1u);
  EXPECT_EQ(asked_[0].first, "먼저 'app.exe'을 종료하세요.");
  EXPECT_FALSE(FileExists(In("app.mak")));
  EXPECT_FALSE(FileExists(In("C.BAT")));
  EXPECT_EQ(started_.size(), 2u);
}

TEST_F(MakeTargetTest, UnsavedSourcesAreAskedAboutFirst) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  unsaved_ = true;
  answer_ = kIdCancel;
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 0);
  ASSERT_EQ(asked_.size(), 1u);
  EXPECT_EQ(asked_[0].first, "저장하지 않은 소스 창이 있습니다. 저장하고 진행할까요?");
  EXPECT_EQ(asked_[0].second & 0xF, static_cast<unsigned>(kMbYesNoCancel));
  EXPECT_FALSE(FileExists(In("app.mak")));
  EXPECT_TRUE(started_.empty());
  EXPECT_EQ(saves_, 0);

  answer_ = kIdNo;
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 1);
  EXPECT_EQ(saves_, 0);
  answer_ = kIdYes;
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 1);
  EXPECT_EQ(saves_, 1);
  EXPECT_EQ(started_.size(), 2u);
  unsaved_ = false;
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 1);
  EXPECT_EQ(asked_.size(), 3u);
}

TEST_F(MakeTargetTest, MakefileOnlyHandsOutThePathAndCompilerAndStopsThere) {
  ProjectTarget* target = AddTarget("lib 한", kTargetLib);
  strcpy(target->compiler, "VC15");
  char path[kPathSize] = "";
  char compiler[kCompilerNameSize] = "";
  ASSERT_EQ(MakeTarget(&project_, target, false, false, true, path, compiler), 1);
  EXPECT_EQ(std::string(path), In("lib 한.mak"));
  EXPECT_STREQ(compiler, "VC15");
  EXPECT_EQ(ReadFileBytes(In("lib 한.mak")),
            Sys("O=OBJ\\lib 한\r\nT=lib 한.lib\r\nS=\\\r\n\r\n"
                "ADD_C_OPT=\r\nADD_RC_OPT=\r\nADD_LINK_OPT=\r\n\r\n"
                "!INCLUDE $(VCPATH)\\MakeLib.mak\r\n"));
  EXPECT_FALSE(FileExists(In("C.BAT")));
  EXPECT_TRUE(started_.empty());
}

TEST_F(MakeTargetTest, AMakefileThatCannotBeCreatedShowsString3AndStartsNothing) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  MakeFolder(In("app.mak"));
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 0);
  ASSERT_EQ(asked_.size(), 1u);
  EXPECT_EQ(asked_[0].first, "'" + In("app.mak") + "' 파일이 만들어지지 않습니다.");
  EXPECT_FALSE(FileExists(In("C.BAT")));

  RemoveTree(In("app.mak"));
  MakeFolder(In("C.BAT"));
  EXPECT_EQ(MakeTarget(&project_, target, BuildMode::kBuild), 0);
  ASSERT_EQ(asked_.size(), 2u);
  EXPECT_EQ(asked_[1].first, "'" + In("C.BAT") + "' 파일이 만들어지지 않습니다.");
  EXPECT_TRUE(started_.empty());
}

}  // namespace

TEST_F(MakeTargetTest, NamesAndFoldersWithBlanksAreQuotedAndIncludeSlashesTurn) {
  ProjectTarget* target = AddTarget("my app", kTargetConsole);
  EXPECT_EQ(Take(ComposeBatch(target, "C:/My Work/proj", "D:/Program Files/Quill", true)),
            "@Echo Off\r\nC:\r\nCD C:\\My Work\\proj\r\n\r\n"
            "\"D:\\Program Files\\Quill\\VC9\\NMAKE\" \"my app.mak\" "
            "\"VCPATH=D:\\Program Files\\Quill\\VC9\"\r\n"
            "Del TargetList.mak\r\nDel TargetCompile.mak\r\n\r\n"
            "If not exist \"my app.exe\" goto Exit\r\nCls\r\n\"my app.exe\"\r\n:Exit\r\nPause\r\n");
  target->type = kTargetWindow;
  EXPECT_NE(Batch(target, true).find("If not exist \"my app.exe\" goto Exit\r\n\"my app.exe\"\r\n"),
            std::string::npos);
  SetTargetText(&target->includes, "C:/SDK/include\r\nsrc/my inc\r\n\"quoted dir\"");
  SetTargetText(&target->defines, "PATH_SEP=/");
  std::string text = Makefile(target);
  EXPECT_NE(text.find("ADD_C_OPT=/DPATH_SEP=/ /IC:\\SDK\\include /I\"src\\my inc\" "
                      "/I\"quoted dir\"\r\n"),
            std::string::npos)
      << text;
}
