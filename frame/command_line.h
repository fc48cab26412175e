// The program's command line: one optional document or project path after the program name.
#pragma once

constexpr int kCommandPathSize = 780;

// Takes the first argument after the program name (`line` in the internal form): a text in double
// or single quotes, or else everything up to the first character below 33; at most
// kCommandPathSize - 1 bytes; backslashes become forward slashes. `path` holds kCommandPathSize
// bytes. Returns the started-with-file flag: an argument that is not a project file.
bool ParseCommandLine(const char* line, char* path);

// True when the name's extension is "prj" in any case.
bool IsProjectPath(const char* path);
