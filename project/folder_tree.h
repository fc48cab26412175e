// Deleting a folder with everything in it (the build's object folder).
#pragma once

// Deletes the files and folders under `path` and then the folder itself. False when something
// could not be deleted (what could be is gone); a missing folder counts as deleted.
bool DeleteFolderTree(const char* path);
