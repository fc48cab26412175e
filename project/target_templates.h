// The starting source files of a new target, copied from the "TEMPLATE" folder beside the program.
#pragma once

struct Project;
struct ProjectTarget;
struct ProjectFile;

// Copies the target type's templates from `templateFolder` (internal form) into the project folder
// without overwriting, and adds the copied files that belong in the target's list. Returns the
// number of files copied; `lastListed` receives the last file added to the list (the node the
// tree selects), or null.
int CopyTargetTemplates(Project* project, ProjectTarget* target, const char* templateFolder,
                        ProjectFile** lastListed);
// The same from "TEMPLATE" in the program's folder.
int CopyTargetTemplates(Project* project, ProjectTarget* target, ProjectFile** lastListed);
