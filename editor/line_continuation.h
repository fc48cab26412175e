// Command 22: line-continuation backslashes on the selected lines, for multi-line macros.
#pragma once

struct EditorView;

// The first selected line decides: when it ends (trailing blanks aside) with a backslash, the
// trailing backslash goes from every selected line; otherwise " \" is put behind the text of each
// one (a lone "\" on an empty line). A selection that ends in column 0 leaves that line out. The
// change is recorded as the block's old text deleted and its new text inserted. False without a
// selection.
bool ToggleContinuation(EditorView* view);
