#include "tests/windows/windows_parent.h"

#include <fcntl.h>
#include <io.h>
#include <process.h>

#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "client/core_records.h"
#include "platform/platform.h"

namespace odbs::test {

struct WindowsParent::Exit {
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<int> status;
};

namespace {

// Makes a pipe whose two ends stay in this process, and an inheritable copy of one end
// for the child: the ends kept here must not be inherited, or the child would hold its own
// pipe open and never see the end of its input.
void makeChildPipe(int ends[2], int childEnd, int* inheritable) {
  if (_pipe(ends, 65536, _O_BINARY | _O_NOINHERIT) != 0) throw std::runtime_error("_pipe failed");
  *inheritable = _dup(ends[childEnd]);  // copies made by _dup are inheritable
  _close(ends[childEnd]);
  if (*inheritable < 0) throw std::runtime_error("_dup failed");
}

}  // namespace

WindowsParent::WindowsParent(const std::string& serverPath, int parentPid)
    : exit_(std::make_shared<Exit>()) {
  int commands[2], replies[2];
  int serverIn = -1, serverOut = -1;
  makeChildPipe(commands, 0, &serverIn);
  makeChildPipe(replies, 1, &serverOut);
  std::string parent = std::to_string(parentPid != 0 ? parentPid : _getpid());
  std::string in = std::to_string(serverIn), out = std::to_string(serverOut);
  // _spawnv joins the arguments with spaces: a program path with spaces needs quotes.
  std::string program = "\"" + serverPath + "\"";
  const char* argv[] = {program.c_str(), parent.c_str(), in.c_str(), out.c_str(), nullptr};
  intptr_t process = _spawnv(_P_NOWAIT, serverPath.c_str(), argv);
  // The server has its own copies now; closing these lets each side see the other's end.
  _close(serverIn);
  _close(serverOut);
  if (process == -1) {
    _close(commands[1]);
    _close(replies[0]);
    throw std::runtime_error("_spawnv of " + serverPath + " failed");
  }
  commandFd_ = commands[1];
  replyFd_ = replies[0];
  source_ = client::PipeSource(replyFd_);
  // _cwait blocks without a time limit, so it runs on its own thread.
  std::thread([process, exit = exit_] {
    int status = -1;
    _cwait(&status, process, 0);
    std::lock_guard<std::mutex> lock(exit->mutex);
    exit->status = status;
    exit->changed.notify_all();
  }).detach();
}

WindowsParent::~WindowsParent() {
  closeCommands();
  closeReplies();
  if (!waitExit(500) && pid_ > 0) {
    platform::killProcess(pid_);
    waitExit(5000);
  }
}

void WindowsParent::write(std::string_view bytes) {
  if (commandFd_ >= 0) _write(commandFd_, bytes.data(), static_cast<unsigned>(bytes.size()));
}

client::Reply WindowsParent::request(std::string_view line, int timeoutMs) {
  write(std::string(line) + "\n");
  return client::readReply(reader_, client::replyShapeOf(line), client::deadlineIn(timeoutMs));
}

int WindowsParent::serverPid() {
  if (pid_ == 0) {
    client::Reply reply = request("p");
    if (reply.records.size() != 2) throw std::runtime_error("p got no process id record");
    pid_ = static_cast<int>(client::decodeProcessId(reply.records[0]));
  }
  return pid_;
}

void WindowsParent::closeCommands() {
  if (commandFd_ >= 0) _close(commandFd_);
  commandFd_ = -1;
}

void WindowsParent::closeReplies() {
  if (replyFd_ >= 0) _close(replyFd_);
  replyFd_ = -1;
  source_ = client::PipeSource(-1);
}

std::optional<int> WindowsParent::waitExit(int timeoutMs) {
  std::unique_lock<std::mutex> lock(exit_->mutex);
  exit_->changed.wait_for(lock, std::chrono::milliseconds(timeoutMs),
                          [&] { return exit_->status.has_value(); });
  return exit_->status;
}

}  // namespace odbs::test
