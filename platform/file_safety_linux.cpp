#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <mutex>

#include "platform/file_safety.h"
#include "platform/removal_slots.h"

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

bool startWriteback(const std::string& path) {
  int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return false;
  // Whole file (offset 0, length 0), start the writes, wait for none of them.
  bool ok = ::sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE) == 0;
  ::close(fd);
  return ok;
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

void unlinkPath(const char* path) {
  ::unlink(path);
}

// Removes the registered paths with async-signal-safe calls only, then ends the process as
// the signal would have.
void removeRegistered(int sig) {
  detail::forEachRegisteredPath(unlinkPath);
  ::signal(sig, SIG_DFL);
  ::raise(sig);
}

}  // namespace

void detail::installRemovalHandlers() {
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

}  // namespace odbs::platform
