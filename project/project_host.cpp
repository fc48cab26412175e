#include "project/project_host.h"

#include "foundation/fileutil.h"

namespace {

bool NoUnsavedSources(void*) {
  return false;
}
void NothingToSave(void*) {}
bool StartWithoutWaiting(void*, const char* commandLine, int show) {
  return StartProgram(commandLine, show);
}
void NoFileList(void*) {}

const ProjectHost kDefaultHost = {nullptr, NoUnsavedSources, NothingToSave, StartWithoutWaiting,
                                  NoFileList};
const ProjectHost* g_host = &kDefaultHost;

}  // namespace

const ProjectHost* SetProjectHost(const ProjectHost* host) {
  const ProjectHost* previous = g_host;
  g_host = host ? host : &kDefaultHost;
  return previous;
}

const ProjectHost& CurrentProjectHost() {
  return *g_host;
}
