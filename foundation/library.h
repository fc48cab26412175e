// Start-up and shutdown of the support library, called once each by the program's entry routine.
#pragma once

// Remembers the instance handles, creates the library's locks and makes the allocator ready.
void InitKLib(void* instance, void* resourceInstance);
// Tears the library down in order and reports leaked blocks (log lines and a "MemLeak=%d" note).
// Returns the number of leaked blocks.
int CloseKLib();

void* KLibInstance();
void* KLibResourceInstance();
