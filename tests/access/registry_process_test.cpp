// The registry's replies through the real server: upgrade messages and the upgrade check,
// quitting with databases open, and the parent watchdog's clean-up of catalogue files.
#include <gtest/gtest.h>

#include <string>

#include "odb/writer.h"
#include "platform/platform.h"
#include "tests/odb/legacy_v1_writer.h"
#include "tests/odb/sample_model.h"
#include "tests/protocol/server_fixture.h"

namespace odbs::client {
namespace {

using test::Bytes;
using test::kEnd;
using test::kTimeoutMs;
using test::startServer;

Bytes textFrame(const std::string& text) {
  return odbs::test::frame('|', odbs::test::textBody(text));
}

class RegistryProcessTest : public ::testing::Test {
 protected:
  void TearDown() override {
    for (const auto& p : files_) platform::removeFile(p);
  }
  std::string file(const std::string& name) {
    files_.push_back(odbtest::tempPath(name));
    return files_.back();
  }
  std::string current(const std::string& name) {
    std::string p = file(name);
    odb::Writer w(p);
    w.addInstance("PART-1-1").addNodes({1}, {0.f, 0.f, 0.f}, 3);
    w.close();
    return p;
  }
  std::vector<std::string> files_;
};

TEST_F(RegistryProcessTest, UpgradeCheckOpenAndClose) {
  std::string old = file("v1.odb"), copy = old + ".odb";
  files_.push_back(copy);
  odbtest::writeVersion1(old, odbtest::sampleModel());
  auto server = startServer();

  const Bytes upgradeNeeded = {0x05, 0x00, 0x7C, 0x01, 0x00, 0x00, 0x00};
  EXPECT_EQ(server->request("u " + old).wireBytes(), upgradeNeeded);
  EXPECT_EQ(server->request("o " + old).wireBytes(),
            odbs::test::concat({textFrame("odb upgrade to: " + copy), kEnd}));
  EXPECT_TRUE(platform::fileReadable(copy));
  EXPECT_EQ(server->request("u " + old).wireBytes(), kEnd);
  EXPECT_EQ(server->request("c " + old).wireBytes(),
            odbs::test::concat({textFrame("Found upgraded odb: " + copy), kEnd}));
  // A current database needs nothing and says nothing.
  std::string now = current("now.odb");
  EXPECT_EQ(server->request("u " + now).wireBytes(), kEnd);
  EXPECT_EQ(server->request("o " + now).wireBytes(), kEnd);
  EXPECT_EQ(server->request("c " + now).wireBytes(), kEnd);
  EXPECT_EQ(server->request("c " + now).wireBytes(), kEnd);
}

// With two databases open, the watchdog removes the catalogue's companions on the
// parent's end; q leaves them and writes nothing. Either way the server exits with status 0.
TEST_F(RegistryProcessTest, ParentExitRemovesCatalogueCompanionsQuitDoesNot) {
  for (bool byParent : {true, false}) {
    std::string base = file(byParent ? "cat-parent" : "cat-quit");
    files_.push_back(base + "_tmp");
    files_.push_back(base + "_lock");
    std::string db = current(byParent ? "wp.odb" : "wq.odb");
    std::string other = current(byParent ? "wp2.odb" : "wq2.odb");
    pid_t parent = platform::spawnProcess({"/bin/sleep", "60"}, {});
    ASSERT_GT(parent, 0);
    auto server = startServer(parent);
    server->request("o " + db);
    server->request("o " + other);
    EXPECT_EQ(server->request("T " + base).wireBytes(), kEnd);
    ASSERT_TRUE(platform::createEmptyFile(base + "_tmp"));
    ASSERT_TRUE(platform::createEmptyFile(base + "_lock"));
    if (byParent) {
      platform::killProcess(parent);
    } else {
      server->send("q");
    }
    EXPECT_EQ(server->waitExit(3000), 0);
    if (!byParent) {
      EXPECT_TRUE(server->readToEnd().empty());
    }
    EXPECT_NE(platform::fileReadable(base + "_tmp"), byParent);
    EXPECT_NE(platform::fileReadable(base + "_lock"), byParent);
    platform::killProcess(parent);
    int status;
    platform::waitChild(parent, kTimeoutMs, &status);
  }
}

}  // namespace
}  // namespace odbs::client
