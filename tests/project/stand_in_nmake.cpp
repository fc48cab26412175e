// Stands in for a compiler folder's NMAKE in the batch-file test: appends its working folder and
// arguments to "NMAKE.LOG" in that folder, leaves the two working files the real make files
// leave, and "builds" the makefile's T= output as a copy of itself (nothing when the makefile
// holds the line FAIL=1). Run under another name (the
// output), it only notes that it ran.
#include <direct.h>
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
  char folder[1024] = "";
  if (!_getcwd(folder, sizeof folder)) return 1;
  FILE* log = fopen("NMAKE.LOG", "ab");
  if (!log) return 1;
  std::string self = argv[0];
  size_t slash = self.find_last_of("\\/");
  std::string name = slash == std::string::npos ? self : self.substr(slash + 1);
  if (_stricmp(name.c_str(), "NMAKE.EXE") != 0 && _stricmp(name.c_str(), "NMAKE") != 0) {
    fprintf(log, "RUN|%s\n", folder);
    fclose(log);
    return 0;
  }
  fprintf(log, "NMAKE|%s", folder);
  for (int i = 1; i < argc; ++i)
    fprintf(log, "|%s", argv[i]);
  fputc('\n', log);
  fclose(log);
  fclose(fopen("TargetList.mak", "wb"));
  fclose(fopen("TargetCompile.mak", "wb"));
  if (argc < 2) return 2;
  std::ifstream makefile(argv[1], std::ios::binary);
  std::string line, output;
  while (std::getline(makefile, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line == "FAIL=1") return 2;  // a build that fails makes nothing
    if (line.compare(0, 2, "T=") == 0) output = line.substr(2);
  }
  if (!output.empty()) {
    char module[MAX_PATH];
    GetModuleFileNameA(nullptr, module, MAX_PATH);
    std::ifstream in(module, std::ios::binary);
    std::ofstream(output, std::ios::binary)
        << std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  return 0;
}
