#include "tools/bin2src.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "foundation/path.h"
#include "tests/support/klib_test.h"

namespace {

std::string TempPath(const std::string& name) {
  std::string path = testing::TempDir() + name;
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return path;
}

std::string Bytes(std::initializer_list<int> values) {
  std::string bytes;
  for (int value : values)
    bytes += static_cast<char>(value);
  return bytes;
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Records what the conversion shows and answers its question.
struct Recorder {
  std::vector<std::pair<int, std::string>> shown;
  bool answer = false;
  Bin2SrcHost Host() {
    return {this,
            [](void* self, int id, const char* text) {
              static_cast<Recorder*>(self)->shown.emplace_back(id, text);
            },
            [](void* self, int id, const char* text) {
              Recorder* recorder = static_cast<Recorder*>(self);
              recorder->shown.emplace_back(id, text);
              return recorder->answer;
            }};
  }
};

class Bin2SrcTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    input_ = TempPath("quill_b2s_data.bin");
    output_ = TempPath("quill_b2s_data.out");
    std::remove(output_.c_str());
    SetDefaultBin2SrcOptions(&options_);
    snprintf(options_.binFile, sizeof options_.binFile, "%s", input_.c_str());
  }
  void TearDown() override {
    std::remove(input_.c_str());
    std::remove(output_.c_str());
    KLibTest::TearDown();
  }
  // Converts `bytes` with the options as they stand (the format follows them unless set).
  std::string Convert(const std::string& bytes) {
    WriteFile(input_, bytes);
    std::remove(output_.c_str());
    RefreshBin2SrcFormat(&options_);
    EXPECT_TRUE(ConvertBin2Src(options_, output_.c_str(), recorder_.Host()));
    EXPECT_TRUE(recorder_.shown.empty());
    return ReadFile(output_);
  }
  void Set(int type, int dataExp, int dataSize, unsigned lineLen) {
    options_.type = type;
    options_.dataExp = dataExp;
    options_.dataSize = dataSize;
    options_.lineLen = lineLen;
    options_.dataForm[0] = '\0';
  }
  std::string input_;
  std::string output_;
  Bin2SrcOptions options_;
  Recorder recorder_;
};

TEST_F(Bin2SrcTest, CArrayOfBytesWithAShortLastLine) {
  Set(kBin2SrcC, kBin2SrcHex, 0, 2);
  EXPECT_EQ(Convert("ABCDE"),
            "static CONST BYTE quill_b2s_data[]=\r\n    {\r\n"
            "    0x41,0x42,\r\n    0x43,0x44,\r\n    0x45,\r\n    };\r\n");
}

TEST_F(Bin2SrcTest, ElementTypesOfTheHeader) {
  Set(kBin2SrcC, kBin2SrcSigned, 1, 16);
  EXPECT_EQ(Convert("\xFF\x80"),
            "static CONST short quill_b2s_data[]=\r\n    {\r\n    -32513,\r\n    };\r\n");
  Set(kBin2SrcC, kBin2SrcUnsigned, 2, 16);
  EXPECT_EQ(Convert("\xFF\xFF\xFF\xFF"),
            "static CONST DWORD quill_b2s_data[]=\r\n    {\r\n    4294967295,\r\n    };\r\n");
  Set(kBin2SrcJava, kBin2SrcSigned, 0, 4);
  EXPECT_EQ(Convert(std::string("\x01\x02\xFF\x80", 4)),
            "static final byte quill_b2s_data[]=\r\n    {\r\n    1,2,-1,-128,\r\n    };\r\n");
}

TEST_F(Bin2SrcTest, AssemblerHasNoHeaderAndNoCommaAtTheLineEnd) {
  Set(kBin2SrcAsm, kBin2SrcHex, 1, 4);
  EXPECT_EQ(Convert(std::string("\x01\x02\xFF\x80\x10", 5)),
            "\tdw\t0201h,80FFh\r\n\tdw\t0210h\r\n");
  Set(kBin2SrcAsm, kBin2SrcHex, 0, 3);
  EXPECT_EQ(Convert("abcd"), "\tdb\t61h,62h,63h\r\n\tdb\t64h\r\n");
  Set(kBin2SrcAsm, kBin2SrcSigned, 2, 16);
  EXPECT_EQ(Convert("\xFE\xFF\xFF\xFF"), "\tdd\t-2\r\n");
  EXPECT_EQ(Convert(""), "");
}

TEST_F(Bin2SrcTest, JavaCastsValuesBeyondTheSignedRange) {
  Set(kBin2SrcJava, kBin2SrcHex, 0, 16);
  EXPECT_EQ(Convert("\x7F\x80"),
            "static final byte quill_b2s_data[]=\r\n    {\r\n    0x7F,(byte)0x80,\r\n    };\r\n");
  Set(kBin2SrcJava, kBin2SrcHex, 1, 16);
  EXPECT_EQ(Convert(Bytes({0xFF, 0x7F, 0x00, 0x80})),
            "static final short quill_b2s_data[]=\r\n    {\r\n"
            "    0x7FFF,(short)0x8000,\r\n    };\r\n");
  Set(kBin2SrcJava, kBin2SrcHex, 2, 16);
  EXPECT_EQ(Convert(Bytes({0xFF, 0xFF, 0xFF, 0x7F, 0x00, 0x00, 0x00, 0x80})),
            "static final int quill_b2s_data[]=\r\n    {\r\n"
            "    0x7FFFFFFF,(int)0x80000000,\r\n    };\r\n");
  // Signed numbers are already in range.
  Set(kBin2SrcJava, kBin2SrcSigned, 1, 16);
  EXPECT_EQ(Convert(Bytes({0x00, 0x80})),
            "static final short quill_b2s_data[]=\r\n    {\r\n    -32768,\r\n    };\r\n");
}

TEST_F(Bin2SrcTest, SwappedElementsAreExtendedAfterTheSwap) {
  options_.endian = 1;
  Set(kBin2SrcAsm, kBin2SrcHex, 1, 16);
  EXPECT_EQ(Convert(Bytes({0x01, 0x02})), "\tdw\t0102h\r\n");
  Set(kBin2SrcAsm, kBin2SrcHex, 2, 16);
  EXPECT_EQ(Convert(Bytes({0x01, 0x02, 0x03, 0x04})), "\tdd\t01020304h\r\n");
  Set(kBin2SrcAsm, kBin2SrcSigned, 1, 16);
  EXPECT_EQ(Convert(Bytes({0xFF, 0x80})), "\tdw\t-128\r\n");
  Set(kBin2SrcAsm, kBin2SrcHex, 0, 16);  // bytes have no order to swap
  EXPECT_EQ(Convert(Bytes({0xAB, 0xCD})), "\tdb\tABh,CDh\r\n");
}

TEST_F(Bin2SrcTest, AnOddLastElementTakesItsByteFromThePreviousChunk) {
  Set(kBin2SrcAsm, kBin2SrcHex, 1, 4);
  EXPECT_EQ(Convert(Bytes({0x11, 0x22, 0x33, 0x44, 0x55})), "\tdw\t2211h,4433h\r\n\tdw\t2255h\r\n");
  Set(kBin2SrcAsm, kBin2SrcHex, 2, 4);
  EXPECT_EQ(Convert(Bytes({0x11, 0x22, 0x33, 0x44, 0x55, 0x66})),
            "\tdd\t44332211h\r\n\tdd\t44336655h\r\n");
  // Before the first chunk there is nothing to take; a line length that is no multiple of the
  // size reads past the chunk into bytes that are never filled.
  Set(kBin2SrcAsm, kBin2SrcHex, 1, 3);
  EXPECT_EQ(Convert(Bytes({0x11, 0x22, 0x33})), "\tdw\t2211h,0033h\r\n");
  Set(kBin2SrcAsm, kBin2SrcHex, 1, 16);
  EXPECT_EQ(Convert(Bytes({0x77})), "\tdw\t0077h\r\n");
}

TEST_F(Bin2SrcTest, EmptyFilesAndZeroLineLength) {
  Set(kBin2SrcC, kBin2SrcHex, 0, 16);
  const char kEmptyC[] = "static CONST BYTE quill_b2s_data[]=\r\n    {\r\n    };\r\n";
  EXPECT_EQ(Convert(""), kEmptyC);
  Set(kBin2SrcJava, kBin2SrcHex, 2, 16);
  EXPECT_EQ(Convert(""), "static final int quill_b2s_data[]=\r\n    {\r\n    };\r\n");
  Set(kBin2SrcC, kBin2SrcHex, 0, 0);
  EXPECT_EQ(Convert("abc"), kEmptyC);
}

TEST_F(Bin2SrcTest, ALineLengthBeyondTheLimitIsToldToTheUser) {
  Set(kBin2SrcC, kBin2SrcHex, 0, kBin2SrcMaxLineLen + 1);
  snprintf(options_.binFile, sizeof options_.binFile, "%s", input_.c_str());
  WriteFile(input_, "A");
  EXPECT_FALSE(ConvertBin2Src(options_, output_.c_str(), recorder_.Host()));
  ASSERT_EQ(recorder_.shown.size(), 1u);
  EXPECT_EQ(recorder_.shown[0].first, 172);
  EXPECT_EQ(recorder_.shown[0].second, "한 줄 바이트 수는 1048576 이하여야 합니다.");
}

TEST_F(Bin2SrcTest, SkipCountIsACIntegerAndANegativeOneIsRefusedBySeek) {
  std::string bytes;
  for (int i = 0; i < 20; ++i)
    bytes += static_cast<char>(i);
  Set(kBin2SrcAsm, kBin2SrcHex, 0, 16);
  strcpy(options_.skipBytes, "0x10");
  EXPECT_EQ(Convert(bytes), "\tdb\t10h,11h,12h,13h\r\n");
  strcpy(options_.skipBytes, "021");
  EXPECT_EQ(Convert(bytes), "\tdb\t11h,12h,13h\r\n");
  strcpy(options_.skipBytes, "  19 bytes");
  EXPECT_EQ(Convert(bytes), "\tdb\t13h\r\n");
  strcpy(options_.skipBytes, "-1");
  EXPECT_EQ(Convert(bytes.substr(0, 3)), "\tdb\t00h,01h,02h\r\n");
  strcpy(options_.skipBytes, "100");
  EXPECT_EQ(Convert(bytes), "");
}

TEST_F(Bin2SrcTest, TheArrayIsNamedAfterTheFileUpToItsFirstDot) {
  std::string input = TempPath("quill_b2s.x.y.bin");
  snprintf(options_.binFile, sizeof options_.binFile, "%s", input.c_str());
  WriteFile(input, "A");
  EXPECT_TRUE(ConvertBin2Src(options_, output_.c_str(), recorder_.Host()));
  std::remove(input.c_str());
  EXPECT_EQ(ReadFile(output_),
            "static CONST BYTE quill_b2s[]=\r\n    {\r\n    0x41,\r\n    };\r\n");
}

TEST_F(Bin2SrcTest, ElementFormatsOfTheUser) {
  Set(kBin2SrcC, kBin2SrcSigned, 0, 16);
  strcpy(options_.dataForm, "%d=%X ");
  EXPECT_EQ(Convert("\xFF"),
            "static CONST char quill_b2s_data[]=\r\n    {\r\n    -1=FFFFFFFF ,\r\n"
            "    };\r\n");
  Set(kBin2SrcAsm, kBin2SrcHex, 0, 16);
  strcpy(options_.dataForm, "%%%#x");
  EXPECT_EQ(Convert("\x0A"), "\tdb\t%0xa\r\n");
}

TEST_F(Bin2SrcTest, ExistingOutputIsOverwrittenOnlyOnYes) {
  WriteFile(input_, "A");
  WriteFile(output_, "keep");
  recorder_.answer = false;
  EXPECT_FALSE(ConvertBin2Src(options_, output_.c_str(), recorder_.Host()));
  EXPECT_EQ(ReadFile(output_), "keep");
  ASSERT_EQ(recorder_.shown.size(), 1u);
  EXPECT_EQ(recorder_.shown[0].first, 116);
  EXPECT_EQ(recorder_.shown[0].second, "'" + output_ + "' 파일이 이미 있습니다.\n\n덮어 쓸까요?");
  recorder_.answer = true;
  EXPECT_TRUE(ConvertBin2Src(options_, output_.c_str(), recorder_.Host()));
  EXPECT_EQ(ReadFile(output_).substr(0, 6), "static");
}

TEST_F(Bin2SrcTest, FilesThatCannotBeOpenedOrCreated) {
  std::string missing = TempPath("quill_b2s_missing.bin");
  snprintf(options_.binFile, sizeof options_.binFile, "%s", missing.c_str());
  EXPECT_FALSE(ConvertBin2Src(options_, output_.c_str(), recorder_.Host()));
  ASSERT_EQ(recorder_.shown.size(), 1u);
  EXPECT_EQ(recorder_.shown[0].first, 2);
  EXPECT_EQ(recorder_.shown[0].second, "'" + missing + "' 파일이 열리지 않습니다.");

  recorder_.shown.clear();
  snprintf(options_.binFile, sizeof options_.binFile, "%s", input_.c_str());
  WriteFile(input_, "A");
  std::string unwritable = TempPath("quill_no_such_folder/out.c");
  EXPECT_FALSE(ConvertBin2Src(options_, unwritable.c_str(), recorder_.Host()));
  ASSERT_EQ(recorder_.shown.size(), 1u);
  EXPECT_EQ(recorder_.shown[0].first, 3);
  EXPECT_EQ(recorder_.shown[0].second, "'" + unwritable + "' 파일이 만들어지지 않습니다.");
}

#ifndef _WIN32
TEST_F(Bin2SrcTest, AWriteErrorShowsItsMessage) {
  recorder_.answer = true;
  snprintf(options_.binFile, sizeof options_.binFile, "%s", input_.c_str());
  WriteFile(input_, "A");
  EXPECT_FALSE(ConvertBin2Src(options_, "/dev/full", recorder_.Host()));
  ASSERT_EQ(recorder_.shown.size(), 2u);  // the question, then the failure
  EXPECT_EQ(recorder_.shown[1].first, 5);
  EXPECT_EQ(recorder_.shown[1].second, "'/dev/full' 파일이 기록되지 않습니다.");
}
#endif

TEST_F(Bin2SrcTest, OkNamesTheOutputAfterTheLanguage) {
  WriteFile(input_, "A");
  options_.dataForm[0] = '\0';
  options_.type = kBin2SrcAsm;
  EXPECT_EQ(RunBin2Src(&options_, recorder_.Host()), Bin2SrcResult::kDone);
  std::string asmPath = TempPath("quill_b2s_data.asm");
  EXPECT_STREQ(options_.saveFile, asmPath.c_str());
  EXPECT_STREQ(options_.dataForm, "%02Xh");
  EXPECT_EQ(ReadFile(asmPath), "\tdb\t41h\r\n");
  std::remove(asmPath.c_str());

  options_.type = kBin2SrcJava;
  snprintf(options_.saveFile, sizeof options_.saveFile, "%s", output_.c_str());
  EXPECT_EQ(RunBin2Src(&options_, recorder_.Host()), Bin2SrcResult::kDone);
  std::string javaPath = TempPath("quill_b2s_data.java");
  EXPECT_STREQ(options_.saveFile, javaPath.c_str());
  std::remove(javaPath.c_str());

  options_.binFile[0] = '\0';
  EXPECT_EQ(RunBin2Src(&options_, recorder_.Host()), Bin2SrcResult::kNoBinaryFile);
  EXPECT_TRUE(recorder_.shown.empty());
}

TEST_F(Bin2SrcTest, OkRefusesAFormatThatIsNotANumber) {
  WriteFile(input_, "A");
  strcpy(options_.dataForm, "%s");
  EXPECT_EQ(RunBin2Src(&options_, recorder_.Host()), Bin2SrcResult::kNoFormat);
  ASSERT_EQ(recorder_.shown.size(), 1u);
  EXPECT_EQ(recorder_.shown[0].first, 125);
  EXPECT_EQ(recorder_.shown[0].second, "%d, %u, %X 같은 데이터 형식을 넣어야 합니다.");
}

TEST(Bin2SrcFormat, DefaultsByLanguageFormAndSize) {
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcC, kBin2SrcHex, 0), "0x%02X");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcJava, kBin2SrcHex, 1), "0x%04X");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcC, kBin2SrcHex, 2), "0x%08X");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcAsm, kBin2SrcHex, 0), "%02Xh");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcAsm, kBin2SrcHex, 1), "%04Xh");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcAsm, kBin2SrcHex, 2), "%08Xh");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcAsm, kBin2SrcSigned, 2), "%d");
  EXPECT_STREQ(DefaultBin2SrcFormat(kBin2SrcC, kBin2SrcUnsigned, 1), "%u");
}

TEST(Bin2SrcFormat, OnlyNumberConversionsAreUsable) {
  for (const char* format : {"0x%02X", "%d", "%,u", "%#x", "%%s", "%q", "%c", "[%d|%X]", "x%"})
    EXPECT_TRUE(IsUsableBin2SrcFormat(format)) << format;
  // A string conversion would take the number for a pointer; "%-%s" reads "%s" again.
  for (const char* format : {"", "%s", "%ws", "%U8s", "%-%s", "%I64d", "%lld", "%d%d%d%d%d"})
    EXPECT_FALSE(IsUsableBin2SrcFormat(format)) << format;
}

TEST(Bin2SrcFormat, ExtensionReplacesTheLastOneOfTheName) {
  char path[kPathSize];
  strcpy(path, "dir.v2/data.bin");
  ASSERT_TRUE(SetBin2SrcExtension(path, sizeof path, kBin2SrcC));
  EXPECT_STREQ(path, "dir.v2/data.c");
  strcpy(path, "dir.v2/data");
  ASSERT_TRUE(SetBin2SrcExtension(path, sizeof path, kBin2SrcJava));
  EXPECT_STREQ(path, "dir.v2/data.java");
  strcpy(path, "a.tar.gz");
  ASSERT_TRUE(SetBin2SrcExtension(path, sizeof path, kBin2SrcAsm));
  EXPECT_STREQ(path, "a.tar.asm");
  strcpy(path, "abcdef");
  EXPECT_FALSE(SetBin2SrcExtension(path, 8, kBin2SrcC));
  EXPECT_STREQ(path, "abcdef");
  ASSERT_TRUE(SetBin2SrcExtension(path, 9, kBin2SrcC));
  EXPECT_STREQ(path, "abcdef.c");
}

}  // namespace
