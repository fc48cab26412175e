// Platform service: the window calls the support library makes itself.
#pragma once

void OsDestroyWindow(void* window);
