// The platform layer: every operating-system call of the server, the client library and
// the tools goes through these functions, so that another operating system is a second
// implementation of this header rather than a fork of the callers: platform_linux.cpp
// and platform_windows.cpp. On Windows, descriptors are C-runtime descriptors (_read,
// _write) in binary mode, and process ids are Windows process ids.
//
// None of these functions throws. Failures are reported through return values as stated.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace odbs::platform {

// ---- Descriptors -------------------------------------------------------------------

// Reads up to n bytes, retrying while the call is interrupted by a signal.
// Returns the byte count (> 0), 0 at end of file, or -1 on any other error.
long readSome(int fd, void* buf, size_t n);

// Writes all n bytes, continuing after partial writes and interruptions; stops silently at
// the first real error (a closed pipe, a bad descriptor). The result is deliberately not
// reported: the server never checks its writes.
void writeAll(int fd, const void* buf, size_t n);

// Waits until fd has data to read, end of file or an error, or timeoutMs passes
// (negative: no limit). Returns true when reading would not block.
bool waitReadable(int fd, int timeoutMs);

void closeFd(int fd);

// Creates a pipe whose two ends are not inherited by child processes (closed on exec;
// on Windows made with _O_NOINHERIT, binary mode). Returns false on failure.
bool makePipe(int fds[2]);

// ---- Process ----------------------------------------------------------------------

// Makes a write to a pipe without reader fail with an error instead of ending the process
// (Windows has no such signal: nothing to do there).
void ignoreBrokenPipe();

// This process's id.
int32_t processId();

// Lets the allocator keep the large blocks that the process frees for its own later
// allocations instead of handing them back to the system at once: a short-lived program
// that builds and frees arrays of many megabytes (an import) then reuses memory it already
// has rather than taking fresh pages, each with a page fault and a clearing. Blocks above
// 32 MB still come from and go back to the system, and the freed memory is not given back
// until the process ends: not for a long-running server. Call once at the start, before
// any thread starts. Windows: nothing to do (its heap keeps freed blocks by itself).
void keepFreedMemory();

// Ends the process at once with status 0, after flushing standard error. Runs no static
// destructors, so a second thread still inside a library call cannot trip over them.
[[noreturn]] void exitProcess();

// Starts a detached thread with a small stack running body. Returns false if the thread
// could not be started.
bool startThread(std::function<void()> body, size_t stackBytes);

// Blocks until the process pid has ended. Returns at once when pid cannot be watched (no
// such process, pid <= 0, no permission): a parent that cannot be watched counts as gone.
// Linux: a process descriptor where the kernel has one, otherwise polls often enough that
// the end is seen within a second. Windows: OpenProcess (all access) and
// WaitForSingleObject without time limit.
void waitForProcessExit(int pid);

// Starts argv[0] (a path) with arguments argv. The child keeps standard input, output and
// error and the descriptors listed in keepFds, at their numbers; every other descriptor
// is closed in the child, whether or not it is marked close-on-exec. Returns the child's
// pid, or -1 on failure.
// Windows: started with _spawnv, which hands the child every inheritable C-runtime
// descriptor at its number; each kept descriptor is made inheritable for that (and stays
// so: close it after the start), the others must be non-inheritable (makePipe's are).
pid_t spawnProcess(const std::vector<std::string>& argv, const std::vector<int>& keepFds);

// Waits up to timeoutMs for the child to end (negative: no limit). Returns true and stores
// its exit status (or 128 + signal number for a killed child) when it ended.
bool waitChild(pid_t pid, int timeoutMs, int* status);

// Kills pid at once (SIGKILL; on Windows TerminateProcess with exit status 137).
void killProcess(pid_t pid);

// ---- Files ------------------------------------------------------------------------

struct FileStat {
  int64_t size = 0;
  int64_t mtimeSec = 0;   // modification time, whole seconds since the epoch
  int64_t mtimeNsec = 0;  // and the nanoseconds within that second
  uint64_t device = 0;
  uint64_t inode = 0;
};

// Size, modification time and identity of a file. Returns false when it cannot be read.
bool statFile(const std::string& path, FileStat* out);

// True when the file exists and can be opened for reading.
bool fileReadable(const std::string& path);

// Renames from to to, replacing an existing file to (on Windows MoveFileEx with
// replace). Returns 0 on success, otherwise the error number (errno values).
int renameFile(const std::string& from, const std::string& to);

// Creates an empty file (truncating an existing one). Returns true on success.
bool createEmptyFile(const std::string& path);

// Removes a file. Returns true when it was removed.
bool removeFile(const std::string& path);

// The absolute path with every symbolic link and "."/".." resolved, or an empty string
// when the file does not exist.
std::string canonicalPath(const std::string& path);

// True when both paths name one existing file (same device and inode; on Windows volume
// serial number and file index): the same file reached through links, bind mounts or
// different spellings. On Windows also when both spellings turn into the same text once
// '/' is read as '\' and a mapped drive letter as its network path (\\server\share).
bool sameFile(const std::string& a, const std::string& b);
}  // namespace odbs::platform
