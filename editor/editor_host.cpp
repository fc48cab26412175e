#include "editor/editor_host.h"

#include "editor/comment_states.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "encoding/text_encoding.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/language.h"
#include "foundation/os_time.h"
#include "foundation/path.h"

namespace {

const EditorHost kNoHost = {};
const EditorHost* g_host = &kNoHost;

}  // namespace

const EditorHost* SetEditorHost(const EditorHost* host) {
  const EditorHost* previous = g_host;
  g_host = host ? host : &kNoHost;
  return previous;
}

// Every change of the text notes the lines it touched in the document; painting brings the
// comment states up to date from there as far as the lines it shows. A full repaint also scans
// again the lines whose painted state came from the colour scan, as a pass over every line did.
void EditorRepaintLine(EditorView* view, int line) {
  if (view && view->document) RefreshCommentStates(view->document, line);
  if (g_host->repaintLine) g_host->repaintLine(g_host->context, view, line);
}

void EditorRepaintAll(EditorView* view) {
  if (view && view->document) ForgetPaintedStates(view->document);
  if (g_host->repaintAll) g_host->repaintAll(g_host->context, view);
}

void EditorCaretMoved(EditorView* view) {
  if (g_host->caretMoved) g_host->caretMoved(g_host->context, view);
}

void EditorTitleChanged(EditorView* view) {
  if (g_host->titleChanged) g_host->titleChanged(g_host->context, view);
}

void EditorDocumentLoaded(EditorView* view) {
  if (g_host->documentLoaded) g_host->documentLoaded(g_host->context, view);
}

void EditorStatusText(int part, const char* text) {
  if (g_host->statusText) g_host->statusText(g_host->context, part, text);
}

bool EditorAskTabSize(int proposed, TabSizeAnswer* answer) {
  return g_host->askTabSize && g_host->askTabSize(g_host->context, proposed, answer);
}

char16_t EditorAskFillCharacter() {
  return g_host->askFillCharacter ? g_host->askFillCharacter(g_host->context) : 0;
}

bool EditorAskSavePath(const char* title, char* path, int size) {
  return g_host->askSavePath && g_host->askSavePath(g_host->context, title, path, size);
}

bool EditorSetClipboard(const char16_t* units, int count) {
  return g_host->setClipboard && g_host->setClipboard(g_host->context, units, count);
}

const char16_t* EditorGetClipboard(int* count) {
  *count = 0;
  return g_host->getClipboard ? g_host->getClipboard(g_host->context, count) : nullptr;
}

// Without a serial engine there is no port to open.
bool EditorOpenTerminal(EditDocument* document, const char* specification) {
  return g_host->openTerminal && g_host->openTerminal(g_host->context, document, specification);
}

unsigned EditorTickCount() {
  if (g_host->tickCount) return g_host->tickCount(g_host->context);
  return OsTickCount();
}

LocalTime EditorLocalTime() {
  if (g_host->localTime) return g_host->localTime(g_host->context);
  OsDateTime now = OsLocalDateTime();
  return {now.year, now.month, now.day, now.hour, now.minute};
}

void FormatUnmappableQuestion(const EditorView* view, int encoding, const UnmappableText* found,
                              char* text, int size) {
  const char* name = EncodingName(encoding);
  char shown[kPathSize];
  ShownPath(view && view->document ? view->document->path : "", shown, kPathSize);
  FormatStr(text, size, GetStr(kMessageUnmappable), shown, name ? name : "", found->count,
            found->line, found->column);
}

int EditorAskUnmappable(EditorView* view, int encoding, const UnmappableText* found) {
  if (g_host->askUnmappable) return g_host->askUnmappable(g_host->context, view, encoding, found);
  char text[1600];
  FormatUnmappableQuestion(view, encoding, found, text, sizeof text);
  return HostMessage(text, kMbYesNoCancel | kMbIconQuestion);
}
