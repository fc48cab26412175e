// The desk kept between runs: the frame's placement and the list of open documents with their
// window placements, in section "DocList" of the settings file or of a project file.
#pragma once
#include "foundation/path.h"

constexpr int kMaxSessionWindows = 100;

extern const char kDocListSection[];            // "DocList"
extern const char kProjectKey[];                // "Project"
extern const char kFramePlaceKey[];             // "FrameWnd"
extern const char kCommandLineFramePlaceKey[];  // "CLFrameWnd"

// Show states as the system numbers them.
enum : int { kShowNormal = 1, kShowMaximized = 3, kShowMinimized = 6 };

struct SessionWindow {
  const char* path;              // internal form; null for the project window
  bool untitled;                 // an untitled new document: not written, takes no index
  int left, top, width, height;  // the restored rectangle relative to the MDI client
  int show;
};

// Writes the windows (top first) into `file`: the project window under "Project", the documents
// under "0", "1", ... and an empty value after the last. At most 100 windows are looked at.
// Returns the number of documents written.
int SaveSessionList(const char* file, const SessionWindow* windows, int count);

struct SessionEntry {
  char path[kPathSize];
  int left, top, width, height, show;
};
// "\"%s\" %d %d %d %d %d"; the length the whole text needs, as FormatStr.
int FormatSessionEntry(const SessionEntry* entry, char* text, int size);
// Parses an entry as written; a quoted path is taken whole, an unquoted one up to the first blank.
// False when the path or any of the five numbers is missing.
bool ParseSessionEntry(const char* text, SessionEntry* entry);
// Reads entry `index` of `file`; false when the key is missing, empty or malformed.
bool ReadSessionEntry(const char* file, int index, SessionEntry* entry);
// The length of the readable list of `file`: indices from 0 up to the first missing or empty key.
// A malformed entry inside still counts (the opener skips it).
int SessionListLength(const char* file);

struct FramePlace {
  int left, top, width, height;
};
// "%d %d %d %d"; false when any number is missing.
bool ParseFramePlace(const char* text, FramePlace* place);
// A left (top) at or beyond the screen width (height) less the caption height becomes 0, so the
// caption stays reachable; negative values are kept.
void FitFramePlace(FramePlace* place, int screenWidth, int screenHeight, int captionHeight);
