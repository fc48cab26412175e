// Brace matching (Alt+[ and Alt+]): the partner of the (), [] or {} bracket at the caret, with
// nesting, across lines, not counting brackets inside literals and comments.
#pragma once

#include "editor/text_edit.h"

struct EditorView;

// The partner of the bracket at unit `index` of `line`, as a unit index and line. False when no
// bracket stands there, when it stands in a literal or a comment, or when it has no partner.
bool FindBracePartner(const EditDocument* document, int line, int index, int* partnerLine,
                      int* partnerIndex);
// Command 113: the caret to the partner of the bracket at the caret. False when it stays.
bool MatchBrace(EditorView* view);
