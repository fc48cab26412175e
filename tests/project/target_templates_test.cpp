#include "project/target_templates.h"

#include "project/project.h"
#include "tests/project/project_fixture.h"

namespace {

class TargetTemplatesTest : public ProjectTest {
 protected:
  void SetUp() override {
    ProjectTest::SetUp();
    templates_ = In("TEMPLATE");
    MakeFolder(templates_);
    // Each template holds its own name, so that a copy shows where it came from.
    for (const char* name :
         {"CONSOLE.CPP", "CONSOLEK.CPP", "WINDOW.CPP", "WINDOWK.CPP", "DIALOG.CPP", "DIALOGK.CPP",
          "RESOURCE.H", "RESOURCK.H", "RESOURCE.RC", "DLLMAIN.CPP", "DLLMAINK.CPP", "MASM.ASM",
          "KLIB.H", "KLIB.CPP", "KLIB.RH", "KLIB_KR.RC", "UNDEFAPI.H"}) {
      WriteFileBytes(templates_ + "/" + name, name);
    }
    SetPath("work/Test.prj");
    MakeFolder(In("work"));
  }
  std::vector<std::string> Files(const ProjectTarget* target) {
    std::vector<std::string> files;
    for (const ProjectFile* file = target->files; file; file = file->next)
      files.push_back(file->path);
    return files;
  }
  int Copy(ProjectTarget* target, ProjectFile** last = nullptr) {
    return CopyTargetTemplates(&project_, target, templates_.c_str(), last);
  }
  std::string templates_;
};

TEST_F(TargetTemplatesTest, ADialogTargetWithTheLibraryGetsItsOwnResourceHeader) {
  ProjectTarget* target = AddTarget("dlg", kTargetDialog);
  target->useKLib = 1;
  ProjectFile* last = nullptr;
  EXPECT_EQ(Copy(target, &last), 8);
  EXPECT_EQ(Files(target), (std::vector<std::string>{"DIALOG.CPP", "RESOURCE.H", "RESOURCE.RC",
                                                      "KLIB.H", "KLIB.CPP"}));
  ASSERT_NE(last, nullptr);
  EXPECT_STREQ(last->path, "KLIB.CPP");
  EXPECT_EQ(ReadFileBytes(In("work/DIALOG.CPP")), "DIALOGK.CPP");
  EXPECT_EQ(ReadFileBytes(In("work/RESOURCE.H")), "RESOURCK.H");
  EXPECT_EQ(ReadFileBytes(In("work/KLIB_KR.RC")), "KLIB_KR.RC");
  EXPECT_TRUE(FileExists(In("work/KLIB.RH")));
  EXPECT_TRUE(FileExists(In("work/UNDEFAPI.H")));
}

TEST_F(TargetTemplatesTest, OtherTypesWithTheLibraryGetTheResourceHeaderUnlisted) {
  ProjectTarget* target = AddTarget("con", kTargetConsole);
  target->useKLib = 1;
  EXPECT_EQ(Copy(target), 7);
  EXPECT_EQ(Files(target), (std::vector<std::string>{"CONSOLE.CPP", "KLIB.H", "KLIB.CPP"}));
  EXPECT_EQ(ReadFileBytes(In("work/CONSOLE.CPP")), "CONSOLEK.CPP");
  EXPECT_EQ(ReadFileBytes(In("work/RESOURCE.H")), "RESOURCK.H");
}

TEST_F(TargetTemplatesTest, WithoutTheLibraryOnlyTheTypesOwnFiles) {
  const std::vector<std::vector<std::string>> expected = {
      {"CONSOLE.CPP"}, {"WINDOW.CPP"}, {"DIALOG.CPP", "RESOURCE.H", "RESOURCE.RC"},
      {"DLLMAIN.CPP"}, {},             {"MASM.ASM"}};
  for (int type = 0; type < kTargetTypeCount; ++type) {
    RemoveTree(In("work"));
    MakeFolder(In("work"));
    ProjectTarget* target = AddTarget("t", type);
    EXPECT_EQ(Copy(target), static_cast<int>(expected[type].size())) << type;
    EXPECT_EQ(Files(target), expected[type]) << type;
    if (!expected[type].empty()) {
      EXPECT_EQ(ReadFileBytes(In("work/" + expected[type][0])), expected[type][0]);
    }
    EXPECT_FALSE(FileExists(In("work/KLIB.H")));
    RemoveTarget(&project_, target);
  }
}

TEST_F(TargetTemplatesTest, LibrariesAndAssemblyNeverGetTheLibraryFiles) {
  ProjectTarget* lib = AddTarget("lib", kTargetLib);
  lib->useKLib = 1;
  EXPECT_EQ(Copy(lib), 0);
  ProjectTarget* masm = AddTarget("masm", kTargetAsm);
  masm->useKLib = 1;
  EXPECT_EQ(Copy(masm), 1);
  EXPECT_EQ(Files(masm), std::vector<std::string>{"MASM.ASM"});
  EXPECT_FALSE(FileExists(In("work/KLIB.H")));
}

TEST_F(TargetTemplatesTest, AnExistingFileIsNeitherOverwrittenNorListed) {
  WriteFileBytes(In("work/WINDOW.CPP"), "mine");
  ProjectTarget* target = AddTarget("win", kTargetWindow);
  ProjectFile* last = reinterpret_cast<ProjectFile*>(&last);
  EXPECT_EQ(Copy(target, &last), 0);
  EXPECT_EQ(last, nullptr);
  EXPECT_TRUE(Files(target).empty());
  EXPECT_EQ(ReadFileBytes(In("work/WINDOW.CPP")), "mine");
  // A missing template folder copies nothing.
  RemoveTree(templates_);
  ProjectTarget* other = AddTarget("dll", kTargetDll);
  EXPECT_EQ(Copy(other), 0);
}

}  // namespace
