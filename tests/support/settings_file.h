// A test with the support library up and a settings file of its own in the temporary folder,
// removed before and after.
#pragma once
#include <cstdio>
#include <fstream>
#include <string>

#include "foundation/settings.h"
#include "tests/support/klib_test.h"

class SettingsFileTest : public KLibTest {
 protected:
  explicit SettingsFileTest(const char* name = "quill_test_settings.ini") : name_(name) {}
  void SetUp() override {
    KLibTest::SetUp();
    path_ = testing::TempDir() + name_;
    for (char& c : path_) {
      if (c == '\\') c = '/';
    }
    std::remove(path_.c_str());
    ASSERT_TRUE(SetSettingsPath(path_.c_str()));
  }
  void TearDown() override {
    std::remove(path_.c_str());
    KLibTest::TearDown();
  }
  // Replaces the whole settings file.
  void WriteSettings(const std::string& text) { std::ofstream(path_, std::ios::binary) << text; }
  std::string name_;
  std::string path_;
};
