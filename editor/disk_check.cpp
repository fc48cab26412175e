// Whether the file changed under the editor, and the question before closing a changed document.
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "foundation/fileutil.h"
#include "foundation/host.h"

bool CheckChangedOnDisk(EditorView* view) {
  EditDocument* document = view->document;
  if (!document) return false;
  if (document->skipReloadCheck) {
    // The program activated the window itself: this one time is not the user's.
    document->skipReloadCheck = 0;
    return false;
  }
  if (document->noCheck || document->untitled) return false;
  FileHandle file = FileOpen(document->path, kFileRead, kShareRead | kShareWrite, kOpenExisting, 0);
  if (file == kInvalidFile) {
    unsigned error = FileLastError();
    if ((error == kErrorFileNotFound || error == kErrorPathNotFound) &&
        document->fileStamp != kMissingFileStamp) {
      // Reported once: the stamp now says that the file is missing.
      document->fileStamp = kMissingFileStamp;
      HostMessagePath(115, kMbOk | kMbIconExclamation, document->path);
    }
    return false;
  }
  unsigned stamp = FileStamp(file);
  FileClose(file);
  if (stamp == document->fileStamp) return false;
  // Over unsaved edits the question says what reloading throws away, and Cancel is the default.
  int answer =
      document->modified
          ? HostMessagePath(170, kMbOkCancel | kMbIconExclamation | kMbDefButton2, document->path)
          : HostMessagePath(89, kMbOkCancel | kMbIconQuestion, document->path);
  if (answer != kIdOk) {
    document->fileStamp = stamp;
    return false;
  }
  document->encoding = 0;
  SaveFileState(view);
  return LoadDocument(view);
}

int ConfirmSaveIfModified(EditorView* view) {
  EditDocument* document = view->document;
  if (!document || !document->modified) return kIdNo;
  return HostMessagePath(85, kMbYesNoCancel | kMbIconQuestion, document->path);
}
