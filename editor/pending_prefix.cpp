#include "editor/pending_prefix.h"

#include "editor/case_change.h"
#include "editor/document_io.h"
#include "editor/editing.h"
#include "editor/editor_host.h"
#include "editor/find_replace.h"
#include "editor/key_commands.h"

int PendingPrefix = kPrefixNone;
bool PrefixKeyTaken = false;

namespace {

constexpr int kStatusMessagePart = 2;

}  // namespace

const char* PrefixReminder(int prefix) {
  switch (prefix) {
    case kPrefixCtrlO:
      return "^O ... O:Change Case, C:Column Block, K:Line Block, F:Fill Char";
    case kPrefixCtrlK:
      return "^K ... E:Lowcase, F:Uppercase, S:Save";
    case kPrefixCtrlQ:
      return "^Q ... A:Replace, F:Find";
    default:
      return "";
  }
}

void SetPendingPrefix(int prefix) {
  PendingPrefix = prefix;
  PrefixKeyTaken = false;
  EditorStatusText(kStatusMessagePart, PrefixReminder(prefix));
}

void ResetPendingPrefix() {
  if (PendingPrefix == kPrefixNone) return;
  PendingPrefix = kPrefixNone;
  EditorStatusText(kStatusMessagePart, "");
}

namespace {

bool IsSecondKey(int prefix, int virtualKey) {
  switch (prefix) {
    case kPrefixCtrlK:
      return virtualKey == 'E' || virtualKey == 'F' || virtualKey == 'S';
    case kPrefixCtrlO:
      return virtualKey == 'O' || virtualKey == 'C' || virtualKey == 'K' || virtualKey == 'F';
    case kPrefixCtrlQ:
      return virtualKey == 'A' || virtualKey == 'F';
  }
  return false;
}

void RunSecondKey(EditorView* view, int prefix, int virtualKey) {
  switch (prefix * 256 + virtualKey) {
    case kPrefixCtrlK * 256 + 'E':
      ChangeWordCase(view, false);
      break;
    case kPrefixCtrlK * 256 + 'F':
      ChangeWordCase(view, true);
      break;
    case kPrefixCtrlK * 256 + 'S':
      SaveDocument(view, false);
      break;
    case kPrefixCtrlO * 256 + 'O':
      ChangeCharacterCase(view);
      break;
    case kPrefixCtrlO * 256 + 'C':
      SetBlockMode(view, 1);
      break;
    case kPrefixCtrlO * 256 + 'K':
      SetBlockMode(view, 0);
      break;
    case kPrefixCtrlO * 256 + 'F':
      FillColumnBlock(view, 0);
      break;
    case kPrefixCtrlQ * 256 + 'A':
      ReplaceDialog(view);
      break;
    case kPrefixCtrlQ * 256 + 'F':
      FindDialog(view, false);
      break;
  }
}

}  // namespace

bool PrefixKeyDown(EditorView* view, int virtualKey) {
  int prefix = PendingPrefix;
  if (prefix == kPrefixNone) return false;
  if (virtualKey == kKeyShift || virtualKey == kKeyControl || virtualKey == kKeyAlt) return false;
  // The prefix ends before the action, so that a dialog the action opens sees none pending; the
  // key's character is marked as taken first, since that dialog may deliver it meanwhile.
  ResetPendingPrefix();
  PrefixKeyTaken = IsSecondKey(prefix, virtualKey);
  if (PrefixKeyTaken) RunSecondKey(view, prefix, virtualKey);
  return IsSecondKey(prefix, virtualKey);
}
