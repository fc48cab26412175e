// The program's command line: one optional document or project path after the program name.
#pragma once
#include "foundation/path.h"

// Takes the first argument after the program name (`line` in the internal form): a text in double
// or single quotes, or else everything up to the first character below 33; at most
// kPathSize - 1 bytes; backslashes become forward slashes. `path` holds kPathSize
// bytes. Returns the started-with-file flag: an argument that is not a project file.
bool ParseCommandLine(const char* line, char* path);

// True when the name's extension is "prj" in any case.
bool IsProjectPath(const char* path);
