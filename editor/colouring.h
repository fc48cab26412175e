// The C tokenizer that cuts a line into coloured runs, and the block-comment state it carries
// from line to line.
#pragma once

#include "editor/colour_runs.h"

// Fills `runs` for one line of `length` units and returns whether the line ends inside a block
// comment. `lineIndex` names the line for the caller's bookkeeping only.
bool ColourLine(ColourRuns** runs, const char16_t* line, int length, int lineIndex,
                bool startsInComment);

// The state at the end of a line given the state at its start, by the plain scan the loader uses:
// literals skipped, "//" ends the line, "/*" and "*/" switch.
bool ScanCommentState(const char16_t* line, int length, bool startsInComment);
