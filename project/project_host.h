// What the project code asks of the rest of the program besides message boxes (foundation/host.h):
// the editor windows' unsaved sources, starting the batch file, and the frame's file list.
// Quill.exe installs the window implementation; tests and quill-tool install their own.
#pragma once

struct ProjectHost {
  void* context;
  // True when an editor window holds a source file that is modified and not saved.
  bool (*hasUnsavedSources)(void* context);
  // Saves every modified editor document.
  void (*saveAllSources)(void* context);
  // Starts a program without waiting (the batch file), `show` as the system's show state.
  bool (*startProgram)(void* context, const char* commandLine, int show);
  // A project was loaded: the frame refreshes its list of files.
  void (*projectLoaded)(void* context);
};

// Installs `host` (kept by pointer; null restores the default, which sees no editor windows and
// starts programs through the file utilities) and returns the previous one.
const ProjectHost* SetProjectHost(const ProjectHost* host);
const ProjectHost& CurrentProjectHost();
