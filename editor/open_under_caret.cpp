#include "editor/open_under_caret.h"

#include <cstring>

#include "editor/command_host.h"
#include "editor/document.h"
#include "editor/document_io.h"
#include "editor/editor_view.h"
#include "editor/word_moves.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/settings.h"
#include "foundation/unicode.h"

namespace {

constexpr char kParserWindowTitle[] = "Parser Window";
constexpr int kIncludeListSize = 4096 + 1;

char16_t ClosingOf(char16_t opening) {
  return opening == u'"' ? u'"' : opening == u'<' ? u'>' : u']';
}

// The position of " #" in units[0, count), or -1.
int LineMarkAt(const char16_t* units, int count, int from) {
  for (int i = from; i + 1 < count; ++i)
    if (units[i] == u' ' && units[i + 1] == u'#') return i;
  return -1;
}

const char* FileNamePart(const char* path) {
  const char* name = path;
  for (const char* at = path; *at; ++at)
    if (*at == '/' || *at == '\\') name = at + 1;
  return name;
}

bool TryIn(const char* folder, int folderLength, const char* name, char* path, int size) {
  char base[kPathSize];
  if (folderLength >= kPathSize) return false;
  memcpy(base, folder, static_cast<size_t>(folderLength));
  base[folderLength] = '\0';
  return JoinPath(base, name, path, size) && IsPlainFile(path);
}

int FolderLength(const char* path) {
  const char* name = FileNamePart(path);
  return static_cast<int>(name - path);
}

}  // namespace

bool FileNameAt(const LineRecord* line, int index, char* name, int size, int* lineNumber) {
  *lineNumber = 0;
  int length = LineLength(line);
  if (index > length) index = length;
  int open = index - 1;
  while (open >= 0 && line->text[open] != u'"' && line->text[open] != u'<' &&
         line->text[open] != u'[')
    --open;
  if (open < 0) return false;
  char16_t closing = ClosingOf(line->text[open]);
  int close = index > open ? index : open + 1;
  while (close < length && line->text[close] != closing)
    ++close;
  if (close >= length) return false;
  const char16_t* text = line->text + open + 1;
  int count = close - open - 1;
  bool bracket = line->text[open] == u'[';
  int mark = LineMarkAt(text, count, bracket ? 2 : 0);
  if (bracket && mark < 0) return false;
  if (mark >= 0) {
    int number = 0;
    int digits = 0;
    for (int i = mark + 2; i < count && text[i] >= u'0' && text[i] <= u'9' && digits < 9;
         ++i, ++digits)
      number = number * 10 + (text[i] - u'0');
    if (digits > 0) {
      *lineNumber = number;
      count = mark;
    }
  }
  if (count <= 0 || count >= kNameUnits) return false;
  int written = Utf16ToUtf8(text, count, name, size - 1);
  if (written <= 0) return false;
  name[written] = '\0';
  for (char* at = name; *at; ++at)
    if (*at == '\\') *at = '/';
  return true;
}

bool ResolveFileName(EditorView* view, const char* name, char* path, int size) {
  if (IsAbsolutePath(name)) {
    if (static_cast<int>(strlen(name)) >= size) return false;
    memcpy(path, name, strlen(name) + 1);
    return IsPlainFile(path);
  }
  const EditDocument* document = view->document;
  char base[kPathSize];
  base[0] = '\0';
  if (strcmp(FileNamePart(document->path), kParserWindowTitle) == 0)
    CommandLastAnalysedFile(base, sizeof base);
  else
    FormatStr(base, sizeof base, "%s", document->path);
  if (base[0] && TryIn(base, FolderLength(base), name, path, size)) return true;
  static char folders[kIncludeListSize];
  CommandIncludeFolders(view, folders, sizeof folders);
  for (const char* at = folders; *at;) {
    const char* end = strchr(at, ';');
    int length = end ? static_cast<int>(end - at) : static_cast<int>(strlen(at));
    while (length > 0 && at[0] == ' ')
      ++at, --length;
    if (length > 0 && TryIn(at, length, name, path, size)) return true;
    if (!end) break;
    at = end + 1;
  }
  return false;
}

bool OpenFileUnderCaret(EditorView* view) {
  EditDocument* document = view->document;
  if (!document) return false;
  const LineRecord* line = DocumentLine(document, view->caretLine);
  int index = UnitIndexAtColumn(line, view->caretColumn);
  char name[kNameUnits * 3 + 1];
  char path[kPathSize];
  int lineNumber = 0;
  if (FileNameAt(line, index, name, sizeof name, &lineNumber) &&
      ResolveFileName(view, name, path, sizeof path)) {
    if (lineNumber > 0) {
      // The new window restores its caret from the file's own section.
      char section[16];
      FormatStr(section, sizeof section, "%08X", PathCrc32(path, static_cast<int>(strlen(path))));
      WriteText(section, "File", path);
      WriteNums(section, "Cursor", 0, lineNumber - 1, 0, lineNumber - 1);
    }
    CommandOpenFile(path);
    return true;
  }
  int start = 0;
  int end = 0;
  if (WordAtCaret(view, &start, &end))
    CommandLookUpDeclaration(view, line->text + start, end - start);
  return false;
}
