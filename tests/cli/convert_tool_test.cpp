// quill-tool convert from the outside: what opening and saving in the editor writes.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

class ConvertTool : public ::testing::Test {
 protected:
  void SetUp() override {
    in_ = testing::TempDir() + "quill_convert_in.txt";
    out_ = testing::TempDir() + "quill_convert_out.txt";
    std::remove(out_.c_str());
  }
  void TearDown() override {
    std::remove(in_.c_str());
    std::remove(out_.c_str());
  }
  void Input(const std::string& bytes) { std::ofstream(in_, std::ios::binary) << bytes; }
  std::string Output() const {
    std::ifstream file(out_, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  int Run(const std::string& options) { return RunTo(options, out_); }
  int RunTo(const std::string& options, const std::string& out) {
    std::string err = testing::TempDir() + "quill_convert_err.txt";
    std::string command = std::string(QUILL_TOOL) + " convert " + options + " " + in_ + " " + out +
                          " >/dev/null 2>" + err;
    int raw = system(command.c_str());
    std::ifstream file(err, std::ios::binary);
    errors_.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    std::remove(err.c_str());
    return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  }
  std::string in_;
  std::string out_;
  std::string errors_;
};

TEST_F(ConvertTool, WithoutOptionsItWritesWhatOpenAndSaveWrite) {
  Input("int a;   \r\n\tb;");
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Output(), "int a;\r\n\tb;\r\n");  // tab width 8 kept, blanks gone, last line end added
  Input("");
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Output(), "");
}

TEST_F(ConvertTool, TabWidthsOnBothSides) {
  Input("a\tb\n");
  EXPECT_EQ(Run("--tab 4"), 0);
  EXPECT_EQ(Output(), "a\tb\n");
  EXPECT_EQ(Run("--tab 4 --save-tab 0"), 0);
  EXPECT_EQ(Output(), "a   b\n");
  EXPECT_EQ(Run("--tab 4 --save-tab 2"), 0);
  EXPECT_EQ(Output(), "a \tb\n");  // the single space before a stop stays
  // Without tabs in the file no width is known and spaces stay spaces.
  Input("a       b\n");
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Output(), "a       b\n");
}

TEST_F(ConvertTool, EncodingsLineEndsAndMarks) {
  Input("\x88\x7d\x94\x61\r\n");  // Johab
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Output(), "\xb0\xb2\xb4\xd9\r\n");
  EXPECT_EQ(Run("--to UTF8 --bom --lf"), 0);
  EXPECT_EQ(Output(), "\xEF\xBB\xBF\xEA\xB0\x9B\xEB\x8B\xA4\n");
  EXPECT_EQ(Run("--to UTF16"), 0);
  EXPECT_EQ(Output(), std::string("\x1b\xac\xe4\xb2\r\0\n\0", 8));
  EXPECT_EQ(Run("--from EUCKR --to UTF8"), 0);  // read as EUC-KR instead: other characters
  EXPECT_NE(Output(), "\xEA\xB0\x9B\xEB\x8B\xA4\r\n");

  Input("\xEF\xBB\xBFx\n");
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Output(), "\xEF\xBB\xBFx\n");
  EXPECT_EQ(Run("--no-bom --crlf"), 0);
  EXPECT_EQ(Output(), "x\r\n");
}

// A surrogate pair keeps its four UTF-8 bytes and its two columns (the tab behind it still
// compresses), stays a pair in UTF-16, and is one unmappable character in EUC-KR and Johab.
TEST_F(ConvertTool, CharactersBeyondTheBasicPlane) {
  Input("\xF0\x9F\x98\x80\tb\n");
  EXPECT_EQ(Run("--tab 4"), 0);
  EXPECT_EQ(Output(), "\xF0\x9F\x98\x80\tb\n");
  EXPECT_EQ(Run("--tab 4 --to UTF16"), 0);
  EXPECT_EQ(Output(), std::string("\x3D\xD8\x00\xDE\t\0b\0\n\0", 10));
  EXPECT_EQ(Run("--tab 4 --to EUCKR"), 1);  // refused: one character cannot be written
  EXPECT_EQ(Run("--force --tab 4 --to EUCKR"), 0);
  EXPECT_EQ(Output(), "?\tb\n");
  EXPECT_EQ(Run("--force --tab 4 --to JOHAP"), 0);
  EXPECT_EQ(Output(), "\xD9\x31\tb\n");
  // Cut off at the end of the file: its bytes, one character each.
  Input("ok \xF0\x9F\x98");
  EXPECT_EQ(Run(""), 0);
  EXPECT_EQ(Output(), "ok \xC3\xB0\xC2\x9F\xC2\x98\r\n");
}

TEST_F(ConvertTool, FailuresAndUsage) {
  Input("x\n");
  EXPECT_EQ(Run("--to LATIN1"), 2);
  EXPECT_EQ(Run("--tab 1"), 2);
  EXPECT_EQ(Run("--frob"), 2);
  std::remove(in_.c_str());
  EXPECT_EQ(Run(""), 1);
  Input(std::string("\0\0\0x", 4) + std::string(5000, 'y'));  // not text: the question is cancelled
  EXPECT_EQ(Run(""), 1);
  EXPECT_EQ(Output(), "");
}

TEST_F(ConvertTool, CharactersTheTargetCannotHoldFailUnlessForced) {
  Input("a\xC3\xA9\n\xE4\xB8\x82\n");  // é and a hanja outside KS X 1001
  EXPECT_EQ(Run("--to EUCKR"), 1);
  EXPECT_NE(errors_.find("2 characters cannot be written in EUCKR, the first at line 1, column 2"),
            std::string::npos)
      << errors_;
  EXPECT_FALSE(std::ifstream(out_).good());
  EXPECT_EQ(Run("--to EUCKR --force"), 0);
  EXPECT_EQ(Output(), "a?\n?\n");
  EXPECT_EQ(Run("--force --to JOHAP"), 0);
  EXPECT_EQ(Output(), "a\xD9\x31\n\xD9\x31\n");
  EXPECT_EQ(Run("--to UTF16 --no-bom"), 0);
  EXPECT_EQ(Output(), std::string("a\0\xE9\0\n\0\x02\x4E\n\0", 10));
}

TEST_F(ConvertTool, AFullDeviceFailsAndStaysADevice) {
  // A node of its own: a tool that replaced it must not take the machine's device away.
  std::string folder = testing::TempDir() + "quill_convert_device";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder);
  std::string full = folder + "/full";
  if (mknod(full.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0) {
    std::filesystem::remove_all(folder);
    GTEST_SKIP() << "no permission to make device nodes";
  }
  Input("x\n");
  EXPECT_EQ(RunTo("", full), 1);
  EXPECT_NE(errors_.find("cannot write"), std::string::npos) << errors_;
  EXPECT_TRUE(std::filesystem::is_character_file(full));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder),
                          std::filesystem::directory_iterator()),
            1);
  std::filesystem::remove_all(folder);
}

}  // namespace
