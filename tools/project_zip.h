// Packing a project into one archive beside its project file: the project file and every file of
// every target, named relative to the project folder. Files outside it go under a folder named
// for their drive ("C/..." for C:, "UNC/server/share/..." for a network path, "ROOT/..." for a
// path from the root of the current drive); missing or unreadable files are skipped and listed.
#pragma once
#include <cstdint>

#include "foundation/text_builder.h"
#include "project/project.h"

struct ProjectZipHost {
  // Before each file (done 0) and between blocks of a large one; false stops the archive.
  bool (*progress)(void* context, int file, int files, const char* name, uint64_t done,
                   uint64_t size);
  void* context;
};

struct ProjectZipResult {
  int status;      // a ZipStatus
  unsigned error;  // the system's code when the archive could not be written
  int members;
  int skipped;
  TextBuffer skippedList;  // the skipped files' paths, each ending in '\n'
};

// The archive's name: the project file's with ".zip" for its extension.
bool ProjectArchivePath(const char* projectPath, char* archive, int size);
// The member name of `path` (absolute, or relative to `folder`) in an archive of `folder`;
// false when it does not fit or names no file.
bool ArchiveMemberName(const char* folder, const char* path, char* name, int size);
// Writes the archive; `result->skippedList` is the caller's to free (FreeText) in every case.
int CompressProject(const Project* project, const char* archive, const ProjectZipHost* host,
                    ProjectZipResult* result);
