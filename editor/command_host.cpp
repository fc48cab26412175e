#include "editor/command_host.h"

namespace {

const CommandHost kNoHost = {};
const CommandHost* g_host = &kNoHost;

}  // namespace

const CommandHost* SetCommandHost(const CommandHost* host) {
  const CommandHost* previous = g_host;
  g_host = host ? host : &kNoHost;
  return previous;
}

bool CommandSearchDialog(EditorView* view, SearchRequest* request) {
  return g_host->searchDialog && g_host->searchDialog(g_host->context, view, request);
}

bool CommandAskLineNumber(EditorView* view, int* number) {
  return g_host->askLineNumber && g_host->askLineNumber(g_host->context, view, number);
}

bool CommandAskOtherFormat(EditorView* view, OtherFormatAnswer* answer) {
  return g_host->askOtherFormat && g_host->askOtherFormat(g_host->context, view, answer);
}

bool CommandOpenFile(const char* path) {
  return g_host->openFile && g_host->openFile(g_host->context, path);
}

void CommandLookUpDeclaration(EditorView* view, const char16_t* word, int length) {
  if (g_host->lookUpDeclaration) g_host->lookUpDeclaration(g_host->context, view, word, length);
}

void CommandIncludeFolders(EditorView* view, char* list, int size) {
  if (size <= 0) return;
  list[0] = '\0';
  if (!g_host->includeFolders) return;
  int length = g_host->includeFolders(g_host->context, view, list, size);
  list[length > 0 && length < size ? length : 0] = '\0';
  list[size - 1] = '\0';
}

bool CommandLastAnalysedFile(char* path, int size) {
  if (size <= 0) return false;
  path[0] = '\0';
  if (!g_host->lastAnalysedFile || !g_host->lastAnalysedFile(g_host->context, path, size))
    return false;
  path[size - 1] = '\0';
  return path[0] != '\0';
}

bool CommandAskSortOptions(EditorView* view, LineSortOptions* options) {
  return g_host->askSortOptions && g_host->askSortOptions(g_host->context, view, options);
}
