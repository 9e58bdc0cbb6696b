// A running odb_server, started the way a parent application starts it.
//
// Start: two pipes; the server gets the command pipe's read end and the reply pipe's write
// end and keeps exactly those two descriptors (besides standard input, output and error);
// its arguments are the parent's process id (this process by default) and the two
// descriptor numbers. This side keeps the command write end and the reply read end.
//
// Every read is bounded by a time limit (ServerOptions::timeoutMs unless a call is given
// one) and throws TimeoutError, StreamEndError or FrameError with what was expected, the
// last line sent and the limit in the message.
// Writes to a server that is gone are silent: the failure shows on the next read.
//
// Owns the process and both descriptors: the destructor closes the descriptors, kills the
// server if it has not ended and waits for it, so no test leaves a process behind.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "client/byte_source.h"
#include "client/frame_reader.h"
#include "client/reply_reader.h"

namespace odbs::client {

struct ServerOptions {
  std::string serverPath;  // the odb_server program
  int parentPid = 0;       // process id passed as the parent; 0 means this process
  int timeoutMs = 10000;   // default limit for reading one reply
};

class ServerProcess {
 public:
  // Starts the server. Throws StartError when the pipes or the process cannot be made.
  // Makes writes to a closed pipe fail instead of ending this process.
  explicit ServerProcess(ServerOptions options);
  ~ServerProcess();
  ServerProcess(const ServerProcess&) = delete;
  ServerProcess& operator=(const ServerProcess&) = delete;

  pid_t pid() const { return pid_; }
  const ServerOptions& options() const { return options_; }

  // Sends one command line; the newline is appended here. Blocks while the command pipe is
  // full (the server reads it only between commands), so a caller that sends many lines
  // ahead of their replies must keep them within the pipe's 64 KiB.
  void send(std::string_view line);
  // Sends bytes exactly as given (partial lines, several lines at once).
  void sendBytes(std::string_view bytes);

  // Sends the line and reads the reply that the line gets (replyShapeOf): nothing for the
  // silent commands and q, records up to the closing one otherwise (M's unframed bytes
  // are skipped and counted). The line must be one command line: no newline, at most 4094
  // characters (serverLines tells the replies of any other text).
  Reply request(std::string_view line, int timeoutMs = -1);
  // Reads one reply of the given shape. timeoutMs < 0 uses the default limit.
  Reply readReply(ReplyShape shape = {}, int timeoutMs = -1);
  // Streams one reply record by record (for replies too large to hold).
  size_t readReplyEach(ReplyShape shape, const std::function<void(const RecordView&)>& onRecord,
                       int timeoutMs = -1);
  // The next record on its own.
  Record readRecord(int timeoutMs = -1);
  // Exactly n unframed bytes.
  std::vector<uint8_t> readBytes(size_t n, int timeoutMs = -1);
  // Every byte until the server closes its reply descriptor (it exited).
  std::vector<uint8_t> readToEnd(int timeoutMs = -1);
  // True when reply bytes or the end of the stream arrive within timeoutMs; for checking
  // that the server stays silent.
  bool replyPending(int timeoutMs);
  // The reader over the reply pipe, for callers that read frames and raw bytes themselves.
  FrameReader& reader() { return reader_; }

  // Closes this side's end of the command pipe: the server sees the end of its input.
  void closeCommands();
  // Closes this side's end of the reply pipe: the server's writes then fail.
  void closeReplies();

  // Waits up to timeoutMs for the server to end. Returns its exit status (128 + signal
  // number when a signal ended it), or nothing while it still runs.
  std::optional<int> waitExit(int timeoutMs);
  // Kills the server (no-op once it has been waited for).
  void kill();

 private:
  int limit(int timeoutMs) const { return timeoutMs < 0 ? options_.timeoutMs : timeoutMs; }
  // Runs a read, adding the last line sent and the limit to the message of its error.
  template <typename F>
  auto withContext(int timeoutMs, F read);

  std::string lastLine_;  // the last line sent, shortened, for error messages

  ServerOptions options_;
  pid_t pid_ = -1;
  int commandFd_ = -1;
  int replyFd_ = -1;
  std::optional<int> exitStatus_;
  PipeSource source_{-1};
  FrameReader reader_{source_};
};

}  // namespace odbs::client
