// The case commands: the word at the caret (Ctrl+K E and F) and one character (Ctrl+O O).
#pragma once

struct EditorView;

// Upper- or lower-cases the word at the caret in place with one replacement record; nothing when
// the caret touches no word. False when nothing was done.
bool ChangeWordCase(EditorView* view, bool upper);
// Flips an ASCII letter at the caret; for any unit there a replacement record of the old and the
// new unit is written (a run of them merges into one), and the caret moves on by the character.
void ChangeCharacterCase(EditorView* view);
