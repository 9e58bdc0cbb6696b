// How the server ends: q, end of input, a parent gone before it starts, and what it survives
// (a reply pipe without a reader). Every way out must be exit status 0. A parent ending later:
// tests/access/registry_process_test.cpp and process_faults_test.cpp.
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/platform.h"
#include "tests/protocol/server_fixture.h"

namespace odbs::client {
namespace {

using test::kTimeoutMs;
using test::startServer;

// q after every kind of state was set: status 0, nothing written.
TEST(Lifecycle, QuitAfterStateWasSet) {
  auto server = startServer();
  for (const char* line : {"D 0 1 0 a^b", "a 3", "b 10 20 30 40", "irc 1 2 Name With Spaces",
                           "ho 1", "hb U1", "v 5", "T /nonexistent/cache"}) {
    server->request(line);
  }
  server->send("q");
  EXPECT_EQ(server->waitExit(kTimeoutMs), 0);
  EXPECT_TRUE(server->readToEnd().empty());
}

TEST(Lifecycle, ParentAlreadyGoneAtStart) {
  pid_t parent = platform::spawnProcess({"/bin/true"}, {});
  ASSERT_GT(parent, 0);
  int status = -1;
  ASSERT_TRUE(platform::waitChild(parent, kTimeoutMs, &status));

  auto server = startServer(parent);
  EXPECT_EQ(server->waitExit(kTimeoutMs), 0);
}

TEST(Lifecycle, ClosedReplyPipeDoesNotEndTheServer) {
  auto server = startServer();
  server->closeReplies();
  for (const char* line : {"p", "m 2000 100", "M 20 50000", "Z", "g /nonexistent/a.odb"}) {
    server->send(line);
  }
  // Still running after every write failed; a broken-pipe signal would have ended it.
  EXPECT_FALSE(server->waitExit(500).has_value());
  server->closeCommands();
  EXPECT_EQ(server->waitExit(kTimeoutMs), 0);
}

// The server gets its two pipe ends and nothing else: a descriptor that this process left
// inheritable must not hold a pipe open behind the server's back.
TEST(Lifecycle, ServerInheritsOnlyItsTwoDescriptors) {
  int fds[2];
  ASSERT_TRUE(platform::makePipe(fds));
  int inheritable = ::dup(fds[1]);  // dup clears close-on-exec
  ASSERT_GE(inheritable, 0);
  auto server = startServer();
  EXPECT_EQ(server->request("p").records.size(), 2u);

  platform::closeFd(fds[1]);
  platform::closeFd(inheritable);
  ASSERT_TRUE(platform::waitReadable(fds[0], 2000)) << "a copy of the write end is still open";
  char c;
  EXPECT_EQ(platform::readSome(fds[0], &c, 1), 0);
  platform::closeFd(fds[0]);
}

}  // namespace
}  // namespace odbs::client
