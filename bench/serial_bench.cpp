// A megabyte of mixed text lines pushed through a pseudo-terminal into a terminal document, until
// the last line is shown, against the same megabyte through the same kind of pseudo-terminal into
// cat. The document's side runs the engine's worker thread and an interface loop that handles
// its notices as the window would (and answers a key between them).
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

#include "comm/serial_port.h"
#include "comm/terminal_session.h"
#include "editor/document.h"
#include "editor/editor_view.h"
#include "foundation/library.h"

namespace {

using Clock = std::chrono::steady_clock;

std::mutex g_mutex;
std::condition_variable g_posted;
std::deque<uintptr_t> g_queue;

void Post(void*, unsigned, uintptr_t wParam) {
  std::lock_guard<std::mutex> guard(g_mutex);
  g_queue.push_back(wParam);
  g_posted.notify_one();
}

std::string MixedLines(size_t size) {
  static const char* kWords[] = {"AT+CSQ",
                                 "+CSQ: 21,99",
                                 "OK",
                                 "RING",
                                 "temperature=23.5C",
                                 "\xB0\xA1\xB3\xAA",
                                 "[boot] loading kernel ... done",
                                 "0x1F3A"};
  std::string text;
  for (unsigned i = 0; text.size() < size; ++i) {
    text += std::to_string(i) + " " + kWords[i % 8] + " " + kWords[(i * 5) % 8];
    text += i % 3 ? "\r\n" : "\n";
  }
  text.resize(size);
  text += "\r\nLAST\r\n";
  return text;
}

void MakeRaw(int fd) {
  termios raw;
  tcgetattr(fd, &raw);
  cfmakeraw(&raw);
  tcsetattr(fd, TCSANOW, &raw);
}

void WriteAll(int fd, const std::string& bytes) {
  for (size_t done = 0; done < bytes.size();) {
    ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
    if (n > 0) {
      done += static_cast<size_t>(n);
    } else {
      pollfd entry = {fd, POLLOUT, 0};
      poll(&entry, 1, 100);
    }
  }
}

// Seconds until the document shows the last line; the longest pause between handled notices.
double ThroughTerminal(const std::string& text, double* longestGapMs, bool* whole) {
  int master, slave;
  openpty(&master, &slave, nullptr, nullptr, nullptr);
  MakeRaw(master);
  std::string folder =
      std::filesystem::temp_directory_path() / ("quill-bench-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder);
  std::filesystem::remove(folder + "/com1");
  std::filesystem::create_symlink(ptsname(master), folder + "/com1");
  SetSerialDeviceFolder(folder.c_str());
  SetNoticeSink(Post);

  EditDocument* document = NewDocumentFor("COM1,256000,0,8,0,0");
  EditorView view = {};
  view.document = document;
  if (!OpenTerminal(document, &view)) {
    fprintf(stderr, "the port did not open\n");
    exit(1);
  }
  auto start = Clock::now();
  std::thread device([&] { WriteAll(master, text); });
  auto last = Clock::now();
  *longestGapMs = 0;
  for (;;) {
    uintptr_t wParam;
    {
      std::unique_lock<std::mutex> lock(g_mutex);
      g_posted.wait_for(lock, std::chrono::milliseconds(50), [] { return !g_queue.empty(); });
      if (g_queue.empty()) continue;
      wParam = g_queue.front();
      g_queue.pop_front();
    }
    auto now = Clock::now();
    double gap = std::chrono::duration<double, std::milli>(now - last).count();
    if (gap > *longestGapMs) *longestGapMs = gap;
    TerminalNoticed(&view, wParam);
    last = Clock::now();
    const LineRecord* line =
        document->lineCount >= 2 ? document->lines[document->lineCount - 2] : nullptr;
    if (line && line->length == 4 && line->text[0] == 'L' && line->text[3] == 'T') break;
  }
  double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  device.join();
  size_t units = 0;
  for (int i = 0; i < document->lineCount; ++i)
    units += document->lines[i] ? document->lines[i]->length : 0;
  size_t expected = 0;
  for (size_t i = 0; i < text.size(); ++i)
    expected += !(text[i] == '\r' || text[i] == '\n');
  *whole = units == expected;
  FreeDocument(document);
  close(master);
  close(slave);
  std::filesystem::remove_all(folder);
  SetNoticeSink(nullptr);
  return seconds;
}

// Seconds until cat, reading the pseudo-terminal, has handed on every byte.
double ThroughCat(const std::string& text) {
  int master, slave;
  openpty(&master, &slave, nullptr, nullptr, nullptr);
  MakeRaw(master);
  MakeRaw(slave);
  int out[2];
  if (pipe(out) != 0) exit(1);
  pid_t cat = fork();
  if (cat == 0) {
    dup2(slave, 0);
    dup2(out[1], 1);
    int quiet = open("/dev/null", O_WRONLY);  // its read error once the line is closed
    dup2(quiet, 2);
    close(master);
    close(out[0]);
    execlp("cat", "cat", static_cast<char*>(nullptr));
    _exit(127);
  }
  close(slave);
  close(out[1]);
  auto start = Clock::now();
  std::thread device([&] { WriteAll(master, text); });
  size_t got = 0;
  char buffer[65536];
  while (got < text.size()) {
    ssize_t n = read(out[0], buffer, sizeof buffer);
    if (n <= 0) break;
    got += static_cast<size_t>(n);
  }
  double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  device.join();
  close(master);
  kill(cat, SIGTERM);
  waitpid(cat, nullptr, 0);
  close(out[0]);
  return seconds;
}

}  // namespace

int main() {
  InitKLib(nullptr, nullptr);
  std::string text = MixedLines(1 << 20);
  double best = 1e30, bestCat = 1e30, gap = 0;
  bool whole = true;
  for (int run = 0; run < 5; ++run) {
    double longest = 0;
    bool complete = false;
    double seconds = ThroughTerminal(text, &longest, &complete);
    whole = whole && complete;
    if (seconds < best) best = seconds;
    if (longest > gap) gap = longest;
    double cat = ThroughCat(text);
    if (cat < bestCat) bestCat = cat;
  }
  printf("%-52s %8.3f s   %-14s %8.3f s   ratio %.2f\n",
         "1 MB of lines through a pty into a terminal document", best, "into cat", bestCat,
         best / bestCat);
  printf("  %.0f KB/s (target 250 KB/s); longest pause between handled notices %.1f ms; %s\n",
         text.size() / best / 1024, gap, whole ? "no byte lost" : "BYTES LOST");
  CloseKLib();
  return whole ? 0 : 1;
}
