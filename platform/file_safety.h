// Operating-system calls that writers of files need to be safe against hostile paths,
// power loss and interruption: the kind of a file, syncing a file and its folder, the
// entries of a folder, whether a process still runs, and removal of temporary files when
// the process is ended by a signal.
//
// None of these functions throws. Failures are reported through return values as stated.
#pragma once

#include <string>
#include <vector>

namespace odbs::platform {

enum class FileKind { kMissing, kRegular, kDirectory, kOther };

// What path names, following symbolic links: nothing, a regular file, a folder, or
// anything else (a FIFO, a device, a socket), which readers must not open: opening a
// FIFO blocks until a writer comes, reading a device may never end.
FileKind fileKind(const std::string& path);

// Writes the file's data and metadata to the storage device. Returns false on failure.
bool syncFile(const std::string& path);

// Asks the system to start writing the file's changed data to the storage device and
// returns without waiting, so that a later syncFile of a large file has little left to
// wait for. A hint only: false when the file cannot be opened or the system has no such
// request; the data is safe only once syncFile returns true.
bool startWriteback(const std::string& path);

// Writes the folder's entries (a rename or a new file in it) to the storage device.
// Returns false on failure.
bool syncDirectory(const std::string& path);

// The folder part of path ("." when path has none).
std::string directoryOf(const std::string& path);

// The names in a folder, without "." and "..". Empty when it cannot be read.
std::vector<std::string> listDirectory(const std::string& path);

// True when a process with this id exists (it may belong to another user).
bool processAlive(int pid);

// Removes path if the process is ended by SIGINT, SIGTERM or SIGHUP, then ends the
// process by that signal as it would have ended without. At most 16 paths at a time;
// returns false when the table is full. Call forgetOnSignal once the file has its final
// name or is gone.
bool removeOnSignal(const std::string& path);
void forgetOnSignal(const std::string& path);

}  // namespace odbs::platform
