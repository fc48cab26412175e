// The block-comment state of every line of a document, which colouring starts each line from.
#pragma once

struct EditDocument;
struct ColourRuns;

// Every line in order, each from the state at the end of the line before (an empty line passes
// the state on): after a load.
void ComputeCommentStates(EditDocument* document);
// After an edit of line `from`: from there on, until a line's start state no longer changes.
void RefreshCommentStates(EditDocument* document, int from);
// The colour runs of a line as painting shows it (into *runs, emptied first; with no runs only the
// state is scanned), and the state at its end kept for the lines below.
void ColourDocumentLine(EditDocument* document, int line, ColourRuns** runs);
// The state a line starts in: that of the nearest non-empty line above it (0 for the first).
bool LineStartsInComment(const EditDocument* document, int line);
