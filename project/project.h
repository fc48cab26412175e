// The project model: build targets, each with its source files and build options. One project is
// open at a time, held by the project window; it is kept in a ".prj" profile file (project_file.h)
// and turned into a makefile and a batch file (make_target.h).
#pragma once
#include "foundation/path.h"

constexpr int kTargetNameSize = 64;    // up to 63 characters
constexpr int kCompilerNameSize = 32;  // up to 31 characters
constexpr char kDefaultCompiler[] = "VC9";
extern const char kProjectSection[];  // "Project" of the settings: the dialogs' defaults

// Owner numbers of the project manager's blocks.
enum : int {
  kOwnerProjectTarget = 6001,
  kOwnerProjectFile = 6002,
  kOwnerProjectText = 6003,
  kOwnerProjectOutput = 6004,
  kOwnerProjectScratch = 6005,
  kOwnerProjectFolderWalk = 6006,
};

enum : int { kPlatform32 = 0, kPlatform64 = 1 };
enum : int {
  kTargetConsole = 0,
  kTargetWindow = 1,
  kTargetDialog = 2,
  kTargetDll = 3,
  kTargetLib = 4,
  kTargetAsm = 5,
  kTargetTypeCount = 6,
};

struct ProjectFile {
  ProjectFile* next;
  char* path;  // internal form, relative to the project folder where possible
};

// Text fields are null when there is no text; multi-line ones hold "\r\n" between lines.
struct ProjectTarget {
  ProjectTarget* next;
  int platform;
  int type;
  int useDefaultLib;  // 0 adds /DNODEFAULTLIB and /NODEFAULTLIB
  int useKLib;        // the in-house support library: decides the template files
  ProjectFile* files;
  char* makeStart;   // multi-line: written at the top of the makefile
  char* addCompile;  // multi-line: further sources
  char* cOption;
  char* rcOption;
  char* asmOption;
  char* linkOption;
  char* libraries;  // multi-line: one library a line
  char* defines;    // multi-line: one /D value a line
  char* includes;   // multi-line: one include folder a line
  char compiler[kCompilerNameSize];
  char name[kTargetNameSize];
  void* treeItem;  // the target's node in the project window
};

struct Project {
  char path[kPathSize];  // the ".prj" file, internal form
  bool modified;
  bool partial;  // the file holds more targets than were read: not saved without being asked
  ProjectTarget* targets;  // in file order
  void* tree;              // the project window's tree view
};

// The radio-button label, output extension (".exe", ".dll", ".lib") and makefile kind of a target
// type. Values outside the six known types build like a window program.
const char* TargetTypeLabel(int type);
const char* TargetExtension(int type);
const char* TargetMakefileKind(int type);

// "%s [%s]": the target's name and its output extension, as the tree shows it.
int FormatTargetLabel(const ProjectTarget* target, char* buffer, int size);
// The target name followed by the output extension.
int FormatTargetOutput(const ProjectTarget* target, char* buffer, int size);

// A target with every field empty, compiler "VC9"; null after the allocator's note.
ProjectTarget* NewTarget();
// The same with the target dialog's starting values from section "Project" of the settings.
ProjectTarget* NewDefaultTarget();
// Stores platform, type, the two library flags and the name as the next target's defaults.
void StoreTargetDefaults(const ProjectTarget* target);
void FreeTarget(ProjectTarget* target);
void FreeProjectTargets(Project* project);

// Replaces a text field with a copy of `text`; an empty or null text leaves none. False when the
// copy can't be allocated (the field is then left as it was).
bool SetTargetText(char** field, const char* text);

void AppendTarget(Project* project, ProjectTarget* target);
// Unlinks and frees a target of the project; false when it isn't one of its targets.
bool RemoveTarget(Project* project, ProjectTarget* target);
int CountTargets(const Project* project);
// The first target named exactly `name`, or null.
ProjectTarget* FindTarget(const Project* project, const char* name);

// The project file's folder (no trailing '/'); the length, -1 when it does not fit.
int ProjectFolder(const Project* project, char* buffer, int size);
// `path` relative to the folder of `projectPath` when it lies inside it, else unchanged.
int MakeProjectRelative(const char* projectPath, const char* path, char* buffer, int size);

enum class AddFileResult { kAdded, kAlreadyListed, kFailed };
// Adds a file (made relative to the project folder) to the end of the target's list, unless the
// list already holds that path without regard to case. `node` receives the new or existing entry.
AddFileResult AddProjectFile(Project* project, ProjectTarget* target, const char* path,
                             ProjectFile** node);
// Appends a path as it stands (loading, templates); false when it can't be allocated.
bool AppendTargetFile(ProjectTarget* target, const char* path);
bool RemoveProjectFile(Project* project, ProjectTarget* target, ProjectFile* file);
int CountTargetFiles(const ProjectTarget* target);

// The new-project dialog's starting path: "DefPrjFolder" of section "Project" (or the program's
// folder) followed by "NoName/NoName.prj", its first character upper-cased.
int DefaultProjectPath(char* buffer, int size);
