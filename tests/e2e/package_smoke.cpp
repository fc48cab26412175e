// quill-smoke QUILL.EXE DOCUMENT TEXT [SCREENSHOT.bmp]: starts an unpacked Quill.exe with a
// document, types TEXT at the top of it, saves with Ctrl+S and closes the program. Fails when a
// step does not happen, when Quill ends with a non-zero code or when it reports leaked memory.
// The caller checks the saved bytes and the files the run left behind.
#include <cstdio>
#include <string>

#include "tests/e2e/e2e_support.h"

namespace {

int Fail(const char* what) {
  fprintf(stderr, "quill-smoke: %s\n", what);
  return 1;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 4 || argc > 5) {
    fprintf(stderr, "usage: quill-smoke QUILL.EXE DOCUMENT TEXT [SCREENSHOT.bmp]\n");
    return 2;
  }
  long long logStart = DebugLogSize();
  QuillProcess quill;
  if (!quill.Start(argv[1], L"\"" + std::wstring(argv[2]) + L"\"")) return Fail("no frame window");
  HWND editor = nullptr;
  for (int i = 0; i < 100 && !editor; ++i, Sleep(50))
    editor = OnlyChild(quill);
  if (!editor) return Fail("the document did not open in one editor window");
  FocusEditor(quill, editor);
  TypeText(argv[3]);
  Settle();
  Chord({VK_CONTROL}, 'S');
  Settle();
  if (argc == 5) SaveScreenshot(argv[4]);
  int exitCode = quill.CloseAndWait(10000);
  if (exitCode != 0) {
    fprintf(stderr, "quill-smoke: Quill ended with %d\n", exitCode);
    return 1;
  }
  if (DebugLogSince(logStart).find(">>>Leaked Memory") != std::string::npos)
    return Fail("Quill reported leaked memory");
  return 0;
}
