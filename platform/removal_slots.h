// The table of paths to remove when the process is ended by a signal, shared by the
// system-specific files of platform/ (not for use outside it). Registration takes a mutex;
// the walk over the table reads only fixed buffers and atomic flags, so a signal handler
// may run it.
#pragma once

#include <string>

namespace odbs::platform::detail {

// Calls remove(path) for every registered path. Async-signal-safe when remove is.
void forEachRegisteredPath(void (*remove)(const char* path));

// Installs the system's handlers once; implemented per system. The handlers remove the
// registered paths, then end the process as the signal would have ended it.
void installRemovalHandlers();

}  // namespace odbs::platform::detail
