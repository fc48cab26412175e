// Running quill-tool from a test, the way a user's script would.
#pragma once
#include <sys/wait.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

struct ToolRun {
  std::string out;
  int status;  // the exit status, -1 when the tool did not exit normally
};

// Runs `quill-tool ARGUMENTS` through the shell; with `mergeErrors` stderr comes with stdout,
// otherwise it is dropped.
inline ToolRun RunTool(const std::string& arguments, bool mergeErrors) {
  std::string command = std::string(QUILL_TOOL) + " " + arguments + (mergeErrors ? " 2>&1" : " 2>/dev/null");
  ToolRun run{{}, -1};
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return run;
  char buffer[256];
  size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) run.out.append(buffer, n);
  int raw = pclose(pipe);
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  return run;
}

inline ToolRun Tool(const std::string& arguments) {
  return RunTool(arguments, false);
}

inline std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}
