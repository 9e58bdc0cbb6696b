// The parent watchdog: the server lives exactly as long as the process that started it.
#pragma once

namespace odbs {

// Starts a thread that waits for the process parentPid to end, then removes the
// catalogue's temporary files, closes every open database and ends this process with
// status 0. A parent that cannot be watched (already gone, invalid id) ends the server at
// once. Returns false when the thread could not be started.
bool startParentWatchdog(int parentPid);

}  // namespace odbs
