#include "project/project_file.h"

#include <algorithm>
#include <cstring>

#include "foundation/path.h"
#include "foundation/settings.h"
#include "project/project.h"
#include "tests/project/project_fixture.h"

namespace {

// The file's non-empty lines without their line ends: sections and "key=value" in file order.
std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  while (start < text.size()) {
    size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!line.empty()) lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

class ProjectFileTest : public ProjectTest {
 protected:
  // A target with a name holding a blank and Hangul, files, and every text field.
  ProjectTarget* AddFullTarget() {
    ProjectTarget* target = AddTarget("내 app", kTargetDialog);
    target->platform = kPlatform64;
    target->useDefaultLib = 0;
    target->useKLib = 1;
    AppendTargetFile(target, "main.cpp");
    AppendTargetFile(target, "sub dir/한글.c");
    SetTargetText(&target->makeStart, "A=1\r\n\r\n   \r\nB=2  ");
    SetTargetText(&target->addCompile, "extra/x.cpp");
    SetTargetText(&target->libraries, "user32.lib\r\ngdi32.lib\r\n");
    SetTargetText(&target->defines, "\r\nDEBUG\r\n\r\nVER=2");
    SetTargetText(&target->includes, "inc");
    SetTargetText(&target->cOption, "/O2 /W3");
    SetTargetText(&target->rcOption, "/l 0x412");
    SetTargetText(&target->linkOption, "/MAP");
    strcpy(target->compiler, "VC15");
    return target;
  }
};

TEST_F(ProjectFileTest, SavesSectionsAndKeysInOrderWithoutGapsInTheNumbering) {
  AddFullTarget();
  AddTarget("second", kTargetConsole);
  project_.modified = true;
  ASSERT_TRUE(SaveProject(&project_));
  EXPECT_FALSE(project_.modified);
  EXPECT_TRUE(asked_.empty());
  const std::vector<std::string> expected = {
      "[Head]",
      "Info=Quill Project File 1.00",
      "[Target00]",
      Sys("Info=\"내 app\" 1 2 0 1"),
      "File00=\"main.cpp\"",
      Sys("File01=\"sub dir/한글.c\""),
      "File02=",
      // Blank lines (and lines of blanks) are skipped, trailing blanks cut.
      "MakeStart00=A=1",
      "MakeStart01=B=2",
      "MakeStart02=",
      "AddCompile00=extra/x.cpp",
      "AddCompile01=",
      "AddLib00=user32.lib",
      "AddLib01=gdi32.lib",
      "AddLib02=",
      "Define00=DEBUG",
      "Define01=VER=2",
      "Define02=",
      "Include00=inc",
      "Include01=",
      "COption=/O2 /W3",
      "RCOption=/l 0x412",
      "AsmOption=",
      "LinkOption=/MAP",
      "Compiler=VC15",
      "[Target01]",
      "Info=\"second\" 0 0 1 0",
      "File00=",
      "MakeStart00=",
      "AddCompile00=",
      "AddLib00=",
      "Define00=",
      "Include00=",
      "COption=",
      "RCOption=",
      "AsmOption=",
      "LinkOption=",
      "Compiler=VC9",
      "[Target02]",
      "Info=",
  };
  EXPECT_EQ(Lines(ReadFileBytes(project_.path)), expected);
}

TEST_F(ProjectFileTest, LoadsWhatWasSaved) {
  AddFullTarget();
  ASSERT_TRUE(SaveProject(&project_));
  std::string path = project_.path;
  Project loaded{};
  loaded.modified = true;
  ASSERT_TRUE(LoadProject(&loaded, path.c_str()));
  EXPECT_FALSE(loaded.modified);
  EXPECT_EQ(loads_, 1);
  EXPECT_STREQ(loaded.path, path.c_str());
  ASSERT_EQ(CountTargets(&loaded), 1);
  const ProjectTarget* target = loaded.targets;
  EXPECT_STREQ(target->name, "내 app");
  EXPECT_EQ(target->platform, kPlatform64);
  EXPECT_EQ(target->type, kTargetDialog);
  EXPECT_EQ(target->useDefaultLib, 0);
  EXPECT_EQ(target->useKLib, 1);
  ASSERT_EQ(CountTargetFiles(target), 2);
  EXPECT_STREQ(target->files->path, "main.cpp");
  EXPECT_STREQ(target->files->next->path, "sub dir/한글.c");
  EXPECT_STREQ(target->makeStart, "A=1\r\nB=2");
  EXPECT_STREQ(target->addCompile, "extra/x.cpp");
  EXPECT_STREQ(target->libraries, "user32.lib\r\ngdi32.lib");
  EXPECT_STREQ(target->defines, "DEBUG\r\nVER=2");
  EXPECT_STREQ(target->includes, "inc");
  EXPECT_STREQ(target->cOption, "/O2 /W3");
  EXPECT_STREQ(target->rcOption, "/l 0x412");
  EXPECT_EQ(target->asmOption, nullptr);
  EXPECT_STREQ(target->linkOption, "/MAP");
  EXPECT_STREQ(target->compiler, "VC15");
  FreeProjectTargets(&loaded);
}

TEST_F(ProjectFileTest, ThreeTargetsSavedThenOneLeavesStaleSectionsThatLoadNothing) {
  AddTarget("one", kTargetConsole);
  AddTarget("two", kTargetDll);
  AddTarget("three", kTargetLib);
  ASSERT_TRUE(SaveProject(&project_));
  RemoveTarget(&project_, project_.targets->next->next);
  RemoveTarget(&project_, project_.targets->next);
  ASSERT_TRUE(SaveProject(&project_));
  // The second section now ends the list; the third is stale but still there.
  std::vector<std::string> lines = Lines(ReadFileBytes(project_.path));
  auto at = std::find(lines.begin(), lines.end(), "[Target01]");
  ASSERT_NE(at, lines.end());
  EXPECT_EQ(at[1], "Info=");
  EXPECT_NE(std::find(lines.begin(), lines.end(), "Info=\"three\" 0 4 1 0"), lines.end());
  Project loaded{};
  ASSERT_TRUE(LoadProject(&loaded, project_.path));
  ASSERT_EQ(CountTargets(&loaded), 1);
  EXPECT_STREQ(loaded.targets->name, "one");
  FreeProjectTargets(&loaded);
}

TEST_F(ProjectFileTest, OnlyTheHeaderPrefixIsChecked) {
  WriteFileBytes(In("v2.prj"),
                 "[Head]\r\nInfo=Quill Project File 2.50 beta\r\n[Target00]\r\n"
                 "Info=app 0 1 1 0\r\n");
  ASSERT_TRUE(LoadProject(&project_, In("v2.prj").c_str()));
  ASSERT_EQ(CountTargets(&project_), 1);
  EXPECT_STREQ(project_.targets->name, "app");
  EXPECT_STREQ(project_.targets->compiler, "VC9");  // no "Compiler": the default
  EXPECT_TRUE(asked_.empty());
}

TEST_F(ProjectFileTest, AWrongHeaderOrAMissingFileLeavesTheOpenProjectAlone) {
  AddTarget("kept", kTargetWindow);
  project_.modified = true;
  std::string openPath = project_.path;
  WriteFileBytes(In("other.prj"),
                 "[Head]\r\nInfo=Quill Project File\r\n[Target00]\r\nInfo=x 0 1 1 0\r\n");
  EXPECT_FALSE(LoadProject(&project_, In("other.prj").c_str()));
  ASSERT_EQ(asked_.size(), 1u);
  EXPECT_EQ(asked_[0].first, "'" + In("other.prj") + "'\n파일은 Quill 프로젝트 형식이 아닙니다.");
  EXPECT_FALSE(LoadProject(&project_, In("missing.prj").c_str()));
  ASSERT_EQ(asked_.size(), 2u);
  EXPECT_EQ(asked_[1].first, "'" + In("missing.prj") + "' 파일이 열리지 않습니다.");
  EXPECT_EQ(project_.path, openPath);
  EXPECT_TRUE(project_.modified);
  ASSERT_EQ(CountTargets(&project_), 1);
  EXPECT_STREQ(project_.targets->name, "kept");
  EXPECT_EQ(loads_, 0);
}

TEST_F(ProjectFileTest, AFileThatCannotBeCreatedShowsString3) {
  AddTarget("app", kTargetWindow);
  project_.modified = true;
  SetPath("no such folder/x.prj");
  EXPECT_FALSE(SaveProject(&project_));
  ASSERT_EQ(asked_.size(), 1u);
  EXPECT_EQ(asked_[0].first, "'" + In("no such folder/x.prj") + "' 파일이 만들어지지 않습니다.");
  EXPECT_TRUE(project_.modified);
}

TEST_F(ProjectFileTest, MalformedInfoLinesLoadAsFarAsTheyGo) {
  std::string longName(100, 'n');
  WriteFileBytes(In("bad.prj"),
                 "[Head]\r\nInfo=Quill Project File 1.00\r\n"
                 "[Target00]\r\nInfo=\"open quote 0 1\r\n"  // unterminated quote
                 "[Target01]\r\nInfo=onlyname\r\n"          // no numbers
                 "[Target02]\r\nInfo=two 1 x 1 1\r\n"       // stops at the bad number
                 "[Target03]\r\nInfo=\"" +
                     longName +
                     "\" 0 4 0 1\r\n"                       // cut to 63
                     "[Target04]\r\nInfo=\"\" 1 3 0 0\r\n"  // empty quoted name
                     "[Target05]\r\nInfo=\"a\"-1 9 1 0 trailing\r\n");
  ASSERT_TRUE(LoadProject(&project_, In("bad.prj").c_str()));
  ASSERT_EQ(CountTargets(&project_), 6);
  const ProjectTarget* t = project_.targets;
  EXPECT_STREQ(t->name, "open quote 0 1");
  EXPECT_EQ(t->type, 0);
  t = t->next;
  EXPECT_STREQ(t->name, "onlyname");
  t = t->next;
  EXPECT_STREQ(t->name, "two");
  EXPECT_EQ(t->platform, 1);
  EXPECT_EQ(t->type, 0);
  EXPECT_EQ(t->useDefaultLib, 0);
  t = t->next;
  EXPECT_EQ(std::string(t->name), longName.substr(0, 63));
  EXPECT_EQ(t->type, kTargetLib);
  EXPECT_EQ(t->useKLib, 1);
  t = t->next;
  EXPECT_STREQ(t->name, "");
  EXPECT_EQ(t->type, kTargetDll);
  t = t->next;
  EXPECT_STREQ(t->name, "a");
  EXPECT_EQ(t->platform, -1);
  EXPECT_EQ(t->type, 9);
  // An unknown type builds like a window program.
  char label[80];
  FormatTargetLabel(t, label, sizeof label);
  EXPECT_STREQ(label, "a [.exe]");
}

TEST_F(ProjectFileTest, LongValuesAreCutToTheirBuffersAndHangulIsNotSplit) {
  std::string longPath(2000, 'p');
  std::string hangulLine;
  while (hangulLine.size() < 1000)
    hangulLine += "가";  // three bytes each in UTF-8
  std::string text =
      "[Head]\r\nInfo=Quill Project File 1.00\r\n[Target00]\r\nInfo=t 0 0 1 0\r\n"
      "File00=" +
      longPath + "\r\nFile01=b.c\r\n";
  for (int i = 0; i < 12; ++i) {
    char key[32];
    snprintf(key, sizeof key, "Define%02d=", i);
    text += key + std::string(500, static_cast<char>('a' + i)) + "\r\n";
  }
  text += "Include00=" + Sys(hangulLine) + "\r\nCOption=" + std::string(5000, 'o') + "\r\n";
  WriteFileBytes(In("long.prj"), text);
  ASSERT_TRUE(LoadProject(&project_, In("long.prj").c_str()));
  ASSERT_EQ(CountTargets(&project_), 1);
  const ProjectTarget* t = project_.targets;
  ASSERT_EQ(CountTargetFiles(t), 2);
  EXPECT_EQ(std::string(t->files->path), longPath.substr(0, kPathSize - 1));
  size_t defines = strlen(t->defines);
  EXPECT_EQ(defines, static_cast<size_t>(kProjectTextLimit - 1));
  EXPECT_EQ(std::string(t->defines, 502), std::string(500, 'a') + "\r\n");
  // A line of Hangul cut in the middle of a character keeps the whole ones before it.
  std::string includes = t->includes;
  EXPECT_EQ(includes.substr(0, 3), "가");
  EXPECT_EQ(includes.find_first_not_of("가"), std::string::npos);
  EXPECT_GT(includes.size(), 600u);
  EXPECT_EQ(includes.size() % 3, 0u);
  EXPECT_EQ(strlen(t->cOption), static_cast<size_t>(kProjectTextLimit));
}

TEST_F(ProjectFileTest, HundredsOfTargetsNumberPastTwoDigits) {
  for (int i = 0; i < 120; ++i) {
    char name[16];
    snprintf(name, sizeof name, "t%d", i);
    AddTarget(name, i % kTargetTypeCount);
  }
  AppendTargetFile(project_.targets, "a.c");
  ASSERT_TRUE(SaveProject(&project_));
  FreeProjectTargets(&project_);
  ASSERT_TRUE(LoadProject(&project_, project_.path));
  ASSERT_EQ(CountTargets(&project_), 120);
  const ProjectTarget* t = project_.targets;
  for (int i = 0; i < 119; ++i)
    t = t->next;
  EXPECT_STREQ(t->name, "t119");
  EXPECT_EQ(t->type, 119 % kTargetTypeCount);
  EXPECT_NE(ReadFileBytes(project_.path).find("[Target119]"), std::string::npos);
}

}  // namespace

namespace {

// A file of more targets than a load reads: the first ones load, the user is told, and the
// project is marked as read in part; the file itself is left as it was.
TEST_F(ProjectFileTest, TargetsPastTheLimitAreLeftOutWithAMessage) {
  std::string text = "[Head]\r\nInfo=Quill Project File 1.00\r\n";
  const int count = kProjectTargetLimit + 2;
  for (int i = 0; i < count; ++i)
    text += "[Target" + std::string(i < 10 ? "0" : "") + std::to_string(i) + "]\r\nInfo=\"t" +
            std::to_string(i) + "\" 0 0 1 0\r\nFile00=\r\n";
  text += "[Target" + std::to_string(count) + "]\r\nInfo=\r\n";
  WriteFileBytes(project_.path, text);
  ASSERT_TRUE(LoadProject(&project_, project_.path));
  EXPECT_EQ(CountTargets(&project_), kProjectTargetLimit);
  EXPECT_TRUE(project_.partial);
  ASSERT_EQ(asked_.size(), 1u);
  EXPECT_NE(asked_[0].first.find("1000"), std::string::npos) << asked_[0].first;
  EXPECT_EQ(ReadFileBytes(project_.path), text);
  // A file within the limit is read whole and not partial.
  WriteFileBytes(project_.path,
                 "[Head]\r\nInfo=Quill Project File 1.00\r\n[Target00]\r\n"
                 "Info=\"a\" 0 0 1 0\r\n[Target01]\r\nInfo=\r\n");
  ASSERT_TRUE(LoadProject(&project_, project_.path));
  EXPECT_FALSE(project_.partial);
  EXPECT_EQ(CountTargets(&project_), 1);
}

}  // namespace
