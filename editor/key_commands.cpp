#include "editor/key_commands.h"

#include <cstring>

#include "editor/brace_match.h"
#include "editor/case_change.h"
#include "editor/command_host.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editing.h"
#include "editor/editor_host.h"
#include "editor/editor_view.h"
#include "editor/find_replace.h"
#include "editor/line_continuation.h"
#include "editor/line_sort.h"
#include "editor/open_under_caret.h"
#include "editor/pending_prefix.h"
#include "editor/undo.h"
#include "editor/view_commands.h"
#include "editor/word_moves.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/host.h"

namespace {

constexpr int kMessageOverwrite = 116;
constexpr int kBlockShift = 4;

// The commands that only run with Ctrl+O pending do their other meaning otherwise.
bool PrefixIs(int prefix) {
  return PendingPrefix == prefix;
}

bool RunCommand(EditorView* view, int id) {
  EditDocument* document = view->document;
  if (id >= kCmdSetBookmark1 && id < kCmdSetBookmark1 + kBookmarkCount) {
    SetBookmark(view, id - kCmdSetBookmark1 + 1);
    return true;
  }
  if (id >= kCmdJumpBookmark1 && id < kCmdJumpBookmark1 + kBookmarkCount) {
    JumpToBookmark(view, id - kCmdJumpBookmark1 + 1);
    return true;
  }
  switch (id) {
    case kCmdContinuation:
      ToggleContinuation(view);
      return true;
    case kCmdScrollUp:
      ScrollByLine(view, -1);
      return true;
    case kCmdScrollDown:
      ScrollByLine(view, 1);
      return true;
    case kCmdDeleteWordLeft:
      DeletePreviousWord(view);
      return true;
    case kCmdSaveOtherFormat:
      SaveInOtherFormat(view);
      return true;
    case kCmdWordLeft:
      CaretToPreviousWord(view);
      return true;
    case kCmdWordRight:
      CaretToNextWord(view);
      return true;
    case kCmdUndo:
      Undo(view);
      return true;
    case kCmdRedo:
      Redo(view);
      return true;
    case kCmdUnindent:
    case kCmdIndent:
      if (HasSelection(view)) ShiftBlock(view, id == kCmdIndent ? kBlockShift : -kBlockShift);
      return true;
    case kCmdSelectAll:
      if (PrefixIs(kPrefixCtrlQ)) {
        ResetPendingPrefix();
        ReplaceDialog(view);
      } else {
        SelectAll(view);
      }
      return true;
    case kCmdGoToLine:
      GoToLine(view);
      return true;
    case kCmdLoad:
      LoadDocument(view);
      return true;
    case kCmdSave:
      SaveDocument(view, false);
      return true;
    case kCmdSaveAs:
      SaveDocumentAs(view);
      return true;
    case kCmdTextStart:
    case kCmdSelectToTextStart:
      CaretToTextStart(view, id == kCmdSelectToTextStart);
      return true;
    case kCmdTextEnd:
    case kCmdSelectToTextEnd:
      CaretToTextEnd(view, id == kCmdSelectToTextEnd);
      return true;
    case kCmdOpenUnderCaret:
      OpenFileUnderCaret(view);
      return true;
    case kCmdCut:
      CutSelection(view);
      return true;
    case kCmdCopy:
      if (PrefixIs(kPrefixCtrlO))
        SetBlockMode(view, 1);
      else
        CopySelection(view);
      return true;
    case kCmdPaste:
      Paste(view);
      return true;
    case kCmdFind:
      if (PrefixIs(kPrefixCtrlK)) {
        ChangeWordCase(view, true);
      } else {
        ResetPendingPrefix();
        FindDialog(view, false);
      }
      return true;
    case kCmdFindNext:
      FindDialog(view, true);
      return true;
    case kCmdReplace:
      ResetPendingPrefix();
      ReplaceDialog(view);
      return true;
    case kCmdDateTime:
      InsertDateTime(view);
      return true;
    case kCmdActivated:
      if (!document->skipReloadCheck && !document->noCheck) CheckChangedOnDisk(view);
      document->skipReloadCheck = 0;
      return true;
    case kCmdMatchBrace:
      MatchBrace(view);
      return true;
    case kCmdLineSort: {
      LineSortOptions options;
      ReadLineSortOptions(&options);
      if (!CommandAskSortOptions(view, &options)) return true;
      WriteLineSortOptions(options);
      SortLines(view, options);
      return true;
    }
    case kCmdNotFinished:
      HostMessage("I have not finished it yet.", kMbOk | kMbIconInformation);
      return true;
    default:
      return false;
  }
}

}  // namespace

void SetBlockMode(EditorView* view, int mode) {
  view->blockMode = mode;
  EditorRepaintAll(view);
}

bool SaveInOtherFormat(EditorView* view) {
  EditDocument* document = view->document;
  OtherFormatAnswer answer = {};
  answer.encoding = document->encoding ? document->encoding : 3;
  answer.tabSize = document->tabSize;
  answer.lfOnly = document->lfOnly;
  answer.hasBom = document->hasBom;
  FormatStr(answer.path, sizeof answer.path, "%s", document->path);
  if (!CommandAskOtherFormat(view, &answer)) return false;
  if (answer.encoding < 1 || answer.encoding > 4 || answer.tabSize < 0 || answer.tabSize > 255 ||
      !answer.path[0])
    return false;
  if (FileGetAttributes(answer.path) != kNoAttributes &&
      HostMessagePath(kMessageOverwrite, kMbYesNo | kMbIconQuestion, answer.path) != kIdYes)
    return false;
  // The copy is written by the document's own saver with the chosen form; the document itself
  // keeps its name, form and modified state.
  EditDocument saved = *document;
  document->encoding = static_cast<uint8_t>(answer.encoding);
  document->tabSize = static_cast<uint8_t>(answer.tabSize);
  document->lfOnly = answer.lfOnly ? 1 : 0;
  // Only the Unicode forms carry a mark.
  document->hasBom = answer.hasBom && answer.encoding >= 3 ? 1 : 0;
  document->untitled = 0;
  memcpy(document->path, answer.path, sizeof document->path);
  bool done = SaveDocument(view, true);
  document->encoding = saved.encoding;
  document->tabSize = saved.tabSize;
  document->lfOnly = saved.lfOnly;
  document->hasBom = saved.hasBom;
  document->untitled = saved.untitled;
  memcpy(document->path, saved.path, sizeof document->path);
  return done;
}

bool RunEditorCommand(EditorView* view, int id) {
  if (!view || !view->document) return false;
  switch (id) {
    case kCmdPrefixO:
      if (PrefixIs(kPrefixCtrlO))
        ChangeCharacterCase(view);
      else
        SetPendingPrefix(kPrefixCtrlO);
      return true;
    case kCmdPrefixQ:
      SetPendingPrefix(kPrefixCtrlQ);
      return true;
    case kCmdPrefixK:
      if (PrefixIs(kPrefixCtrlO))
        SetBlockMode(view, 0);
      else
        SetPendingPrefix(kPrefixCtrlK);
      return true;
    default:
      break;
  }
  bool known = RunCommand(view, id);
  ResetPendingPrefix();
  return known;
}
