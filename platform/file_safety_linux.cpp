#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <mutex>

#include "platform/file_safety.h"

namespace odbs::platform {

FileKind fileKind(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return FileKind::kMissing;
  if (S_ISREG(st.st_mode)) return FileKind::kRegular;
  if (S_ISDIR(st.st_mode)) return FileKind::kDirectory;
  return FileKind::kOther;
}

namespace {

bool syncPath(const std::string& path, int flags) {
  int fd = ::open(path.c_str(), flags | O_CLOEXEC);
  if (fd < 0) return false;
  int rc;
  do {
    rc = ::fsync(fd);
  } while (rc != 0 && errno == EINTR);
  ::close(fd);
  return rc == 0;
}

}  // namespace

bool syncFile(const std::string& path) {
  return syncPath(path, O_RDONLY | O_NONBLOCK);
}

bool syncDirectory(const std::string& path) {
  return syncPath(path, O_RDONLY | O_DIRECTORY);
}

std::string directoryOf(const std::string& path) {
  size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::vector<std::string> listDirectory(const std::string& path) {
  std::vector<std::string> out;
  DIR* d = ::opendir(path.c_str());
  if (!d) return out;
  while (struct dirent* e = ::readdir(d)) {
    if (std::strcmp(e->d_name, ".") != 0 && std::strcmp(e->d_name, "..") != 0)
      out.emplace_back(e->d_name);
  }
  ::closedir(d);
  return out;
}

bool processAlive(int pid) {
  if (pid <= 0) return false;
  return ::kill(pid, 0) == 0 || errno == EPERM;
}

namespace {

// Paths to remove on a terminating signal. The handler reads only these fixed buffers
// and calls only async-signal-safe functions (unlink, signal, raise).
constexpr int kSlots = 16;
constexpr size_t kPathMax = 4096;
char slotPath[kSlots][kPathMax];
std::atomic<bool> slotUsed[kSlots];
std::mutex slotMutex;  // between registering threads; never taken by the handler

void removeRegistered(int sig) {
  for (int i = 0; i < kSlots; ++i)
    if (slotUsed[i].load()) ::unlink(slotPath[i]);
  ::signal(sig, SIG_DFL);
  ::raise(sig);
}

void installHandlers() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (int sig : {SIGINT, SIGTERM, SIGHUP}) {
      struct sigaction old;
      // A signal the process ignores (a background job's SIGINT) stays ignored.
      if (::sigaction(sig, nullptr, &old) == 0 && old.sa_handler == SIG_IGN) continue;
      struct sigaction sa;
      std::memset(&sa, 0, sizeof sa);
      sa.sa_handler = removeRegistered;
      sigemptyset(&sa.sa_mask);
      ::sigaction(sig, &sa, nullptr);
    }
  });
}

}  // namespace

bool removeOnSignal(const std::string& path) {
  if (path.size() >= kPathMax) return false;
  installHandlers();
  std::lock_guard<std::mutex> lock(slotMutex);
  for (int i = 0; i < kSlots; ++i) {
    if (slotUsed[i].load()) continue;
    std::memcpy(slotPath[i], path.c_str(), path.size() + 1);
    slotUsed[i].store(true);
    return true;
  }
  return false;
}

void forgetOnSignal(const std::string& path) {
  std::lock_guard<std::mutex> lock(slotMutex);
  for (int i = 0; i < kSlots; ++i)
    if (slotUsed[i].load() && path == slotPath[i]) {
      slotUsed[i].store(false);
      return;
    }
}

}  // namespace odbs::platform
