// Linux implementation of the platform layer.
#include <errno.h>
#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include "platform/platform.h"

extern char** environ;

namespace odbs::platform {

long readSome(int fd, void* buf, size_t n) {
  for (;;) {
    ssize_t r = ::read(fd, buf, n);
    if (r >= 0) return static_cast<long>(r);
    if (errno != EINTR) return -1;
  }
}

void writeAll(int fd, const void* buf, size_t n) {
  const char* p = static_cast<const char*>(buf);
  while (n > 0) {
    ssize_t w = ::write(fd, p, n);
    if (w < 0) {
      if (errno == EINTR) continue;
      return;
    }
    p += w;
    n -= static_cast<size_t>(w);
  }
}

bool waitReadable(int fd, int timeoutMs) {
  struct pollfd pfd = {fd, POLLIN, 0};
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    int wait = timeoutMs;
    if (timeoutMs >= 0) {
      auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          deadline - std::chrono::steady_clock::now());
      wait = left.count() > 0 ? static_cast<int>(left.count()) : 0;
    }
    int r = ::poll(&pfd, 1, wait);
    if (r > 0) return true;
    if (r == 0) return false;
    if (errno != EINTR) return true;  // let the read report the error
  }
}

void closeFd(int fd) {
  if (fd >= 0) ::close(fd);
}

bool makePipe(int fds[2]) {
  return ::pipe2(fds, O_CLOEXEC) == 0;
}

void ignoreBrokenPipe() {
  ::signal(SIGPIPE, SIG_IGN);
}

int32_t processId() {
  return static_cast<int32_t>(::getpid());
}

void keepFreedMemory() {
#ifdef __GLIBC__
  // By default a block of 128 KB or more is mapped on its own and unmapped when freed (the
  // threshold rises only after such a free), and the heap's top is trimmed back to the system
  // from 128 KB. Fixed settings switch that adjustment off: 32 MB is the largest threshold
  // the allocator takes.
  ::mallopt(M_MMAP_THRESHOLD, 32 << 20);
  ::mallopt(M_TRIM_THRESHOLD, 256 << 20);
#endif
}

void exitProcess() {
  std::fflush(stderr);
  ::_exit(0);
}

namespace {

void* threadTrampoline(void* arg) {
  std::unique_ptr<std::function<void()>> body(static_cast<std::function<void()>*>(arg));
  (*body)();
  return nullptr;
}

}  // namespace

bool startThread(std::function<void()> body, size_t stackBytes) {
  pthread_attr_t attr;
  if (pthread_attr_init(&attr) != 0) return false;
  if (stackBytes < static_cast<size_t>(PTHREAD_STACK_MIN)) stackBytes = PTHREAD_STACK_MIN;
  pthread_attr_setstacksize(&attr, stackBytes);
  pthread_attr_setdetachstate(&attr, PTHREAD_CREATE_DETACHED);
  auto* heapBody = new std::function<void()>(std::move(body));
  pthread_t tid;
  int rc = pthread_create(&tid, &attr, threadTrampoline, heapBody);
  pthread_attr_destroy(&attr);
  if (rc != 0) {
    delete heapBody;
    return false;
  }
  return true;
}

void waitForProcessExit(int pid) {
  if (pid <= 0) return;
#ifdef SYS_pidfd_open
  int pidfd = static_cast<int>(::syscall(SYS_pidfd_open, pid, 0));
  if (pidfd >= 0) {
    struct pollfd pfd = {pidfd, POLLIN, 0};
    while (::poll(&pfd, 1, -1) < 0 && errno == EINTR) {
    }
    ::close(pidfd);
    return;
  }
  if (errno == ESRCH) return;  // already gone
#endif
  // Kernels without process descriptors: poll for existence. EPERM means the process
  // exists but belongs to someone else, which still counts as alive.
  for (;;) {
    if (::kill(pid, 0) != 0 && errno == ESRCH) return;
    struct timespec ts = {0, 200 * 1000 * 1000};
    ::nanosleep(&ts, nullptr);
  }
}

bool waitChild(pid_t pid, int timeoutMs, int* status) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  for (;;) {
    int st = 0;
    pid_t r = ::waitpid(pid, &st, timeoutMs < 0 ? 0 : WNOHANG);
    if (r == pid) {
      if (WIFEXITED(st))
        *status = WEXITSTATUS(st);
      else if (WIFSIGNALED(st))
        *status = 128 + WTERMSIG(st);
      else
        *status = -1;
      return true;
    }
    if (r < 0 && errno != EINTR) return false;
    if (timeoutMs >= 0 && std::chrono::steady_clock::now() >= deadline) return false;
    if (timeoutMs >= 0) std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

void killProcess(pid_t pid) {
  if (pid > 0) ::kill(pid, SIGKILL);
}

bool statFile(const std::string& path, FileStat* out) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return false;
  out->size = static_cast<int64_t>(st.st_size);
  out->mtimeSec = static_cast<int64_t>(st.st_mtim.tv_sec);
  out->mtimeNsec = static_cast<int64_t>(st.st_mtim.tv_nsec);
  out->device = static_cast<uint64_t>(st.st_dev);
  out->inode = static_cast<uint64_t>(st.st_ino);
  return true;
}

bool fileReadable(const std::string& path) {
  return ::access(path.c_str(), R_OK) == 0;
}

int renameFile(const std::string& from, const std::string& to) {
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

bool createEmptyFile(const std::string& path) {
  int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) return false;
  ::close(fd);
  return true;
}

bool removeFile(const std::string& path) {
  return ::unlink(path.c_str()) == 0;
}

std::string canonicalPath(const std::string& path) {
  char* resolved = ::realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return std::string();
  std::string result(resolved);
  ::free(resolved);
  return result;
}

bool sameFile(const std::string& a, const std::string& b) {
  FileStat sa, sb;
  if (!statFile(a, &sa) || !statFile(b, &sb)) return false;
  return sa.device == sb.device && sa.inode == sb.inode;
}

pid_t spawnProcess(const std::vector<std::string>& argv, const std::vector<int>& keepFds) {
  if (argv.empty()) return -1;
  std::vector<char*> args;
  for (const auto& a : argv) args.push_back(const_cast<char*>(a.c_str()));
  args.push_back(nullptr);

  int highest = 2;
  for (int fd : keepFds) highest = std::max(highest, fd);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  // dup2 onto itself clears close-on-exec for that number only.
  for (int fd : keepFds) posix_spawn_file_actions_adddup2(&actions, fd, fd);
  // Closing a number that is not open is ignored by the spawn.
  for (int fd = 3; fd < highest; ++fd) {
    if (std::find(keepFds.begin(), keepFds.end(), fd) == keepFds.end()) {
      posix_spawn_file_actions_addclose(&actions, fd);
    }
  }
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 34))
  posix_spawn_file_actions_addclosefrom_np(&actions, highest + 1);
#endif
  pid_t pid = -1;
  int rc = ::posix_spawn(&pid, args[0], &actions, nullptr, args.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return rc == 0 ? pid : -1;
}

}  // namespace odbs::platform
