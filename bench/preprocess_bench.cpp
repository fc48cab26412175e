// The preprocessor and declaration scan against the cross compiler's own preprocessor, in the
// same run on the same source: quill-tool lookup of CreateWindowExW in a source that includes
// <windows.h>, against x86_64-w64-mingw32-gcc -E of that source. Each side runs as a child
// process; the best of five wall times and the children's peak memory are printed.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

const char kHeaders[] = "/usr/share/mingw-w64/include";

// Wall seconds and peak resident kilobytes of one command.
bool Run(const std::string& command, double* seconds, long* peakKb) {
  auto start = std::chrono::steady_clock::now();
  pid_t child = fork();
  if (child < 0) return false;
  if (child == 0) {
    execl("/bin/sh", "sh", "-c", (command + " >/dev/null 2>&1").c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  struct rusage usage = {};
  if (wait4(child, &status, 0, &usage) < 0) return false;
  std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  *seconds = took.count();
  *peakKb = usage.ru_maxrss;
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool Best(const std::string& command, double* seconds, long* peakKb) {
  *seconds = 1e30;
  *peakKb = 0;
  for (int i = 0; i < 5; ++i) {
    double s;
    long kb;
    if (!Run(command, &s, &kb)) return false;
    if (s < *seconds) *seconds = s;
    if (kb > *peakKb) *peakKb = kb;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::string self = argc > 0 ? argv[0] : "";
  std::string tool = self.substr(0, self.rfind('/') + 1) + "quill-tool";
  std::string source = "/tmp/quill_preprocess_bench.c";
  std::ofstream(source) << "#include <windows.h>\nint main(void) { return 0; }\n";
  double ours, theirs;
  long oursKb, theirsKb;
  if (!Best(tool + " lookup -I " + kHeaders + " " + source + " CreateWindowExW", &ours, &oursKb)) {
    fprintf(stderr, "preprocess_bench: quill-tool lookup failed\n");
    return 1;
  }
  if (!Best("x86_64-w64-mingw32-gcc -E " + source + " -o /dev/null", &theirs, &theirsKb)) {
    fprintf(stderr, "preprocess_bench: x86_64-w64-mingw32-gcc -E failed\n");
    return 1;
  }
  printf("%-40s %8.1f ms %7ld KB   %-12s %8.1f ms %7ld KB   ratio %.2f\n",
         "lookup CreateWindowExW <windows.h>", ours * 1e3, oursKb, "gcc -E", theirs * 1e3, theirsKb,
         ours / theirs);
  std::remove(source.c_str());
  return 0;
}
