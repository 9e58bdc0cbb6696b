// Errors raised by the client library. Each carries a message that says what was being
// done when it happened (the command, how many bytes of a frame had arrived, ...).
//
//   ClientError        base of all of them
//   TimeoutError       the server sent nothing within the time limit
//   StreamEndError     the reply stream ended (the server exited or closed its descriptor)
//   FrameError         a frame cannot be valid (a count of 0: no room for the type byte)
//   DecodeError        a record body does not have the layout its decoder expects
//   StartError         the server could not be started
#pragma once

#include <stdexcept>
#include <string>

namespace odbs::client {

class ClientError : public std::runtime_error {
 public:
  explicit ClientError(const std::string& what) : std::runtime_error(what) {}
};

class TimeoutError : public ClientError {
 public:
  using ClientError::ClientError;
};

class StreamEndError : public ClientError {
 public:
  using ClientError::ClientError;
};

class FrameError : public ClientError {
 public:
  using ClientError::ClientError;
};

class DecodeError : public ClientError {
 public:
  using ClientError::ClientError;
};

class StartError : public ClientError {
 public:
  using ClientError::ClientError;
};

}  // namespace odbs::client
