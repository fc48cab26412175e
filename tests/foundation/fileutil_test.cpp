#include "foundation/fileutil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/time.h>
#endif

#include "tests/support/klib_test.h"

namespace {

std::string TempPath(const std::string& name) {
  std::string path = testing::TempDir() + name;
  std::replace(path.begin(), path.end(), '\\', '/');
  return path;
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

// Sets a file's last-write time to a number of seconds after 1970 (UTC).
void SetWriteTime(const std::string& path, long long seconds) {
#ifdef _WIN32
  HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  unsigned long long ticks =
      (static_cast<unsigned long long>(seconds) + 11644473600ull) * 10000000ull;
  FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
  SetFileTime(file, nullptr, nullptr, &time);
  CloseHandle(file);
#else
  struct timeval times[2] = {{seconds, 0}, {seconds, 0}};
  utimes(path.c_str(), times);
#endif
}

using FileUtilTest = KLibTest;

TEST_F(FileUtilTest, CopyMoveAndDeleteLeaveTheSystemsErrorCodes) {
  std::string a = TempPath("quill_fu_a.txt"), b = TempPath("quill_fu_b.txt");
  std::string c = TempPath("quill_fu_c.txt");
  FileDelete(a.c_str()), FileDelete(b.c_str()), FileDelete(c.c_str());
  WriteFile(a, "alpha");
  WriteFile(b, "beta");
  EXPECT_FALSE(FileCopy(a.c_str(), b.c_str(), true));
  EXPECT_EQ(FileLastError(), static_cast<unsigned>(kErrorFileExists));
  EXPECT_TRUE(FileCopy(a.c_str(), b.c_str(), false));
  EXPECT_TRUE(FileMove(b.c_str(), c.c_str()));
  EXPECT_FALSE(IsPlainFile(b.c_str()));
  size_t length = 0;
  char* text = ReadWholeFile(c.c_str(), &length, 1);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(length, 5u);
  EXPECT_STREQ(text, "alpha");  // the extra zero byte ends it
  FreeMem(text);
  EXPECT_TRUE(FileDelete(a.c_str()));
  EXPECT_TRUE(FileDelete(c.c_str()));
  EXPECT_FALSE(FileDelete(c.c_str()));
  EXPECT_EQ(FileLastError(), static_cast<unsigned>(kErrorFileNotFound));
  EXPECT_EQ(ReadWholeFile(c.c_str(), &length, 1), nullptr);
}

TEST_F(FileUtilTest, AttributesFoldersAndSearches) {
  std::string folder = TempPath("quill_fu_folder");
  for (const char* name : {"/a.LNG", "/b.lng", "/c.txt"})
    FileDelete((folder + name).c_str());
  FolderRemove((folder + "/sub").c_str());
  FolderRemove(folder.c_str());
  EXPECT_EQ(FileGetAttributes(folder.c_str()), kNoAttributes);
  ASSERT_TRUE(FolderCreate(folder.c_str()));
  EXPECT_FALSE(FolderCreate(folder.c_str()));
  EXPECT_EQ(FileLastError(), static_cast<unsigned>(kErrorAlreadyExists));
  EXPECT_TRUE(FileGetAttributes(folder.c_str()) & kAttrDirectory);
  EXPECT_FALSE(IsPlainFile(folder.c_str()));
  for (const char* name : {"/a.LNG", "/b.lng", "/c.txt"})
    WriteFile(folder + name, name);
  ASSERT_TRUE(FolderCreate((folder + "/sub").c_str()));
  EXPECT_TRUE(IsPlainFile((folder + "/c.txt").c_str()));

  std::vector<std::string> names;
  FindData found;
  FileHandle search = FileFindFirst((folder + "/*.LNG").c_str(), &found);
  ASSERT_NE(search, kInvalidFile);
  do {
    names.push_back(found.name);
    EXPECT_EQ(found.size, 6u);
  } while (FileFindNext(search, &found));
  FileFindClose(search);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a.LNG", "b.lng"}));
  EXPECT_EQ(FileFindFirst((folder + "/*.none").c_str(), &found), kInvalidFile);

  std::string file = folder + "/c.txt";
  ASSERT_TRUE(FileSetAttributes(file.c_str(), kAttrReadOnly));
  EXPECT_TRUE(FileGetAttributes(file.c_str()) & kAttrReadOnly);
  ASSERT_TRUE(FileSetAttributes(file.c_str(), kAttrNormal));
  EXPECT_FALSE(FileGetAttributes(file.c_str()) & kAttrReadOnly);

  EXPECT_FALSE(FolderRemove(folder.c_str()));  // not empty
  for (const char* name : {"/a.LNG", "/b.lng", "/c.txt"})
    FileDelete((folder + name).c_str());
  EXPECT_TRUE(FolderRemove((folder + "/sub").c_str()));
  EXPECT_TRUE(FolderRemove(folder.c_str()));
}

TEST_F(FileUtilTest, HandlesReadWriteSeekAndStamp) {
  std::string path = TempPath("quill_fu_handle.bin");
  FileHandle file = FileOpen(path.c_str(), kFileRead | kFileWrite, 0, kCreateAlways, 0);
  ASSERT_NE(file, kInvalidFile);
  unsigned done = 0;
  EXPECT_TRUE(FileWrite(file, "0123456789", 10, &done));
  EXPECT_EQ(done, 10u);
  EXPECT_EQ(FileGetSize(file), 10u);
  uint64_t position = 0;
  EXPECT_TRUE(FileSeek(file, -4, kSeekEnd, &position));
  EXPECT_EQ(position, 6u);
  char buffer[8] = {};
  EXPECT_TRUE(FileRead(file, buffer, 8, &done));
  EXPECT_EQ(done, 4u);
  EXPECT_STREQ(buffer, "6789");
  FileClose(file);
  EXPECT_EQ(FileOpen(path.c_str(), kFileWrite, 0, kCreateNew, 0), kInvalidFile);
  EXPECT_EQ(FileLastError(), static_cast<unsigned>(kErrorFileExists));

  // 2000-01-01 00:00:10 UTC.
  SetWriteTime(path, 946684810);
  file = FileOpen(path.c_str(), kFileRead, kShareRead, kOpenExisting, 0);
  EXPECT_EQ(FileStamp(file), 10u);
  FileClose(file);
  EXPECT_EQ(StampFromFileTime(125911584000000000ull + 10000000ull * 3600), 3600u);
  FileDelete(path.c_str());
}

#ifdef _WIN32
const char kExit3[] = "cmd /c exit 3";
const char kExit4SlashedProgram[] = "C:/windows/system32/cmd.exe /c exit 4";
// Starting a program takes the command interpreter far longer than no time at all.
const char kSlowProgram[] = "cmd /c exit 3";
#else
const char kExit3[] = "exit 3";
const char kExit4SlashedProgram[] = "/bin/sh -c 'exit 4'";
// A shell can start and exit before a time-out of 0 is looked at: this one stays a while.
const char kSlowProgram[] = "sleep 2";
#endif

TEST_F(FileUtilTest, ProgramsAreStartedAndWaitedFor) {
  EXPECT_EQ(StartProgramAndWait(kExit3, 0, 20000), 3);
  EXPECT_EQ(StartProgramAndWait(kExit4SlashedProgram, 0, 20000), 4);
  // A program that has not ended within the time-out gives -1.
  EXPECT_EQ(StartProgramAndWait(kSlowProgram, 0, 0), -1);
  EXPECT_NE(StartProgramAndWait("/no/such/program/anywhere.exe", 0, 5000), 0);
}

#ifdef _WIN32
TEST_F(FileUtilTest, PathsLongerThanTheBufferFailWithNotEnoughMemory) {
  std::string longPath = TempPath(std::string(300, 'x'));
  EXPECT_FALSE(FileDelete(longPath.c_str()));
  EXPECT_EQ(FileLastError(), static_cast<unsigned>(kErrorNotEnoughMemory));
}
#endif

}  // namespace
