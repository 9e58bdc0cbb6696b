// Process faults: the parent ends while a command is still streaming its reply. The
// watchdog then closes every database and ends the server while the command's handler is
// still reading them; the server must end with status 0 every time, never crash.
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "client/client_error.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "platform/platform.h"
#include "tests/protocol/server_fixture.h"

namespace odbs::client {
namespace {

using test::kTimeoutMs;
using test::startServer;

// A database whose replies take a while: many nodes and elements for g, many frames for fd.
void writeSlowDatabase(const std::string& path) {
  constexpr int kNodes = 200000, kFrames = 20000;
  odb::Writer w(path);
  w.setTitle("slow");
  odb::EntityWriter part = w.addInstance("PART-1");
  std::vector<int32_t> labels(kNodes), connectivity;
  std::vector<float> coordinates;
  for (int i = 0; i < kNodes; ++i) {
    labels[size_t(i)] = i + 1;
    coordinates.insert(coordinates.end(), {float(i), 0.f, 0.f});
    if (i > 0) connectivity.insert(connectivity.end(), {i, i + 1});
  }
  part.addNodes(labels, coordinates);
  labels.pop_back();
  part.addElements("T3D2", labels, 2, connectivity);
  w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
  for (int i = 0; i < kFrames; ++i) {
    odb::FrameData f;
    f.frameValue = 0.001 * i;
    f.description = "Increment " + std::to_string(i);
    w.addFrame(f);
  }
  w.close();
}

class ParentDeath : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    std::random_device fresh;
    dir_ = new std::string(
        (std::filesystem::temp_directory_path() / ("parent_death_" + std::to_string(fresh())))
            .string());
    std::filesystem::create_directory(*dir_);
    writeSlowDatabase(db());
  }
  static void TearDownTestSuite() {
    std::filesystem::remove_all(*dir_);
    delete dir_;
  }
  static std::string db() { return *dir_ + "/slow.odb"; }

  // Starts a server whose parent is a process of its own, sends line, reads `before`
  // records of its reply, ends the parent and reads on until the server has gone.
  // Returns the server's exit status.
  static int killParentWhileStreaming(const std::string& line, int before) {
    pid_t parent = platform::spawnProcess({"/bin/sleep", "60"}, {});
    EXPECT_GT(parent, 0);
    auto server = startServer(parent);
    server->request("o " + db());  // opened: the next command only streams
    server->request("T " + *dir_ + "/catalogue");
    server->send(line);
    for (int i = 0; i < before; ++i) server->readRecord();
    platform::killProcess(parent);
    int parentStatus = -1;
    platform::waitChild(parent, kTimeoutMs, &parentStatus);
    try {
      server->readToEnd(kTimeoutMs);  // keeps the handler writing, and so reading
    } catch (const ClientError&) {
    }
    return server->waitExit(kTimeoutMs).value_or(-1);
  }

  static std::string* dir_;
};

std::string* ParentDeath::dir_ = nullptr;

// The catalogue walk also leaves none of its companion files (lock, temporary cache).
TEST_F(ParentDeath, DuringTheCatalogueWalk) {
  for (int run = 0; run < 8; ++run) {
    EXPECT_EQ(killParentWhileStreaming("fd " + db(), run % 3), 0) << "run " << run;
    EXPECT_FALSE(platform::fileReadable(*dir_ + "/catalogue_lock")) << "run " << run;
    EXPECT_FALSE(platform::fileReadable(*dir_ + "/catalogue_tmp")) << "run " << run;
  }
}

TEST_F(ParentDeath, DuringTheModelExport) {
  for (int run = 0; run < 8; ++run)
    EXPECT_EQ(killParentWhileStreaming("g " + db(), run % 3), 0) << "run " << run;
}

}  // namespace
}  // namespace odbs::client
