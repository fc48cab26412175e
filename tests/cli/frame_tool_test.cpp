// quill-tool frame from the outside: the rules the frame window applies.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

struct FrameRun {
  std::string out;
  int status;
};

FrameRun Tool(const std::string& arguments) {
  std::string command = std::string(QUILL_TOOL) + " frame " + arguments + " 2>/dev/null";
  FILE* pipe = popen(command.c_str(), "r");
  FrameRun run{{}, -1};
  if (!pipe) return run;
  char buffer[256];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0)
    run.out.append(buffer, n);
  int raw = pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return run;
}

TEST(FrameTool, CommandLineAndStatusTexts) {
  EXPECT_EQ(Tool("cmdline '\"C:\\Quill\\Quill.exe\" \"C:\\my src\\a.c\" more'").out,
            "C:/my src/a.c\r\ndocument\r\n");
  EXPECT_EQ(Tool("cmdline 'Quill.exe D:\\W\\GAME.PRJ'").out, "D:/W/GAME.PRJ\r\nproject\r\n");
  EXPECT_EQ(Tool("cmdline 'Quill.exe'").out, "\r\nnone\r\n");
  EXPECT_EQ(Tool("status 0 9 --modified").out, "\tCol 1, Ln 10\r\n\tModified\r\n");
  EXPECT_EQ(Tool("status 4 0").out, "\tCol 5, Ln 1\r\n\r\n");
  EXPECT_EQ(Tool("status x 0").status, 2);
  EXPECT_EQ(Tool("format UTF16 --bom").out, "\tUTF-16 BOM  CRLF\r\n");
  EXPECT_EQ(Tool("format EUCKR --lf").out, "\tEUC-KR  LF\r\n");
  EXPECT_EQ(Tool("format UTF-8").status, 2);
  EXPECT_EQ(Tool("").status, 2);
}

TEST(FrameTool, MenuStateAndCommandTable) {
  FrameRun run = Tool("menu 1 1 0");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out.substr(0, 22), "82 enabled\r\n83 enabled");
  EXPECT_EQ(run.out.find("121"), std::string::npos);
  EXPECT_NE(Tool("menu 2 0 1").out.find("bar:6 enabled\r\n"), std::string::npos);
  EXPECT_EQ(Tool("menu 3 0 0").status, 2);
  EXPECT_EQ(Tool("command 46").out, "frame\r\n");
  EXPECT_EQ(Tool("command 25").out, "frame\r\n");
  EXPECT_EQ(Tool("command 9999").out, "unfinished\r\nI have not finished it yet.\r\n");
  EXPECT_EQ(Tool("command 107").out, "forward\r\n");
  EXPECT_EQ(Tool("command 27").out, "frame\r\n");
  EXPECT_EQ(Tool("command 118").out, "project\r\n");
  EXPECT_EQ(Tool("command 10003").out, "window-list\r\n");
}

TEST(FrameTool, KeptDocumentListAndBitmapFont) {
  std::string ini = testing::TempDir() + "frame_tool_session.ini";
  std::ofstream(ini, std::ios::binary)
      << "[DocList]\r\n0=\"c:/a b.c\" 1 2 300 200 3\r\n1=broken\r\n2=\"d.h\" 0 0 1 1 1\r\n3=\r\n"
         "4=\"never.c\" 0 0 1 1 1\r\nProject=\r\n";
  EXPECT_EQ(Tool(ini).status, 2);
  FrameRun run = Tool("session " + ini);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "0: c:/a b.c 1 2 300 200 3\r\n1: (skipped)\r\n2: d.h 0 0 1 1 1\r\n");
  EXPECT_EQ(Tool("session /nonexistent/quill.ini").status, 1);
  std::remove(ini.c_str());

  std::string font = testing::TempDir() + "frame_tool_font.fnt";
  std::string data(24 + 256 * 16 * 1 + 3 * 16 * 2, '\0');
  data[18] = 16;
  data[20] = 16;
  std::ofstream(font, std::ios::binary) << data;
  EXPECT_EQ(Tool("font " + font).out, "cell 8 16\r\nglyphs 256 3\r\n");
  std::ofstream(font, std::ios::binary) << "tiny";
  EXPECT_EQ(Tool("font " + font).status, 1);
  std::remove(font.c_str());
}

}  // namespace
