// Archive member names, the DOS date form, and an archive that cannot be written. The archives
// themselves are checked against unzip and Python by the quill-tool tests.
#include "tools/zip_archive.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "foundation/fileutil.h"
#include "tests/support/klib_test.h"
#include "tools/project_zip.h"

namespace {

class ZipArchiveTest : public KLibTest {};

TEST_F(ZipArchiveTest, MemberNamesAreRelativeOrUnderTheirDrive) {
  struct Case {
    const char* folder;
    const char* path;
    const char* name;  // null: no name
  } cases[] = {
      {"C:/work/p", "main.c", "main.c"},
      {"C:/work/p", "./src/../src/a.c", "src/a.c"},
      {"C:/work/p", "c:/WORK/P/inc/b.h", "inc/b.h"},  // the system's case rule
      {"C:/work/p", "../lib/x.c", "C/work/lib/x.c"},
      {"C:/work/p", "D:/x/y.c", "D/x/y.c"},
      {"C:/work/p", "C:/work/pp/z.c", "C/work/pp/z.c"},  // a longer folder name is not inside
      {"C:/work/p", "//srv/share/a.c", "UNC/srv/share/a.c"},
      {"/home/u/p", "/usr/include/stdio.h", "ROOT/usr/include/stdio.h"},
      {"/home/u/p", "src/문서.cpp", "src/문서.cpp"},
      {"", "a.c", "a.c"},
      {"", "../../a.c", "a.c"},
      {"C:/work/p", "..", "C/work"},
      {"C:/work/p", ".", nullptr},
      {"C:/work/p", "", nullptr},
  };
  for (const Case& c : cases) {
    char name[kPathSize] = "unchanged";
    bool ok = ArchiveMemberName(c.folder, c.path, name, sizeof name);
    EXPECT_EQ(ok, c.name != nullptr) << c.folder << " " << c.path;
    if (ok && c.name) EXPECT_STREQ(name, c.name) << c.folder << " " << c.path;
  }
  char small[8];
  EXPECT_FALSE(ArchiveMemberName("C:/p", "long_name.c", small, sizeof small));

  struct Archive {
    const char* project;
    const char* archive;
  } archives[] = {
      {"C:/w/demo.prj", "C:/w/demo.zip"},
      {"C:/w.d/demo", "C:/w.d/demo.zip"},
      {"C:/w/.prj", "C:/w/.zip"},
  };
  for (const Archive& a : archives) {
    char archive[kPathSize];
    ASSERT_TRUE(ProjectArchivePath(a.project, archive, sizeof archive));
    EXPECT_STREQ(archive, a.archive);
  }
}

TEST_F(ZipArchiveTest, DosDateAndTime) {
  struct Case {
    OsDateTime time;
    uint16_t date, clock;
  } cases[] = {
      {{1980, 1, 1, 0, 0, 0}, 0x0021, 0},
      {{2024, 2, 29, 23, 59, 59}, (44 << 9) | (2 << 5) | 29, (23 << 11) | (59 << 5) | 29},
      {{1979, 12, 31, 23, 59, 58}, 0x0021, 0},  // before the format's epoch
      {{2107, 12, 31, 0, 0, 2}, (127 << 9) | (12 << 5) | 31, 1},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(DosDate(c.time), c.date) << c.time.year;
    EXPECT_EQ(DosTime(c.time), c.clock) << c.time.year;
  }
}

TEST_F(ZipArchiveTest, AnArchiveThatCannotBeWrittenLeavesNothing) {
  std::string folder = testing::TempDir();
  for (char& c : folder) {
    if (c == '\\') c = '/';
  }
  ZipWriter zip;
  EXPECT_EQ(ZipBegin(&zip, (folder + "no_such_folder/a.zip").c_str()), kZipWriteFailed);
  EXPECT_NE(zip.error, 0u);

  // A read-only archive keeps its bytes.
  std::string locked = folder + "quill_zip_read_only.zip";
  FileSetAttributes(locked.c_str(), kAttrNormal);
  std::ofstream(locked, std::ios::binary) << "old";
  ASSERT_TRUE(FileSetAttributes(locked.c_str(), kAttrReadOnly));
  EXPECT_EQ(ZipBegin(&zip, locked.c_str()), kZipWriteFailed);
  EXPECT_EQ(zip.error, kErrorAccessDenied);
  FileSetAttributes(locked.c_str(), kAttrNormal);
  std::ifstream in(locked, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "old");
  FileDelete(locked.c_str());

  // An archive given up half-way leaves no file and no temporary behind.
  std::string dropped = folder + "quill_zip_dropped.zip";
  ASSERT_EQ(ZipBegin(&zip, dropped.c_str()), kZipOk);
  const uint8_t data[] = "abcabcabc";
  EXPECT_EQ(ZipAddMember(&zip, "a.txt", data, sizeof data, {2020, 1, 1, 0, 0, 0}, nullptr), kZipOk);
  ZipAbandon(&zip);
  EXPECT_EQ(FileGetAttributes(dropped.c_str()), kNoAttributes);
  FindData found;
  FileHandle search = FileFindFirst((folder + "quill_zip_dropped*").c_str(), &found);
  EXPECT_EQ(search, kInvalidFile);
  if (search != kInvalidFile) FileFindClose(search);
}

}  // namespace
