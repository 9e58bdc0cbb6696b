// The writers' safety calls on Windows: file kinds from the file attributes, FlushFileBuffers
// for a file's data, folder listing with FindFirstFile, process liveness through the process
// handle, and temporary files removed on Ctrl-C, Ctrl-Break and console close.
#include <windows.h>

#include <csignal>
#include <cstring>
#include <mutex>

#include "platform/file_safety.h"
#include "platform/removal_slots.h"

namespace odbs::platform {

FileKind fileKind(const std::string& path) {
  DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return FileKind::kMissing;
  if (attributes & FILE_ATTRIBUTE_DIRECTORY) return FileKind::kDirectory;
  if (attributes & FILE_ATTRIBUTE_DEVICE) return FileKind::kOther;
  HANDLE h = CreateFileA(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return FileKind::kRegular;
  DWORD type = GetFileType(h);
  CloseHandle(h);
  return type == FILE_TYPE_DISK ? FileKind::kRegular : FileKind::kOther;
}

bool syncFile(const std::string& path) {
  HANDLE h = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                         OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (h == INVALID_HANDLE_VALUE) return false;
  bool ok = FlushFileBuffers(h) != 0;
  CloseHandle(h);
  return ok;
}

// Windows has no request that starts the writes without waiting for them: the later
// FlushFileBuffers does all of it.
bool startWriteback(const std::string&) {
  return false;
}

// Windows has no handle on a folder's entries to flush: MoveFileEx with replace (the rename
// of the writers) is written through by the file system's own journal.
bool syncDirectory(const std::string&) {
  return true;
}

std::string directoryOf(const std::string& path) {
  size_t slash = path.find_last_of("/\\");
  if (slash == std::string::npos) return ".";
  if (slash == 0) return path.substr(0, 1);
  return path.substr(0, slash);
}

std::vector<std::string> listDirectory(const std::string& path) {
  std::vector<std::string> names;
  WIN32_FIND_DATAA entry;
  HANDLE h = FindFirstFileA((path + "\\*").c_str(), &entry);
  if (h == INVALID_HANDLE_VALUE) return names;
  do {
    if (std::strcmp(entry.cFileName, ".") != 0 && std::strcmp(entry.cFileName, "..") != 0)
      names.push_back(entry.cFileName);
  } while (FindNextFileA(h, &entry));
  FindClose(h);
  return names;
}

bool processAlive(int pid) {
  HANDLE h = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(pid));
  if (h == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
  DWORD code = 0;
  bool alive = GetExitCodeProcess(h, &code) && code == STILL_ACTIVE;
  CloseHandle(h);
  return alive;
}

namespace {

void deletePath(const char* path) {
  DeleteFileA(path);
}

BOOL WINAPI onConsoleEvent(DWORD) {
  detail::forEachRegisteredPath(deletePath);
  return FALSE;  // the default handler ends the process
}

void onSignal(int sig) {
  detail::forEachRegisteredPath(deletePath);
  std::signal(sig, SIG_DFL);
  std::raise(sig);
}

}  // namespace

void detail::installRemovalHandlers() {
  static std::once_flag once;
  std::call_once(once, [] {
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
  });
}

}  // namespace odbs::platform
