// Paths of the C source analysis: internal form, '/' separators, compared without case as the
// system compares file names on Windows.
#pragma once
#include <cstddef>

#include "foundation/path.h"

// Joins `folder` and `name` (a name that is absolute already stands alone) into `out`, with '\'
// made '/', "." parts dropped and "dir/.." parts folded. False when it does not fit.
bool JoinSourcePath(const char* folder, const char* name, char* out, size_t size);
// The folder part of `path` (no trailing '/'; "." when there is none) and the name part.
void SplitSourcePath(const char* path, char* folder, size_t folderSize, const char** name);
