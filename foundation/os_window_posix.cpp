#include "foundation/os_window.h"

// There are no windows on POSIX builds.
void OsDestroyWindow(void*) {}
void OsAddLibraryAtoms() {}
void OsDeleteLibraryAtoms() {}
