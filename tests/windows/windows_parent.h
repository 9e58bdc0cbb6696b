// A parent application on Windows, as it starts odb_server: two pipes made with _pipe, the
// server's ends made inheritable, the server started with _spawnv and given the parent's
// process id and the two descriptor numbers. Only C-runtime calls; the reply pipe is read
// through the client library's frame reader so that every read has a time limit.
//
// Owns the server: the destructor closes both pipes and, if the server has not ended within
// a moment, kills it, so that no test leaves a process behind.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "client/byte_source.h"
#include "client/frame_reader.h"
#include "client/reply_reader.h"

namespace odbs::test {

class WindowsParent {
 public:
  // Starts serverPath with parentPid as its parent (0: this process). Throws
  // std::runtime_error when a pipe or the process cannot be made.
  explicit WindowsParent(const std::string& serverPath, int parentPid = 0);
  ~WindowsParent();
  WindowsParent(const WindowsParent&) = delete;
  WindowsParent& operator=(const WindowsParent&) = delete;

  // Writes bytes to the command pipe as given (no newline added).
  void write(std::string_view bytes);
  // Writes the line and a newline, then reads the reply the line gets within timeoutMs.
  client::Reply request(std::string_view line, int timeoutMs = 5000);
  client::FrameReader& reader() { return reader_; }

  // The server's process id, asked of the server itself (command p) on first use.
  int serverPid();

  void closeCommands();
  void closeReplies();

  // Waits up to timeoutMs for the server to end: its exit status, or nothing while it runs.
  std::optional<int> waitExit(int timeoutMs);

 private:
  struct Exit;  // the exit status, filled by a thread that waits for the server
  std::shared_ptr<Exit> exit_;
  int commandFd_ = -1;
  int replyFd_ = -1;
  int pid_ = 0;
  client::PipeSource source_{-1};
  client::FrameReader reader_{source_};
};

}  // namespace odbs::test
