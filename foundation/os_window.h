// Platform service: the window calls the support library makes itself.
#pragma once

void OsDestroyWindow(void* window);

// The global atoms "CurrWndSize" and "UserPrm1" that name the placement properties.
void OsAddLibraryAtoms();
void OsDeleteLibraryAtoms();
