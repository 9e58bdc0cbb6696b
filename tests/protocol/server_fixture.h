// Starting the server under test. Every read has a 5-second limit, so that a server that
// stops answering fails the test instead of hanging it.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "client/server_process.h"
#include "tests/support/bytes.h"

namespace odbs::client::test {

using odbs::test::Bytes;
using odbs::test::kEnd;

constexpr int kTimeoutMs = 5000;

// Starts odb_server with this process as its parent, or with the given parent id.
inline std::unique_ptr<ServerProcess> startServer(int parentPid = 0) {
  return std::make_unique<ServerProcess>(ServerOptions{ODB_SERVER_PATH, parentPid, kTimeoutMs});
}

}  // namespace odbs::client::test
