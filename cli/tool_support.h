// What several quill-tool commands share: answering the program's questions as a user who is not
// there would, and naming files the way the editor names them.
#pragma once

#include "foundation/host.h"
#include "project/project_host.h"

// A message box of the program on stderr ("quill-tool: TEXT"); a question gets the button that
// changes nothing. The host's context, when not null, is the command's name put before the text.
int PrintToolMessage(void* command, const char* text, unsigned flags);

// A project host for commands that build nothing: no editors open, nothing to save, the batch
// file left for the user to run.
extern const ProjectHost kToolProjectHost;

// `path` made absolute against the current folder, with '/' separators; false when it does not
// fit in `size` bytes.
bool AbsoluteToolPath(const char* path, char* target, int size);
