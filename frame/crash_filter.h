// The unhandled-exception filter: the crash report into DEBUG.TXT, then the system's own ending.
#pragma once

// Installs the filter; the first thing the program does.
void InstallCrashReport();
