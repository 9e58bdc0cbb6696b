#include "client/server_process.h"

#include <string>
#include <vector>

#include "client/client_error.h"
#include "platform/platform.h"

namespace odbs::client {

ServerProcess::ServerProcess(ServerOptions options) : options_(std::move(options)) {
  platform::ignoreBrokenPipe();
  int commands[2];  // [0] server reads, [1] this side writes
  int replies[2];   // [0] this side reads, [1] server writes
  if (!platform::makePipe(commands)) throw StartError("cannot create the command pipe");
  if (!platform::makePipe(replies)) {
    platform::closeFd(commands[0]);
    platform::closeFd(commands[1]);
    throw StartError("cannot create the reply pipe");
  }
  int parent = options_.parentPid != 0 ? options_.parentPid : platform::processId();
  std::vector<std::string> argv = {options_.serverPath, std::to_string(parent),
                                   std::to_string(commands[0]), std::to_string(replies[1])};
  pid_ = platform::spawnProcess(argv, {commands[0], replies[1]});
  // The server's ends now live in the server only; closing them here is what lets each
  // side see the other's end of stream.
  platform::closeFd(commands[0]);
  platform::closeFd(replies[1]);
  if (pid_ < 0) {
    platform::closeFd(commands[1]);
    platform::closeFd(replies[0]);
    throw StartError("cannot start the server program '" + options_.serverPath + "'");
  }
  commandFd_ = commands[1];
  replyFd_ = replies[0];
  source_ = PipeSource(replyFd_);
}

ServerProcess::~ServerProcess() {
  closeCommands();
  closeReplies();
  if (!exitStatus_ && pid_ > 0) {
    // A server that was not waited for gets a moment to see the end of its input.
    if (!waitExit(200)) {
      platform::killProcess(pid_);
      waitExit(5000);
    }
  }
}

template <typename F>
auto ServerProcess::withContext(int timeoutMs, F read) {
  try {
    return read(deadlineIn(limit(timeoutMs)));
  } catch (const ClientError& e) {
    std::string context = std::string(e.what()) + " (after the line \"" + lastLine_ + "\", limit " +
                          std::to_string(limit(timeoutMs)) + " ms)";
    if (dynamic_cast<const TimeoutError*>(&e)) throw TimeoutError(context);
    if (dynamic_cast<const StreamEndError*>(&e)) throw StreamEndError(context);
    if (dynamic_cast<const FrameError*>(&e)) throw FrameError(context);
    if (dynamic_cast<const DecodeError*>(&e)) throw DecodeError(context);
    throw ClientError(context);
  }
}

void ServerProcess::send(std::string_view line) {
  lastLine_ = std::string(line.substr(0, 80));
  if (line.size() > 80) lastLine_ += "...";
  std::string framed(line);
  framed += '\n';
  sendBytes(framed);
}

void ServerProcess::sendBytes(std::string_view bytes) {
  if (commandFd_ < 0) throw ClientError("the command pipe is already closed");
  platform::writeAll(commandFd_, bytes.data(), bytes.size());
}

Reply ServerProcess::request(std::string_view line, int timeoutMs) {
  send(line);
  return readReply(replyShapeOf(line), timeoutMs);
}

Reply ServerProcess::readReply(ReplyShape shape, int timeoutMs) {
  return withContext(timeoutMs, [&](Deadline d) { return client::readReply(reader_, shape, d); });
}

size_t ServerProcess::readReplyEach(ReplyShape shape,
                                    const std::function<void(const RecordView&)>& onRecord,
                                    int timeoutMs) {
  return withContext(
      timeoutMs, [&](Deadline d) { return client::readReplyEach(reader_, shape, d, onRecord); });
}

Record ServerProcess::readRecord(int timeoutMs) {
  return withContext(timeoutMs, [&](Deadline d) { return reader_.next(d); });
}

std::vector<uint8_t> ServerProcess::readBytes(size_t n, int timeoutMs) {
  return withContext(timeoutMs, [&](Deadline d) { return reader_.readBytes(n, d); });
}

std::vector<uint8_t> ServerProcess::readToEnd(int timeoutMs) {
  return withContext(timeoutMs, [&](Deadline d) { return reader_.readToEnd(d); });
}

bool ServerProcess::replyPending(int timeoutMs) {
  if (replyFd_ < 0) throw ClientError("the reply pipe is already closed");
  return platform::waitReadable(replyFd_, timeoutMs);
}

void ServerProcess::closeCommands() {
  platform::closeFd(commandFd_);
  commandFd_ = -1;
}

void ServerProcess::closeReplies() {
  platform::closeFd(replyFd_);
  replyFd_ = -1;
  source_ = PipeSource(-1);
}

std::optional<int> ServerProcess::waitExit(int timeoutMs) {
  if (!exitStatus_ && pid_ > 0) {
    int status = 0;
    if (platform::waitChild(pid_, timeoutMs, &status)) exitStatus_ = status;
  }
  return exitStatus_;
}

void ServerProcess::kill() {
  if (!exitStatus_ && pid_ > 0) platform::killProcess(pid_);
}

}  // namespace odbs::client
