#include "project/project_tree.h"

#include <string>

#include "project/project.h"
#include "tests/project/project_fixture.h"

namespace {

class ProjectTreeTest : public ProjectTest {
 protected:
  // Targets "a" (a1.c, a2.c) and "b" (b1.c); the project starts unmodified.
  void SetUp() override {
    ProjectTest::SetUp();
    a_ = AddTarget("a", kTargetConsole);
    b_ = AddTarget("b", kTargetWindow);
    AppendTargetFile(a_, "a1.c");
    AppendTargetFile(a_, "a2.c");
    AppendTargetFile(b_, "b1.c");
    project_.modified = false;
  }
  ProjectFile* File(ProjectTarget* target, int index) {
    ProjectFile* file = target->files;
    while (file && index-- > 0)
      file = file->next;
    return file;
  }
  // "a(a1.c,a2.c) b(b1.c)"
  std::string Layout() {
    std::string text;
    for (ProjectTarget* target = project_.targets; target; target = target->next) {
      if (!text.empty()) text += ' ';
      text += std::string(target->name) + '(';
      for (ProjectFile* file = target->files; file; file = file->next)
        text += std::string(file->path) + (file->next ? "," : "");
      text += ')';
    }
    return text;
  }
  ProjectTarget* a_ = nullptr;
  ProjectTarget* b_ = nullptr;
};

TEST_F(ProjectTreeTest, TheCommandTargetIsTheSelectedTargetOrTheSelectedFilesTarget) {
  TreeNode target{b_, nullptr};
  TreeNode file{a_, File(a_, 1)};
  EXPECT_EQ(CommandTarget(&target), b_);
  EXPECT_EQ(CommandTarget(&file), a_);
  EXPECT_EQ(CommandTarget(nullptr), nullptr);
}

TEST_F(ProjectTreeTest, DropsFollowTheDepthRules) {
  struct Case {
    const char* what;
    int draggedTarget, draggedFile;  // target 0 a, 1 b; file index or -1 for the target itself
    int droppedTarget, droppedFile;  // droppedTarget -1: no drop node
    TreeDrop plan;
    const char* layout;
  };
  const Case cases[] = {
      {"file after a file of another target", 0, 0, 1, 0, TreeDrop::kAfter, "a(a2.c) b(b1.c,a1.c)"},
      {"file after a sibling", 0, 0, 0, 1, TreeDrop::kAfter, "a(a2.c,a1.c) b(b1.c)"},
      {"file onto another target", 0, 1, 1, -1, TreeDrop::kInto, "a(a1.c) b(b1.c,a2.c)"},
      {"file onto its own target", 0, 0, 0, -1, TreeDrop::kInto, "a(a2.c,a1.c) b(b1.c)"},
      {"target after a target", 0, -1, 1, -1, TreeDrop::kAfter, "b(b1.c) a(a1.c,a2.c)"},
      {"target onto a file", 1, -1, 0, 0, TreeDrop::kBeep, "a(a1.c,a2.c) b(b1.c)"},
      {"onto itself", 0, 1, 0, 1, TreeDrop::kNothing, "a(a1.c,a2.c) b(b1.c)"},
      {"target onto itself", 1, -1, 1, -1, TreeDrop::kNothing, "a(a1.c,a2.c) b(b1.c)"},
      {"nowhere", 0, 0, -1, -1, TreeDrop::kNothing, "a(a1.c,a2.c) b(b1.c)"},
  };
  for (const Case& c : cases) {
    ProjectTarget* targets[] = {a_, b_};
    TreeNode dragged{targets[c.draggedTarget],
                     c.draggedFile < 0 ? nullptr : File(targets[c.draggedTarget], c.draggedFile)};
    TreeNode dropped{};
    if (c.droppedTarget >= 0) {
      dropped.target = targets[c.droppedTarget];
      dropped.file = c.droppedFile < 0 ? nullptr : File(dropped.target, c.droppedFile);
    }
    TreeNode* drop = c.droppedTarget >= 0 ? &dropped : nullptr;
    EXPECT_EQ(PlanTreeDrop(dragged, drop), c.plan) << c.what;
    EXPECT_EQ(DropTreeNode(&project_, dragged, drop), c.plan) << c.what;
    EXPECT_EQ(Layout(), c.layout) << c.what;
    bool moved = c.plan == TreeDrop::kAfter || c.plan == TreeDrop::kInto;
    EXPECT_EQ(project_.modified, moved) << c.what;
    TearDown();  // a fresh project for the next case
    SetUp();
  }
}

TEST_F(ProjectTreeTest, EachKindOfFileHasItsPicture) {
  const std::pair<const char*, int> cases[] = {
      {"main.c", kImageC},        {"SUB/MAIN.CPP", kImageCpp}, {"x.cc", kImageCpp},
      {"klib.h", kImageHeader},   {"KLIB.RH", kImageHeader},   {"masm.ASM", kImageAsm},
      {"res.rc", kImageResource}, {"notes.txt", kImageOther},  {"Makefile", kImageOther},
      {"dir.c/file", kImageOther}, {"trailing.", kImageOther},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ProjectFileImage(c.first), c.second) << c.first;
}

}  // namespace
