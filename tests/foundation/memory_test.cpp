#include "foundation/memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <vector>

#include "foundation/library.h"
#include "foundation/os_memory.h"
#include "tests/support/capture.h"
#include "tests/support/klib_test.h"

namespace {

using MemoryTest = KLibTest;

// Gives a block that FreeMem refused back to the system, so the sanitizer sees no leak.
void ReleaseByHand(void* pointer) {
  OsFreeBlock(static_cast<unsigned char*>(pointer) - kMemHeadSize);
}

TEST(MemoryBeforeStart, AllocationFailsWithANote) {
  if (IsMemoryManagerReady()) {
    NoteCapture quiet;
    CloseKLib();
  }
  NoteCapture notes;
  EXPECT_EQ(AllocMem(16, 1), nullptr);
  ASSERT_EQ(notes.Notes().size(), 1u);
  EXPECT_EQ(notes.Notes()[0].text, "First run InitKLib()");
}

TEST_F(MemoryTest, BlocksAreUsableAlignedAndCounted) {
  int before = LiveBlocks();
  void* empty = AllocMem(0, 1);
  void* odd = AllocMem(13, 2);
  ASSERT_NE(empty, nullptr);
  ASSERT_NE(odd, nullptr);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(empty) % alignof(void*), 0u);
  EXPECT_EQ(LiveBlocks(), before + 2);
  // A request of 0 still has an 8-byte payload; 13 bytes get 16 plus 8.
  memset(empty, 0xAB, MemPayloadSize(0));
  memset(odd, 0xCD, MemPayloadSize(13));
  EXPECT_EQ(MemPayloadSize(0), 8u);
  EXPECT_EQ(MemPayloadSize(13), 24u);
  LogCapture log;
  FreeMem(empty);
  FreeMem(odd);
  FreeMem(nullptr);
  EXPECT_EQ(log.Text(), "");
  EXPECT_EQ(LiveBlocks(), before);
}

TEST_F(MemoryTest, DoubleFreeIsLoggedWithADumpAndFreesNothing) {
  void* block = AllocMem(32, 7);
  FreeMem(block);
  int before = LiveBlocks();
  LogCapture log;
  FreeMem(block);
  std::string text = log.Text();
  EXPECT_EQ(text.find(">>> FreeMem() Unknown Memory M="), 0u);
  // The complaint line, then 64 bytes of dump: four lines.
  size_t firstLineEnd = text.find("\r\n");
  ASSERT_NE(firstLineEnd, std::string::npos);
  EXPECT_EQ(text.substr(firstLineEnd - 1, 1), "h");
  std::string dump = text.substr(firstLineEnd + 2);
  EXPECT_EQ(dump.substr(0, 5), "0000:");
  EXPECT_NE(dump.find("\r\n0030:"), std::string::npos);
  EXPECT_EQ(dump.find("0040:"), std::string::npos);
  EXPECT_EQ(LiveBlocks(), before);
}

TEST_F(MemoryTest, ForeignPointerIsLoggedAndLeftAlone) {
  alignas(16) unsigned char buffer[128];
  for (int i = 0; i < 128; ++i)
    buffer[i] = static_cast<unsigned char>(i);
  int before = LiveBlocks();
  LogCapture log;
  FreeMem(buffer + 32);
  std::string text = log.Text();
  EXPECT_EQ(text.find(">>> FreeMem() Unknown Memory M="), 0u);
  // The dump starts at the head, right before the pointer.
  char expected[80];
  FormatDumpLine(buffer + 32 - kMemHeadSize, 16, 0, expected);
  EXPECT_NE(text.find(expected), std::string::npos);
  EXPECT_EQ(LiveBlocks(), before);
  EXPECT_EQ(buffer[40], 40);  // untouched
}

TEST_F(MemoryTest, OverrunIntoTheTagIsBrokenMemoryAndTheBlockIsKept) {
  int before = LiveBlocks();
  unsigned char* block = static_cast<unsigned char*>(AllocMem(10, 4242));
  // The rounded payload itself is the caller's to use...
  memset(block, 0x55, MemPayloadSize(10));
  // ...one byte further is the tag.
  block[MemPayloadSize(10)] ^= 0xFF;
  LogCapture log;
  FreeMem(block);
  EXPECT_EQ(log.Text(), ">>> Broken Memory, Size=10, Owner=4242\r\n");
  // Unlinked all the same, but not released and still counted.
  EXPECT_EQ(LiveBlocks(), before + 1);
  {
    LogCapture report;
    CheckMemLeak();
    EXPECT_EQ(report.Text().find("Owner=4242"), std::string::npos);
  }
  ReleaseByHand(block);
  keptByDesign_ = 1;
}

TEST_F(MemoryTest, LeakReportListsNewestFirst) {
  void* first = AllocMem(10, 11);
  void* second = AllocMem(20, 22);
  void* third = AllocMem(30, 33);
  FreeMem(second);
  LogCapture log;
  int live = CheckMemLeak();
  EXPECT_EQ(log.Text(),
            ">>>Leaked Memory, Size=30, Owner=33\r\n"
            ">>>Leaked Memory, Size=10, Owner=11\r\n");
  EXPECT_GE(live, 2);
  FreeMem(first);
  FreeMem(third);
}

TEST_F(MemoryTest, RefusedAllocationNotesTheRoundedSize) {
  NoteCapture notes;
  EXPECT_EQ(AllocMem(0x7FFFFF01u, 55), nullptr);
  ASSERT_EQ(notes.Notes().size(), 1u);
  EXPECT_EQ(notes.Notes()[0].text, "Mem Alloc Error. Owner=55, ReqSize=2147483404");
}

TEST_F(MemoryTest, ConcurrentAllocationKeepsTheListWhole) {
  int before = LiveBlocks();
  auto work = [](int owner) {
    std::vector<void*> blocks;
    for (int round = 0; round < 200; ++round) {
      for (int i = 0; i < 20; ++i)
        blocks.push_back(AllocMem(static_cast<size_t>(i * 3), owner));
      for (void* block : blocks)
        FreeMem(block);
      blocks.clear();
    }
  };
  LogCapture log;
  std::thread a(work, 1), b(work, 2);
  a.join();
  b.join();
  EXPECT_EQ(log.Text(), "");
  EXPECT_EQ(LiveBlocks(), before);
}

TEST(MemoryShutdown, LeaksAtExitAreLoggedAndCounted) {
  InitKLib(nullptr, nullptr);
  int before = LiveBlocks();
  void* kept = AllocMem(5, 77);
  void* newer = AllocMem(6, 78);
  NoteCapture notes;
  LogCapture log;
  EXPECT_EQ(CloseKLib(), before + 2);
  EXPECT_EQ(log.Text(),
            ">>>Leaked Memory, Size=6, Owner=78\r\n"
            ">>>Leaked Memory, Size=5, Owner=77\r\n");
  ASSERT_EQ(notes.Notes().size(), 1u);
  EXPECT_EQ(notes.Notes()[0].text, "MemLeak=" + std::to_string(before + 2));
  // After shutdown nothing is handed out; freeing still works.
  EXPECT_EQ(AllocMem(1, 1), nullptr);
  FreeMem(kept);
  FreeMem(newer);
  InitKLib(nullptr, nullptr);
  NoteCapture quiet;
  EXPECT_EQ(CloseKLib(), before);
}

}  // namespace
