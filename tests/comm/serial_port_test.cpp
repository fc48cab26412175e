// The serial engine against a real pseudo-terminal: the test holds the line's other end.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "comm/byte_queue.h"
#include "comm/serial_port.h"
#include "comm/terminal_session.h"
#include "editor/document.h"
#include "editor/editor_view.h"
#include "foundation/host.h"
#include "tests/support/klib_test.h"

#ifndef _WIN32
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <mutex>
#include <thread>
#endif

namespace {

constexpr int kOwner = 7219;

std::string Pinned(const unsigned char* data, size_t length) {
  return std::string(reinterpret_cast<const char*>(data), length);
}

TEST_F(KLibTest, ByteQueueKeepsThePinnedRegionWhileItGrows) {
  ByteQueue queue;
  ASSERT_TRUE(InitByteQueue(&queue, 8, kOwner));
  ASSERT_TRUE(AppendBytes(&queue, "abcdef", 6));
  EXPECT_EQ(TakeByte(&queue), 'a');
  size_t length = 0;
  const unsigned char* region = PinBytes(&queue, &length);
  ASSERT_EQ(Pinned(region, length), "bcdef");
  // Appending in place, then outgrowing the block twice, while the region is pinned: its bytes
  // stay where they were (the sanitizer would see a freed or moved block read).
  ASSERT_TRUE(AppendBytes(&queue, "gh", 2));
  EXPECT_EQ(Pinned(region, length), "bcdef");
  std::string more(100, 'x');
  std::string most(1000, 'y');
  ASSERT_TRUE(AppendBytes(&queue, more.data(), more.size()));
  ASSERT_TRUE(AppendBytes(&queue, most.data(), most.size()));
  EXPECT_EQ(Pinned(region, length), "bcdef");
  // The write took three of the five.
  ConsumeBytes(&queue, 3);
  EXPECT_EQ(queue.retired, nullptr);
  std::string rest;
  for (int byte; (byte = TakeByte(&queue)) >= 0;)
    rest += static_cast<char>(byte);
  EXPECT_EQ(rest, "efgh" + more + most);
  EXPECT_EQ(TakeByte(&queue), -1);
  FreeByteQueue(&queue);
}

TEST_F(KLibTest, ByteQueueReusesItsFrontWhenNothingIsPinned) {
  ByteQueue queue;
  ASSERT_TRUE(InitByteQueue(&queue, 8, kOwner));
  ASSERT_TRUE(AppendBytes(&queue, "123456", 6));
  for (int i = 0; i < 5; ++i)
    TakeByte(&queue);
  unsigned char* block = queue.data;
  ASSERT_TRUE(AppendBytes(&queue, "abcdefg", 7));  // fits after moving "6" to the front
  EXPECT_EQ(queue.data, block);
  size_t length = 0;
  const unsigned char* region = PinBytes(&queue, &length);
  EXPECT_EQ(Pinned(region, length), "6abcdefg");
  ConsumeBytes(&queue, 100);  // more than there is: empties it
  EXPECT_EQ(ByteQueueLength(&queue), 0u);
  FreeByteQueue(&queue);
}

TEST(SerialStatus, NamesEventsErrorsAndStatesInTheirOrder) {
  OsSerialLineStatus status = {};
  char text[600];
  FormatSerialStatus(0, &status, text, sizeof text);
  EXPECT_STREQ(text, "EVENT: ERROR: 0 bytes in input buffer. 0 bytes in output buffer.");
  status.errors = 0x8 | 0x800 | 0x4;
  status.ctsHold = status.txim = true;
  status.inQueue = 12;
  FormatSerialStatus(kEvTxEmpty | kEvRing | kEvCts | kEvRxChar, &status, text, sizeof text);
  EXPECT_STREQ(text,
               "EVENT: CTS RING RXCHAR TXEMPTY ERROR: DNS FRAME RXPARITY Tx waiting for CTS "
               "signal. Character waiting for Tx. 12 bytes in input buffer. 0 bytes in output "
               "buffer.");
  // A short buffer is filled, never overrun.
  char small[20];
  FormatSerialStatus(0x1FF, &status, small, sizeof small);
  EXPECT_EQ(strlen(small), sizeof small - 1);
}

#ifndef _WIN32

constexpr unsigned kNotify = 33768;

// The notices the worker posted, as the owner window would receive them.
struct Notices {
  std::mutex mutex;
  std::vector<uintptr_t> codes;
  void* window = nullptr;

  size_t Count(unsigned code) {
    std::lock_guard<std::mutex> guard(mutex);
    size_t count = 0;
    for (uintptr_t wParam : codes)
      count += (wParam & 0xFFFF) == code;
    return count;
  }
};
Notices* g_notices;

void Sink(void* window, unsigned message, uintptr_t wParam) {
  {
    std::lock_guard<std::mutex> guard(g_notices->mutex);
    EXPECT_EQ(message, kNotify);
    EXPECT_EQ(window, g_notices->window);
    g_notices->codes.push_back(wParam);
  }
}

template <typename Done>
bool WaitFor(Done done, int ms = 5000) {
  auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
  while (!done()) {
    if (std::chrono::steady_clock::now() > until) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

class SerialLine : public KLibTest {
 protected:
  void SetUp() override {
    KLibTest::SetUp();
    ASSERT_EQ(openpty(&master_, &slave_, nullptr, nullptr, nullptr), 0);
    termios raw;
    tcgetattr(master_, &raw);
    cfmakeraw(&raw);
    tcsetattr(master_, TCSANOW, &raw);
    fcntl(master_, F_SETFL, fcntl(master_, F_GETFL) | O_NONBLOCK);
    folder_ =
        (std::filesystem::temp_directory_path() / ("quill-serial-" + std::to_string(getpid())))
            .string();
    std::filesystem::create_directories(folder_);
    std::filesystem::remove(folder_ + "/com1");
    std::filesystem::create_symlink(ptsname(master_), folder_ + "/com1");
    SetSerialDeviceFolder(folder_.c_str());
    g_notices = &notices_;
    notices_.window = &notices_;
    previousSink_ = SetNoticeSink(Sink);
    ui_ = {[](void* context, const char* text, unsigned) -> int {
             static_cast<SerialLine*>(context)->messages_.push_back(text);
             return kIdOk;
           },
           this};
    previousUi_ = SetUiHost(&ui_);
  }
  void TearDown() override {
    SetUiHost(previousUi_);
    SetNoticeSink(previousSink_);
    SetSerialDeviceFolder(nullptr);
    if (master_ >= 0) close(master_);
    close(slave_);
    std::filesystem::remove_all(folder_);
    KLibTest::TearDown();
  }

  SerialPort* Open(uint32_t baud = 115200) {
    SerialPort* port = CreateSerialPort(1, baud, 0, 8, 0, kFlowNone);
    if (port && !OpenSerialPort(port, &notices_, kNotify)) {
      DestroySerialPort(port);
      return nullptr;
    }
    return port;
  }
  void Finish(SerialPort* port) {
    CloseSerialPort(port);
    DestroySerialPort(port);
  }
  // Everything the port sends until `size` bytes came (or `ms` passed).
  std::string ReadOtherEnd(size_t size, int ms = 10000) {
    std::string got;
    WaitFor(
        [&] {
          char buffer[4096];
          ssize_t n = read(master_, buffer, sizeof buffer);
          if (n > 0) got.append(buffer, static_cast<size_t>(n));
          return got.size() >= size;
        },
        ms);
    return got;
  }
  void WriteOtherEnd(const std::string& bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
      ssize_t n = write(master_, bytes.data() + done, bytes.size() - done);
      if (n > 0)
        done += static_cast<size_t>(n);
      else
        usleep(200);
    }
  }
  // What the port received until `size` bytes came, taken as the owner would after notices.
  std::string Drain(SerialPort* port, size_t size) {
    std::string got;
    WaitFor(
        [&] {
          for (int byte; (byte = ReadSerialByte(port)) >= 0;)
            got += static_cast<char>(byte);
          return got.size() >= size;
        },
        10000);
    return got;
  }

  int master_ = -1;
  int slave_ = -1;
  std::string folder_;
  Notices notices_;
  OsNoticeSink previousSink_ = nullptr;
  UiHost ui_ = {};
  const UiHost* previousUi_ = nullptr;
  std::vector<std::string> messages_;
};

std::string EveryByte(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i)
    bytes[i] = static_cast<char>((i * 7 + i / 256) & 0xFF);
  return bytes;
}

TEST_F(SerialLine, EveryByteValueGoesBothWays) {
  SerialPort* port = Open();
  ASSERT_NE(port, nullptr);
  std::string bytes = EveryByte(4096);
  WriteOtherEnd(bytes);
  EXPECT_EQ(Drain(port, bytes.size()), bytes);
  ASSERT_GE(notices_.Count(kSerialDataArrived), 1u);
  EXPECT_EQ(notices_.codes[0], (1u << 16) | kSerialDataArrived);
  SendSerial(port, bytes.data(), static_cast<int>(bytes.size()));
  EXPECT_EQ(ReadOtherEnd(bytes.size()), bytes);
  // A zero count sends nothing.
  SendSerial(port, "x", 0);
  EXPECT_EQ(ReadOtherEnd(1, 300), "");
  Finish(port);
  EXPECT_EQ(notices_.Count(kSerialWorkerFailed), 0u);
}

// The other end reads slowly, so writes stay pending while the interface keeps appending (the
// pinned region must survive the queue's growth), and data arrives at the same time.
TEST_F(SerialLine, AMegabyteEachWayWhileWritesArePending) {
  SerialPort* port = Open();
  ASSERT_NE(port, nullptr);
  std::string out = EveryByte(1 << 20);
  std::string in = EveryByte((1 << 20) + 13).substr(13);
  std::string gotOut;
  std::thread reader([&] { gotOut = ReadOtherEnd(out.size()); });
  std::thread writer([&] { WriteOtherEnd(in); });
  for (size_t at = 0; at < out.size(); at += 3000) {
    SendSerial(port, out.data() + at, static_cast<int>(std::min<size_t>(3000, out.size() - at)));
    if (at % 60000 == 0) usleep(1000);
  }
  std::string gotIn = Drain(port, in.size());
  reader.join();
  writer.join();
  EXPECT_TRUE(gotOut == out) << gotOut.size() << " of " << out.size() << " bytes sent";
  EXPECT_TRUE(gotIn == in) << gotIn.size() << " of " << in.size() << " bytes received";
  Finish(port);
}

TEST_F(SerialLine, OpenAndCloseAreIdempotentAndTheDeviceIsNotShared) {
  SerialPort* port = Open();
  ASSERT_NE(port, nullptr);
  OsSerial handle = port->handle;
  EXPECT_TRUE(OpenSerialPort(port, &notices_, kNotify));
  EXPECT_EQ(port->handle, handle);  // not opened again
  // A second opener is refused with the program's message, and so is a missing device.
  SerialPort* second = CreateSerialPort(1, 9600, 0, 8, 0, kFlowNone);
  SerialPort* missing = CreateSerialPort(7, 9600, 0, 8, 0, kFlowNone);
  EXPECT_FALSE(OpenSerialPort(second, &notices_, kNotify));
  EXPECT_FALSE(OpenSerialPort(missing, &notices_, kNotify));
  EXPECT_EQ(messages_, (std::vector<std::string>{"'COM1' device not ready or busy (Error=5)",
                                                 "'COM7' device not ready or busy (Error=2)"}));
  CloseSerialPort(port);
  CloseSerialPort(port);
  EXPECT_FALSE(port->open);
  // Closed, the port is free for the other object; sending to a closed one queues nothing.
  SendSerial(port, "lost", 4);
  EXPECT_EQ(ByteQueueLength(&port->transmit), 0u);
  EXPECT_TRUE(OpenSerialPort(second, &notices_, kNotify));
  Finish(second);
  DestroySerialPort(missing);
  DestroySerialPort(port);
  // Numbers beyond a byte are no port at all.
  EXPECT_EQ(CreateSerialPort(256, 9600, 0, 8, 0, kFlowNone), nullptr);
  EXPECT_EQ(CreateSerialPort(0, 9600, 0, 8, 0, kFlowNone), nullptr);
}

TEST_F(SerialLine, ARefusedSettingIsLoggedAndTheLineStillWorks) {
  LogCapture log;
  SerialPort* port = Open(50000000);
  ASSERT_NE(port, nullptr);
  EXPECT_NE(log.Text().find("SetCommState() Error=87\r\n"), std::string::npos) << log.Text();
  SendSerial(port, "AT\r", 3);
  EXPECT_EQ(ReadOtherEnd(3), "AT\r");
  Finish(port);
}

// Pulled in the middle of a write that the other end was not taking: the pending write ends with
// the worker, which says so once.
TEST_F(SerialLine, PullingTheOtherEndEndsTheWorkerWithOneNotice) {
  SerialPort* port = Open();
  ASSERT_NE(port, nullptr);
  LogCapture log;
  std::string pending = EveryByte(256 * 1024);
  SendSerial(port, pending.data(), static_cast<int>(pending.size()));
  usleep(50 * 1000);
  SendSerial(port, pending.data(), static_cast<int>(pending.size()));  // appended meanwhile
  close(master_);
  master_ = -1;
  EXPECT_TRUE(WaitFor([&] { return notices_.Count(kSerialWorkerFailed) == 1; }));
  usleep(100 * 1000);
  EXPECT_EQ(notices_.Count(kSerialWorkerFailed), 1u);  // no flood
  EXPECT_NE(log.Text().find("Error=1167"), std::string::npos) << log.Text();
  EXPECT_TRUE(port->open);  // until the owner closes it
  Finish(port);
}

// The terminal document over the line: typing goes out, arrivals come in as lines, a pulled line
// is opened again by the failure notice, and the document takes its port along when it goes.
TEST_F(SerialLine, ATerminalDocumentTalksToTheDevice) {
  EditDocument* document = NewDocumentFor("com1,9600,0,8,0,0");
  EditorView view = {};
  view.document = document;
  ASSERT_TRUE(OpenTerminal(document, &notices_));
  for (char16_t unit : std::u16string(u"AT\r\0", 4))
    TerminalTyped(document, unit);
  EXPECT_EQ(ReadOtherEnd(3), "AT\r");
  WriteOtherEnd("OK\r\n");
  auto shown = [&] {
    std::vector<uintptr_t> codes;
    {
      std::lock_guard<std::mutex> guard(notices_.mutex);
      codes.swap(notices_.codes);
    }
    for (uintptr_t wParam : codes)
      TerminalNoticed(&view, wParam);
    std::vector<std::string> lines;
    for (int i = 0; i < document->lineCount; ++i) {
      const LineRecord* line = document->lines[i];
      lines.push_back(line ? std::string(line->text, line->text + line->length) : "");
    }
    return lines;
  };
  EXPECT_TRUE(WaitFor([&] { return shown() == std::vector<std::string>{"OK", ""}; }));
  // The device goes and comes back under the same name.
  close(master_);
  ASSERT_TRUE(WaitFor([&] { return notices_.Count(kSerialWorkerFailed) == 1; }));
  close(slave_);
  ASSERT_EQ(openpty(&master_, &slave_, nullptr, nullptr, nullptr), 0);
  termios raw;
  tcgetattr(master_, &raw);
  cfmakeraw(&raw);
  tcsetattr(master_, TCSANOW, &raw);
  fcntl(master_, F_SETFL, fcntl(master_, F_GETFL) | O_NONBLOCK);
  std::filesystem::remove(folder_ + "/com1");
  std::filesystem::create_symlink(ptsname(master_), folder_ + "/com1");
  shown();
  ASSERT_TRUE(document->terminal->port->open);
  WriteOtherEnd("a\nb");
  EXPECT_TRUE(WaitFor([&] { return shown() == std::vector<std::string>{"OK", "a", "b"}; }));
  TerminalTyped(document, u'Z');
  EXPECT_EQ(ReadOtherEnd(1), "Z");
  EXPECT_TRUE(messages_.empty());
  FreeDocument(document);
  // Closed: the device is free again.
  SerialPort* again = Open();
  EXPECT_NE(again, nullptr);
  if (again) Finish(again);
}

#endif  // _WIN32

}  // namespace
