// Test helpers that watch the support library's outlets: the text appended to DEBUG.TXT while a
// capture lives, and the screen notes painted while a capture is installed.
#pragma once
#include <string>
#include <vector>

#include "foundation/diagnostics.h"

class LogCapture {
 public:
  LogCapture();
  // Everything appended to the log since the capture began.
  std::string Text() const;

 private:
  std::string path_;
  long long start_ = 0;
};

struct PaintedNote {
  int x;
  int y;
  std::string text;
};

class NoteCapture {
 public:
  explicit NoteCapture(int screenHeight = 768);
  ~NoteCapture();
  NoteCapture(const NoteCapture&) = delete;
  NoteCapture& operator=(const NoteCapture&) = delete;

  const std::vector<PaintedNote>& Notes() const;

 private:
  ScreenSurface surface_;
  const ScreenSurface* previous_;
};
