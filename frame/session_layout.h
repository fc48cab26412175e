// Saving and restoring the desk: the frame's placement and the open documents.
#pragma once

// Writes the MDI children (top first, at most 100) into the list of `file` (internal form).
void SaveDocumentList(const char* file);
// Opens the documents listed in `file` (the settings file or a project file) at their places.
void RestoreDocumentList(const char* file);
// At close, before the windows are closed.
void SaveSessionAtClose();
// At frame creation; false when a document named on the command line could not be opened.
bool RestoreSession();
