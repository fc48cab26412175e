// The block-comment state of every line of a document, which colouring starts each line from.
// States are brought up to date lazily: an edit only notes where the text changed, and a paint
// scans from there down to the line it needs, so the first screen of a large file does not wait
// for the whole file.
#pragma once

struct EditDocument;
struct ColourRuns;

// Every line in order, each from the state at the end of the line before (an empty line passes
// the state on).
void ComputeCommentStates(EditDocument* document);
// Brings the states of lines 0 ... `line` up to date: from the first stale line on, until `line`
// or until, below the changed text, a line ends as it did (every later line then does too). The
// result is that of ComputeCommentStates.
void EnsureCommentStates(EditDocument* document, int line);
// After an edit of line `from`.
void RefreshCommentStates(EditDocument* document, int from);
// Before a full repaint: the lines whose state painting took from the colour scan are scanned
// again, as a full pass would.
void ForgetPaintedStates(EditDocument* document);
// The colour runs of a line as painting shows it (into *runs, emptied first; with no runs only the
// state is scanned), and the state at its end kept for the line below.
void ColourDocumentLine(EditDocument* document, int line, ColourRuns** runs);
// The state a line starts in: that of the nearest non-empty line above it (0 for the first), as
// it stands.
bool LineStartsInComment(const EditDocument* document, int line);
