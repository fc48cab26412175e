// Building a target: the program compiles nothing itself. It writes a makefile that sets a few
// variables and includes the make file of the target's compiler folder beside the program, and a
// batch file "C.BAT" that runs that folder's NMAKE on it, and starts the batch file.
#pragma once
#include "foundation/path.h"

struct Project;
struct ProjectTarget;

enum class BuildMode { kBuild, kRebuild, kRun };

// The makefile's text; a block of kOwnerProjectOutput, null when it can't be allocated.
char* ComposeMakefile(const ProjectTarget* target);
// The batch file's text for a project folder and a program folder (internal form, no trailing
// separator); `run` adds running the output.
char* ComposeBatch(const ProjectTarget* target, const char* projectFolder,
                   const char* programFolder, bool run);

// Asks about unsaved sources, deletes "OBJ/" (rebuild) or the old output (run), writes the makefile
// and, unless `makefileOnly`, "C.BAT", which it then starts. `makefilePathOut` (kPathSize)
// and `compilerOut` (kCompilerNameSize) receive the makefile's path and the compiler name when
// given. Returns 1 on success, 0 after the message that says why not (or a cancel).
int MakeTarget(Project* project, ProjectTarget* target, bool rebuild, bool run, bool makefileOnly,
               char* makefilePathOut, char* compilerOut);
// The same for a menu command.
int MakeTarget(Project* project, ProjectTarget* target, BuildMode mode);
