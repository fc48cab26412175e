// The project tests' fixture: the support library up, a fresh folder for the project, the
// settings in a file of their own, and scripted hosts that record the questions, the programs
// started and the unsaved-sources answers.
#pragma once
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "foundation/host.h"
#include "foundation/settings.h"
#include "foundation/system_text.h"
#include "project/project.h"
#include "project/project_host.h"
#include "tests/support/klib_test.h"

#include <filesystem>
#include <system_error>

// Paths of the tests are UTF-8, as the program's own.
inline std::filesystem::path FsPath(const std::string& path) {
  return std::filesystem::u8path(path);
}

inline std::string ReadFileBytes(const std::string& path) {
  std::ifstream file(FsPath(path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

inline void WriteFileBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(FsPath(path), std::ios::binary) << bytes;
}

inline bool FileExists(const std::string& path) {
  std::error_code error;
  return std::filesystem::exists(FsPath(path), error);
}

// A text in the internal form as the system's profile and file calls write it (the code page).
inline std::string Sys(const std::string& internal) {
  std::string system(internal.size() * 2 + 1, '\0');
  int length = ToSystemText(internal.c_str(), &system[0], static_cast<int>(system.size()));
  system.resize(length < 0 ? 0 : static_cast<size_t>(length));
  return system;
}

class ProjectTest : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    std::string base = testing::TempDir();
    for (char& c : base) {
      if (c == '\\') c = '/';
    }
    if (!base.empty() && base.back() != '/') base += '/';
    const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = base + "quill_prj_" + info->test_suite_name() + "_" + info->name();
    RemoveTree(folder_);
    MakeFolder(folder_);
    settings_ = folder_ + "/settings.ini";
    ASSERT_TRUE(SetSettingsPath(settings_.c_str()));
    previousUi_ = SetUiHost(&ui_);
    previousProject_ = SetProjectHost(&projectHost_);
    project_ = Project{};
    SetPath("Test.prj");
  }
  void TearDown() override {
    FreeProjectTargets(&project_);
    SetUiHost(previousUi_);
    SetProjectHost(previousProject_);
    RemoveTree(folder_);
    KLibTest::TearDown();
  }

  static void RemoveTree(const std::string& path) {
    std::error_code error;
    std::filesystem::remove_all(FsPath(path), error);
  }
  static void MakeFolder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(FsPath(path), error);
  }

  void SetPath(const std::string& name) {
    std::string path = folder_ + "/" + name;
    snprintf(project_.path, sizeof project_.path, "%s", path.c_str());
  }
  std::string In(const std::string& name) const { return folder_ + "/" + name; }

  ProjectTarget* AddTarget(const char* name, int type) {
    ProjectTarget* target = NewTarget();
    snprintf(target->name, sizeof target->name, "%s", name);
    target->type = type;
    target->useDefaultLib = 1;
    AppendTarget(&project_, target);
    return target;
  }

  // What the message boxes were asked: the text and the style.
  std::vector<std::pair<std::string, unsigned>> asked_;
  int answer_ = kIdOk;
  // What the project host saw.
  bool unsaved_ = false;
  int saves_ = 0;
  std::vector<std::pair<std::string, int>> started_;
  int loads_ = 0;

  std::string folder_;
  std::string settings_;
  Project project_{};

 private:
  static int Ask(void* self, const char* text, unsigned flags) {
    ProjectTest* test = static_cast<ProjectTest*>(self);
    test->asked_.emplace_back(text, flags);
    return test->answer_;
  }
  UiHost ui_{Ask, this};
  ProjectHost projectHost_{
      this,
      [](void* self) { return static_cast<ProjectTest*>(self)->unsaved_; },
      [](void* self) { ++static_cast<ProjectTest*>(self)->saves_; },
      [](void* self, const char* line, int show) {
        static_cast<ProjectTest*>(self)->started_.emplace_back(line, show);
        return true;
      },
      [](void* self) { ++static_cast<ProjectTest*>(self)->loads_; }};
  const UiHost* previousUi_ = nullptr;
  const ProjectHost* previousProject_ = nullptr;
};
