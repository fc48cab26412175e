// quill-tool make from the outside: the files it writes for each mode, and its failures.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include "tests/support/tool_run.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

ToolRun ToolMerged(const std::string& arguments) {
  return RunTool(arguments, true);
}

// The folder of the tool, in the batch file's form.
std::string ToolFolder() {
  std::string folder = std::filesystem::canonical(QUILL_TOOL).parent_path().string();
  for (char& c : folder) {
    if (c == '/') c = '\\';
  }
  return folder;
}

class MakeTool : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::canonical(testing::TempDir()).string() + "/quill_make_tool";
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    std::ofstream(folder_ + "/p.prj", std::ios::binary)
        << "[Head]\r\nInfo=Quill Project File 1.00\r\n"
           "[Target00]\r\nInfo=\"my dll\" 1 3 1 0\r\nFile00=\"dll.cpp\"\r\nFile01=\"dll.h\"\r\n"
           "File02=\r\nLinkOption=/DEF:x.def\r\nCompiler=VC15\r\n"
           "[Target01]\r\nInfo=con 0 0 0 0\r\nFile00=main.c\r\nFile01=\r\nAddLib00=ws2_32.lib\r\n"
           "AddLib01=\r\n"
           "[Target02]\r\nInfo=\r\n";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }
  std::string In(const std::string& name) { return folder_ + "/" + name; }
  std::string Head(const std::string& makefile, const std::string& compiler) {
    std::string system = folder_;
    for (char& c : system) {
      if (c == '/') c = '\\';
    }
    std::string tools = ToolFolder() + "\\" + compiler;
    return "@Echo Off\r\n" + std::string(1, folder_[0]) + ":\r\nCD " + system + "\r\n\r\n" + tools +
           "\\NMAKE " + makefile + " VCPATH=" + tools +
           "\r\nDel TargetList.mak\r\nDel TargetCompile.mak\r\n\r\n";
  }
  std::string folder_;
};

TEST_F(MakeTool, WritesTheMakefileAndBatchOfEachMode) {
  ToolRun run = ToolMerged("make " + In("p.prj") + " 'my dll'");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, In("my dll.mak") + "\n" + In("C.BAT") + "\n");
  EXPECT_EQ(ReadFile(In("my dll.mak")),
            "O=OBJ\\my dll\r\nT=my dll.dll\r\nS=\\\r\n dll.cpp\\\r\n\r\n"
            "ADD_C_OPT=\r\nADD_RC_OPT=\r\nADD_LINK_OPT=/DEF:x.def\r\n\r\n"
            "!INCLUDE $(VCPATH)\\MakeDllX64.mak\r\n");
  EXPECT_EQ(ReadFile(In("C.BAT")), Head("\"my dll.mak\"", "VC15") + "Pause\r\n");

  // Build and run of a DLL only pauses too, and the old output goes first.
  std::ofstream(In("my dll.dll")) << "old";
  EXPECT_EQ(ToolMerged("make " + In("p.prj") + " 'my dll' --run").status, 0);
  EXPECT_EQ(ReadFile(In("C.BAT")), Head("\"my dll.mak\"", "VC15") + "Pause\r\n");
  EXPECT_FALSE(std::filesystem::exists(In("my dll.dll")));

  EXPECT_EQ(ToolMerged("make " + In("p.prj") + " con --run").status, 0);
  EXPECT_EQ(ReadFile(In("C.BAT")),
            Head("con.mak", "VC9") +
                "If not exist con.exe goto Exit\r\nCls\r\ncon.exe\r\n:Exit\r\nPause\r\n");
  EXPECT_EQ(ReadFile(In("con.mak")),
            "O=OBJ\\con\r\nT=con.exe\r\nS=\\\r\n main.c\\\r\n\r\n"
            "ADD_C_OPT=/DNODEFAULTLIB\r\nADD_RC_OPT=\r\nADD_LINK_OPT=/NODEFAULTLIB\r\n"
            "ADD_LIB=ws2_32.lib\r\n\r\n!INCLUDE $(VCPATH)\\Console.mak\r\n");
}

TEST_F(MakeTool, RebuildStartsFromAnEmptyObjectFolder) {
  std::filesystem::create_directories(In("OBJ/con"));
  std::ofstream(In("OBJ/con/main.obj")) << "obj";
  EXPECT_EQ(ToolMerged("make " + In("p.prj") + " con").status, 0);
  EXPECT_TRUE(std::filesystem::exists(In("OBJ/con/main.obj")));
  EXPECT_EQ(ToolMerged("make " + In("p.prj") + " con --rebuild").status, 0);
  EXPECT_FALSE(std::filesystem::exists(In("OBJ")));
  EXPECT_EQ(ReadFile(In("C.BAT")), Head("con.mak", "VC9") + "Pause\r\n");
}

TEST_F(MakeTool, ARelativeProjectPathIsTakenFromTheCurrentFolder) {
  std::string command = "cd " + folder_ + " && " + QUILL_TOOL + " make p.prj con 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  char buffer[512] = "";
  size_t n = fread(buffer, 1, sizeof buffer - 1, pipe);
  buffer[n] = '\0';
  EXPECT_EQ(pclose(pipe), 0);
  EXPECT_EQ(std::string(buffer), In("con.mak") + "\n" + In("C.BAT") + "\n");
}

TEST_F(MakeTool, FailuresSayWhyAndWriteNothing) {
  ToolRun run = ToolMerged("make " + In("p.prj") + " nosuch");
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.out.find("no target 'nosuch'"), std::string::npos);
  std::ofstream(In("bad.prj"), std::ios::binary) << "[Head]\r\nInfo=Some Other File 1.00\r\n";
  run = ToolMerged("make " + In("bad.prj") + " con");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out,
            "quill-tool: '" + In("bad.prj") + "'\n파일은 Quill 프로젝트 형식이 아닙니다.\n");
  EXPECT_EQ(ToolMerged("make " + In("none.prj") + " con").out,
            "quill-tool: '" + In("none.prj") + "' 파일이 열리지 않습니다.\n");
  std::filesystem::create_directories(In("con.exe/busy"));
  run = ToolMerged("make " + In("p.prj") + " con --run");
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "quill-tool: 먼저 'con.exe'을 종료하세요.\n");
  EXPECT_FALSE(std::filesystem::exists(In("con.mak")));
  EXPECT_FALSE(std::filesystem::exists(In("C.BAT")));
  EXPECT_EQ(ToolMerged("make " + In("p.prj")).status, 2);
  EXPECT_EQ(ToolMerged("make " + In("p.prj") + " con --clean").status, 2);
}

}  // namespace
