// Windows implementation of the platform layer (built with mingw-w64).
//
// Descriptors are C-runtime descriptors used with _read and _write in binary mode; a parent
// passes them to the server through the C runtime's descriptor inheritance (_pipe without
// _O_NOINHERIT, then _spawnv). Processes are known to callers by their process id; the
// handles of the children this process started are kept here until they are waited for.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <windows.h>
#include <winnetwk.h>

#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/platform.h"

namespace odbs::platform {

namespace {

HANDLE osHandle(int fd) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(fd));
}

}  // namespace

long readSome(int fd, void* buf, size_t n) {
  unsigned chunk = n > INT_MAX ? INT_MAX : static_cast<unsigned>(n);
  for (;;) {
    int r = _read(fd, buf, chunk);
    if (r >= 0) return r;
    if (errno != EINTR) return -1;
  }
}

void writeAll(int fd, const void* buf, size_t n) {
  const char* p = static_cast<const char*>(buf);
  while (n > 0) {
    unsigned chunk = n > INT_MAX ? INT_MAX : static_cast<unsigned>(n);
    int w = _write(fd, p, chunk);
    if (w < 0) {
      if (errno == EINTR) continue;
      return;
    }
    if (w == 0) return;
    p += w;
    n -= static_cast<size_t>(w);
  }
}

bool waitReadable(int fd, int timeoutMs) {
  HANDLE h = osHandle(fd);
  if (h == INVALID_HANDLE_VALUE) return true;  // let the read report the error
  // Anonymous pipes cannot be waited on: peek, and sleep a millisecond between peeks.
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    DWORD available = 0;
    if (!PeekNamedPipe(h, nullptr, 0, nullptr, &available, nullptr)) return true;
    if (available > 0) return true;
    if (timeoutMs >= 0 && std::chrono::steady_clock::now() >= deadline) return false;
    Sleep(1);
  }
}

void closeFd(int fd) {
  if (fd >= 0) _close(fd);
}

bool makePipe(int fds[2]) {
  // Not inherited by children: spawnProcess passes on only the descriptors it is given.
  return _pipe(fds, 65536, _O_BINARY | _O_NOINHERIT) == 0;
}

void ignoreBrokenPipe() {
  // Windows has no broken-pipe signal: a write to a pipe without reader fails by itself.
}

int32_t processId() {
  return static_cast<int32_t>(GetCurrentProcessId());
}

void keepFreedMemory() {
  // The process heap keeps freed blocks for reuse by itself.
}

void exitProcess() {
  std::fflush(stderr);
  // Ends every thread at once, without the library detach handlers that ExitProcess would
  // run while the main thread may still hold their locks.
  TerminateProcess(GetCurrentProcess(), 0);
  _exit(0);  // not reached
}

namespace {

DWORD WINAPI threadTrampoline(LPVOID arg) {
  std::unique_ptr<std::function<void()>> body(static_cast<std::function<void()>*>(arg));
  (*body)();
  return 0;
}

}  // namespace

bool startThread(std::function<void()> body, size_t stackBytes) {
  auto* heapBody = new std::function<void()>(std::move(body));
  DWORD id = 0;
  HANDLE h = CreateThread(nullptr, stackBytes, threadTrampoline, heapBody,
                          STACK_SIZE_PARAM_IS_A_RESERVATION, &id);
  if (h == nullptr) {
    delete heapBody;
    return false;
  }
  CloseHandle(h);
  return true;
}

void waitForProcessExit(int pid) {
  // All access (0x1F0FFF), not inheritable. A parent that cannot be opened (gone, id 0,
  // no permission) gives a null handle, on which the wait fails at once.
  HANDLE parent = OpenProcess(0x1F0FFF, FALSE, static_cast<DWORD>(pid));
  WaitForSingleObject(parent, INFINITE);
  if (parent != nullptr) CloseHandle(parent);
}

// ---- Children -----------------------------------------------------------------------

namespace {

// Handles of the children started by spawnProcess, by process id, until waited for.
std::mutex childrenMutex;
std::map<pid_t, HANDLE>& children() {
  static std::map<pid_t, HANDLE> map;
  return map;
}

HANDLE childHandle(pid_t pid) {
  std::lock_guard<std::mutex> lock(childrenMutex);
  auto it = children().find(pid);
  return it == children().end() ? nullptr : it->second;
}

// One argument quoted so that the child's C runtime splits it back unchanged: the runtime
// joins the arguments of _spawnv with spaces and adds no quotes of its own.
std::string quoteArgument(const std::string& arg) {
  if (!arg.empty() && arg.find_first_of(" \t\"") == std::string::npos) return arg;
  std::string out = "\"";
  size_t backslashes = 0;
  for (char c : arg) {
    if (c == '\\') {
      ++backslashes;
      continue;
    }
    // Backslashes before a quote are doubled, and the quote escaped.
    out.append(c == '"' ? backslashes * 2 + 1 : backslashes, '\\');
    backslashes = 0;
    out += c;
  }
  out.append(backslashes * 2, '\\');  // before the closing quote
  out += '"';
  return out;
}

}  // namespace

pid_t spawnProcess(const std::vector<std::string>& argv, const std::vector<int>& keepFds) {
  if (argv.empty()) return -1;
  // The child's C runtime receives every inheritable descriptor at its number. Descriptors
  // from makePipe are not inheritable; a copy made with _dup2 onto the same number is. So
  // each kept descriptor is replaced by an inheritable copy of itself.
  static std::mutex spawnMutex;
  std::lock_guard<std::mutex> lock(spawnMutex);
  for (int fd : keepFds) {
    int copy = _dup(fd);
    if (copy < 0) return -1;
    int rc = _dup2(copy, fd);
    _close(copy);
    if (rc != 0) return -1;
  }
  std::vector<std::string> quoted;
  for (const auto& a : argv) quoted.push_back(quoteArgument(a));
  std::vector<const char*> args;
  for (const auto& a : quoted) args.push_back(a.c_str());
  args.push_back(nullptr);
  intptr_t h = _spawnv(_P_NOWAIT, argv[0].c_str(), args.data());
  if (h == -1 || h == 0) return -1;
  HANDLE process = reinterpret_cast<HANDLE>(h);
  pid_t pid = static_cast<pid_t>(GetProcessId(process));
  std::lock_guard<std::mutex> childLock(childrenMutex);
  children()[pid] = process;
  return pid;
}

bool waitChild(pid_t pid, int timeoutMs, int* status) {
  HANDLE h = childHandle(pid);
  if (h == nullptr) return false;
  DWORD wait = timeoutMs < 0 ? INFINITE : static_cast<DWORD>(timeoutMs);
  if (WaitForSingleObject(h, wait) != WAIT_OBJECT_0) return false;
  DWORD code = 0;
  GetExitCodeProcess(h, &code);
  *status = static_cast<int>(code);
  std::lock_guard<std::mutex> lock(childrenMutex);
  children().erase(pid);
  CloseHandle(h);
  return true;
}

void killProcess(pid_t pid) {
  if (pid <= 0) return;
  // The exit status a killed child reports: 128 + 9, as for a killed process elsewhere.
  constexpr UINT kKilledStatus = 137;
  HANDLE h = childHandle(pid);
  if (h != nullptr) {
    TerminateProcess(h, kKilledStatus);
    return;
  }
  HANDLE other = OpenProcess(PROCESS_TERMINATE, FALSE, static_cast<DWORD>(pid));
  if (other == nullptr) return;
  TerminateProcess(other, kKilledStatus);
  CloseHandle(other);
}

// ---- Files --------------------------------------------------------------------------

namespace {

// Seconds and nanoseconds since 1970 from a file time (100 ns ticks since 1601).
void fromFileTime(const FILETIME& ft, int64_t* sec, int64_t* nsec) {
  constexpr int64_t kTicksTo1970 = 116444736000000000LL;
  int64_t ticks = (static_cast<int64_t>(ft.dwHighDateTime) << 32 | ft.dwLowDateTime) - kTicksTo1970;
  int64_t s = ticks / 10000000;
  int64_t rest = ticks % 10000000;
  if (rest < 0) {
    rest += 10000000;
    --s;
  }
  *sec = s;
  *nsec = rest * 100;
}

// Opens a file or folder for reading its attributes only, sharing it with every writer.
HANDLE openForAttributes(const std::string& path) {
  return CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                     nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

// The comparable spelling of a path: '/' turned into '\', and a path on a mapped drive
// turned into its network path (\\server\share\...). A path that already is a network path
// is kept; a path that is not on a network drive comes back with only its slashes changed.
std::string universalName(const std::string& path) {
  std::string p = path;
  for (char& c : p) {
    if (c == '/') c = '\\';
  }
  if (p.size() >= 3 && p[0] == '\\' && p[1] == '\\' && p[2] != '.') return p;
  union {
    UNIVERSAL_NAME_INFOA info;
    char bytes[1024];
  } buffer;
  DWORD size = sizeof(buffer);
  if (WNetGetUniversalNameA(p.c_str(), UNIVERSAL_NAME_INFO_LEVEL, &buffer, &size) == NO_ERROR &&
      buffer.info.lpUniversalName != nullptr) {
    return buffer.info.lpUniversalName;
  }
  return p;
}

}  // namespace

bool statFile(const std::string& path, FileStat* out) {
  HANDLE h = openForAttributes(path);
  if (h == INVALID_HANDLE_VALUE) return false;
  BY_HANDLE_FILE_INFORMATION info;
  bool ok = GetFileInformationByHandle(h, &info) != 0;
  CloseHandle(h);
  if (!ok) return false;
  out->size =
      static_cast<int64_t>(static_cast<uint64_t>(info.nFileSizeHigh) << 32 | info.nFileSizeLow);
  fromFileTime(info.ftLastWriteTime, &out->mtimeSec, &out->mtimeNsec);
  out->device = info.dwVolumeSerialNumber;
  out->inode = static_cast<uint64_t>(info.nFileIndexHigh) << 32 | info.nFileIndexLow;
  return true;
}

bool fileReadable(const std::string& path) {
  return _access(path.c_str(), 4) == 0;
}

int renameFile(const std::string& from, const std::string& to) {
  // Unlike rename(), replaces an existing target, as a rename does elsewhere.
  if (MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    return 0;
  switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      return EACCES;
    case ERROR_NOT_SAME_DEVICE:
      return EXDEV;
    default:
      return EIO;
  }
}

bool createEmptyFile(const std::string& path) {
  int fd = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT,
                 _S_IREAD | _S_IWRITE);
  if (fd < 0) return false;
  _close(fd);
  return true;
}

bool removeFile(const std::string& path) {
  return _unlink(path.c_str()) == 0;
}

std::string canonicalPath(const std::string& path) {
  HANDLE h = openForAttributes(path);
  if (h == INVALID_HANDLE_VALUE) return std::string();
  char buffer[MAX_PATH * 4];
  DWORD n = GetFinalPathNameByHandleA(h, buffer, sizeof(buffer), FILE_NAME_NORMALIZED);
  CloseHandle(h);
  if (n == 0 || n >= sizeof(buffer)) return std::string();
  std::string result(buffer, n);
  // Drop the long-path prefix: \\?\C:\x becomes C:\x, \\?\UNC\server\x becomes \\server\x.
  if (result.rfind("\\\\?\\UNC\\", 0) == 0) return "\\\\" + result.substr(8);
  if (result.rfind("\\\\?\\", 0) == 0) return result.substr(4);
  return result;
}

bool sameFile(const std::string& a, const std::string& b) {
  // A mapped drive letter and its network path, or two slash spellings, are one file.
  if (universalName(a) == universalName(b)) return true;
  FileStat sa, sb;
  if (!statFile(a, &sa) || !statFile(b, &sb)) return false;
  return sa.device == sb.device && sa.inode == sb.inode;
}

}  // namespace odbs::platform
