#include "project/project.h"

#include <cstring>

#include "foundation/fileutil.h"
#include "foundation/path.h"
#include "foundation/settings.h"
#include "tests/project/project_fixture.h"

namespace {

class ProjectModelTest : public ProjectTest {};

TEST_F(ProjectModelTest, TargetTypesHaveTheirLabelsExtensionsAndMakefileKinds) {
  const char* const labels[] = {"콘솔 응용프로그램 (&Console)", "메인 창으로 시작 (&WIN32)",
                                "대화상자로 시작 (WIN3&2)",     "동적 라이브러리 (&DLL)",
                                "정적 라이브러리 (&LIB)",       "어셈블리어 (WIN32, EXE)"};
  const char* const extensions[] = {".exe", ".exe", ".exe", ".dll", ".lib", ".exe"};
  const char* const kinds[] = {"Console", "Windows", "Windows", "MakeDll", "MakeLib", "Windows"};
  for (int type = 0; type < kTargetTypeCount; ++type) {
    EXPECT_STREQ(TargetTypeLabel(type), labels[type]);
    EXPECT_STREQ(TargetExtension(type), extensions[type]);
    EXPECT_STREQ(TargetMakefileKind(type), kinds[type]);
  }
  EXPECT_STREQ(TargetMakefileKind(-1), "Windows");
  ProjectTarget* target = AddTarget("my tool", kTargetDll);
  char text[80];
  EXPECT_EQ(FormatTargetLabel(target, text, sizeof text), 14);
  EXPECT_STREQ(text, "my tool [.dll]");
  FormatTargetOutput(target, text, sizeof text);
  EXPECT_STREQ(text, "my tool.dll");
}

TEST_F(ProjectModelTest, AddedFilesAreRelativeAndDuplicatesAreOnlyFound) {
  ProjectTarget* target = AddTarget("app", kTargetWindow);
  project_.modified = false;
  ProjectFile* node = nullptr;
  EXPECT_EQ(AddProjectFile(&project_, target, In("src/Main.cpp").c_str(), &node),
            AddFileResult::kAdded);
  ASSERT_NE(node, nullptr);
  EXPECT_STREQ(node->path, "src/Main.cpp");
  EXPECT_TRUE(project_.modified);

  // The same file spelt in another case, folder included, is the one already listed.
  project_.modified = false;
  std::string upper = In("SRC/MAIN.CPP");
  for (size_t i = 0; i < folder_.size(); ++i)
    upper[i] = static_cast<char>(toupper(static_cast<unsigned char>(upper[i])));
  ProjectFile* found = nullptr;
  EXPECT_EQ(AddProjectFile(&project_, target, upper.c_str(), &found),
            AddFileResult::kAlreadyListed);
  EXPECT_EQ(found, node);
  EXPECT_FALSE(project_.modified);

  // Outside the project folder the path stays whole; a sibling folder sharing the prefix is
  // outside too.
  EXPECT_EQ(AddProjectFile(&project_, target, "/elsewhere/b.c", &node), AddFileResult::kAdded);
  EXPECT_STREQ(node->path, "/elsewhere/b.c");
  std::string sibling = folder_ + "2/c.c";
  EXPECT_EQ(AddProjectFile(&project_, target, sibling.c_str(), &node), AddFileResult::kAdded);
  EXPECT_EQ(std::string(node->path), sibling);
  ASSERT_EQ(CountTargetFiles(target), 3);
  EXPECT_STREQ(target->files->next->path, "/elsewhere/b.c");

  project_.modified = false;
  EXPECT_TRUE(RemoveProjectFile(&project_, target, target->files->next));
  EXPECT_TRUE(project_.modified);
  ASSERT_EQ(CountTargetFiles(target), 2);
  EXPECT_STREQ(target->files->path, "src/Main.cpp");
  EXPECT_EQ(std::string(target->files->next->path), sibling);
  ProjectFile stranger{nullptr, nullptr};
  EXPECT_FALSE(RemoveProjectFile(&project_, target, &stranger));
}

TEST_F(ProjectModelTest, RemovingATargetUnlinksOnlyIt) {
  ProjectTarget* a = AddTarget("a", 0);
  ProjectTarget* b = AddTarget("b", 1);
  ProjectTarget* c = AddTarget("c", 2);
  AppendTargetFile(b, "x.c");
  SetTargetText(&b->cOption, "/O2");
  project_.modified = false;
  EXPECT_TRUE(RemoveTarget(&project_, b));
  EXPECT_TRUE(project_.modified);
  EXPECT_EQ(project_.targets, a);
  EXPECT_EQ(a->next, c);
  EXPECT_EQ(FindTarget(&project_, "b"), nullptr);
  EXPECT_EQ(FindTarget(&project_, "c"), c);
  ProjectTarget stranger{};
  EXPECT_FALSE(RemoveTarget(&project_, &stranger));
  EXPECT_TRUE(RemoveTarget(&project_, c));
  EXPECT_EQ(a->next, nullptr);
}

TEST_F(ProjectModelTest, TextFieldsHoldCopiesAndEmptyMeansNone) {
  ProjectTarget* target = AddTarget("t", 0);
  char text[] = "/W3";
  ASSERT_TRUE(SetTargetText(&target->cOption, text));
  text[0] = 'X';
  EXPECT_STREQ(target->cOption, "/W3");
  ASSERT_TRUE(SetTargetText(&target->cOption, ""));
  EXPECT_EQ(target->cOption, nullptr);
}

TEST_F(ProjectModelTest, NewTargetsStartFromTheStoredDefaults) {
  ProjectTarget* fresh = NewDefaultTarget();
  ASSERT_NE(fresh, nullptr);
  EXPECT_EQ(fresh->platform, 0);
  EXPECT_EQ(fresh->type, kTargetWindow);
  EXPECT_EQ(fresh->useDefaultLib, 1);
  EXPECT_EQ(fresh->useKLib, 0);
  EXPECT_STREQ(fresh->name, "");
  EXPECT_STREQ(fresh->compiler, "VC9");
  fresh->platform = 1;
  fresh->type = kTargetDll;
  fresh->useDefaultLib = 0;
  fresh->useKLib = 1;
  strcpy(fresh->name, "플러그인");
  strcpy(fresh->compiler, "VC15");  // not a default: every new target starts with VC9
  StoreTargetDefaults(fresh);
  FreeTarget(fresh);
  ProjectTarget* next = NewDefaultTarget();
  EXPECT_EQ(next->platform, 1);
  EXPECT_EQ(next->type, kTargetDll);
  EXPECT_EQ(next->useDefaultLib, 0);
  EXPECT_EQ(next->useKLib, 1);
  EXPECT_STREQ(next->name, "플러그인");
  EXPECT_STREQ(next->compiler, "VC9");
  FreeTarget(next);
  std::string ini = ReadFileBytes(settings_);
  EXPECT_NE(ini.find("[Project]"), std::string::npos);
  EXPECT_NE(ini.find("DefTargetType=3"), std::string::npos);
}

TEST_F(ProjectModelTest, TheNewProjectPathComesFromTheRememberedFolder) {
  char path[kPathSize];
  WriteText(kProjectSection, "DefPrjFolder", "c:/work/프로젝트");
  EXPECT_GT(DefaultProjectPath(path, sizeof path), 0);
  EXPECT_STREQ(path, "C:/work/프로젝트/NoName/NoName.prj");
  WriteText(kProjectSection, "DefPrjFolder", "d:/");
  DefaultProjectPath(path, sizeof path);
  EXPECT_STREQ(path, "D:/NoName/NoName.prj");
  WriteText(kProjectSection, "DefPrjFolder", "");
  char program[kPathSize];
  ASSERT_GT(ProgramFolder(program, sizeof program), 0);
  DefaultProjectPath(path, sizeof path);
  std::string expected = std::string(program) + "/NoName/NoName.prj";
  if (expected[0] >= 'a' && expected[0] <= 'z') expected[0] = static_cast<char>(expected[0] - 32);
  EXPECT_EQ(std::string(path), expected);
  EXPECT_EQ(DefaultProjectPath(path, 10), -1);
}

}  // namespace
