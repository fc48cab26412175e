// The block-comment state of every line of a document, which colouring starts each line from.
#pragma once

struct EditDocument;

// Every line in order, each from the state at the end of the line before (an empty line passes
// the state on): after a load.
void ComputeCommentStates(EditDocument* document);
// After an edit of line `from`: from there on, until a line's start state no longer changes.
void RefreshCommentStates(EditDocument* document, int from);
// The state a line starts in: that of the nearest non-empty line above it (0 for the first).
bool LineStartsInComment(const EditDocument* document, int line);
