// quill-shot OUT.bmp QUILL.EXE [ARGUMENTS]: starts Quill, waits until its frame has painted,
// saves a screenshot of the screen and closes Quill cleanly. Used by ./run.sh --screenshot.
#include <cstdio>

#include "tests/e2e/quill_driver.h"

int wmain(int argc, wchar_t** argv) {
  if (argc < 3) {
    fprintf(stderr, "usage: quill-shot OUT.bmp QUILL.EXE [ARGUMENTS]\n");
    return 2;
  }
  std::wstring arguments;
  for (int i = 3; i < argc; ++i)
    arguments += (i > 3 ? L" \"" : L"\"") + std::wstring(argv[i]) + L"\"";
  QuillProcess quill;
  if (!quill.Start(argv[2], arguments)) {
    // A question asked while the frame is being made (the tab width of a file with tabs, say)
    // stands on the screen without it: the screen is kept as it is.
    bool saved = quill.Running() && SaveScreenshot(argv[1]);
    fprintf(stderr, "quill-shot: Quill did not show its frame%s\n",
            saved ? " (the screen is saved as it is)" : "");
    return 1;
  }
  Sleep(500);  // let the desktop settle around the new window
  bool saved = SaveScreenshot(argv[1]);
  int exitCode = quill.CloseAndWait(10000);
  if (!saved) fprintf(stderr, "quill-shot: could not save the screenshot\n");
  if (exitCode != 0) fprintf(stderr, "quill-shot: Quill ended with %d\n", exitCode);
  return saved && exitCode == 0 ? 0 : 1;
}
