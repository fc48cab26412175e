#include "tests/support/capture.h"

#include <fstream>
#include <iterator>

namespace {

int g_height = 768;
std::vector<PaintedNote> g_notes;

int CapturedHeight() {
  return g_height;
}
void CapturedDraw(int x, int y, const char* text) {
  g_notes.push_back({x, y, text});
}

long long FileSize(const std::string& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  return file ? static_cast<long long>(file.tellg()) : 0;
}

}  // namespace

LogCapture::LogCapture() {
  char path[260];
  if (GetDebugLogPath(path, sizeof path)) path_ = path;
  start_ = FileSize(path_);
}

std::string LogCapture::Text() const {
  std::ifstream file(path_, std::ios::binary);
  if (!file) return {};
  file.seekg(start_);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

NoteCapture::NoteCapture(int screenHeight) : surface_{CapturedHeight, CapturedDraw} {
  g_height = screenHeight;
  g_notes.clear();
  previous_ = SetScreenSurface(&surface_);
}

NoteCapture::~NoteCapture() {
  SetScreenSurface(previous_);
}

const std::vector<PaintedNote>& NoteCapture::Notes() const {
  return g_notes;
}
