// A test fixture with the support library up, which checks that the test left the number of live
// blocks as it found it (a broken block stays counted for good, so the number is not always 0).
#pragma once
#include <gtest/gtest.h>

#include "foundation/language.h"
#include "foundation/library.h"
#include "foundation/memory.h"
#include "tests/support/capture.h"

// The library's own number of live blocks, read through the leak report.
inline int LiveBlocks() {
  LogCapture ignored;
  return CheckMemLeak();
}

class KLibTest : public ::testing::Test {
 protected:
  void SetUp() override {
    InitKLib(nullptr, nullptr);
    baseline_ = LiveBlocks();
  }
  void TearDown() override {
    // Cached string-table texts belong to the library until its shutdown.
    FreeStringCache();
    EXPECT_EQ(LiveBlocks(), baseline_ + keptByDesign_) << "the test leaked blocks";
    NoteCapture quiet;
    CloseKLib();
  }
  int baseline_ = 0;
  int keptByDesign_ = 0;
};
