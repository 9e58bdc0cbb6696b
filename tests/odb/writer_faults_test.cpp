// Writer faults and hostile paths: a full disk, an output that is the input or not a
// regular file, a FIFO given as a database, temporaries of killed writers, signals.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/odb/sample_model.h"

namespace fs = std::filesystem;

namespace {

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

class WriterFaults : public ::testing::Test {
 protected:
  void SetUp() override {
    odb_initializeAPI();
    dir_ = odbtest::tempPath("writer_faults");
    fs::create_directories(dir_);
  }
  void TearDown() override {
    std::system(("umount " + dir_ + "/disk 2>/dev/null").c_str());
    fs::remove_all(dir_);
  }
  std::vector<std::string> entries(const std::string& dir) const {
    std::vector<std::string> out;
    for (const auto& e : fs::directory_iterator(dir)) out.push_back(e.path().filename());
    return out;
  }
  // Runs odb_build with a shell prefix (limits); returns its exit status, output in *err.
  int build(const std::string& prefix, const std::string& in, const std::string& out,
            std::string* err) {
    std::string log = dir_ + "/stderr.txt";
    std::string cmd = "bash -c \"" + prefix + " exec " + ODB_BUILD_PATH + " '" + in + "' '" + out +
                      "'\" 2>'" + log + "'";
    int status = std::system(cmd.c_str());
    *err = readAll(log);
    fs::remove(log);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  std::string dir_;
};

const std::string kJson = std::string(ODB_TEST_DATA) + "/small_model.json";

TEST_F(WriterFaults, FullDiskExitsOneAndLeavesNothing) {
  // The file size limit makes every write past it fail as a full disk does (with the
  // signal ignored, a write gets an error instead of ending the process).
  for (int kb : {8, 40, 70}) {
    std::string err;
    EXPECT_EQ(build("trap '' XFSZ; ulimit -f " + std::to_string(kb) + ";", kJson,
                    dir_ + "/full.odb", &err),
              1)
        << kb << " KB: " << err;
    EXPECT_NE(err.find("odb_build: "), std::string::npos) << err;
    EXPECT_TRUE(entries(dir_).empty()) << kb << " KB";
  }
  // A real full file system where this machine lets the test mount one.
  fs::create_directories(dir_ + "/disk");
  if (std::system(("mount -t tmpfs -o size=48k tmpfs " + dir_ + "/disk 2>/dev/null").c_str()) ==
      0) {
    std::string err;
    EXPECT_EQ(build("", kJson, dir_ + "/disk/full.odb", &err), 1) << err;
    EXPECT_TRUE(entries(dir_ + "/disk").empty());
  }
}

TEST_F(WriterFaults, OutputThatIsTheInputIsRefusedBeforeWriting) {
  std::string same = dir_ + "/same.json";
  fs::copy_file(kJson, same);
  fs::create_symlink(same, dir_ + "/link.odb");
  std::string err;
  EXPECT_EQ(build("", same, same, &err), 1);
  EXPECT_NE(err.find("is the input"), std::string::npos) << err;
  EXPECT_EQ(build("", same, dir_ + "/link.odb", &err), 1);  // the same file by another name
  EXPECT_EQ(readAll(same), readAll(kJson));
  EXPECT_EQ(entries(dir_).size(), 2u);
}

// Opening a FIFO would block until a writer comes: the test would hang.
TEST_F(WriterFaults, FifoFolderOrDeviceIsRefusedWithoutOpening) {
  std::string fifo = dir_ + "/fifo.odb", folder = dir_ + "/folder.odb";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  fs::create_directories(folder);
  for (const std::string& out : {fifo, folder, std::string("/dev/null")}) {
    try {
      odb::Writer w(out);
      ADD_FAILURE() << "wrote to " << out;
    } catch (const std::runtime_error& e) {
      EXPECT_NE(std::string(e.what()).find("is not a regular file"), std::string::npos);
    }
  }
  EXPECT_TRUE(fs::is_fifo(fifo));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(entries(dir_).size(), 2u);
  for (const std::string& path : {fifo, folder}) {
    try {
      openOdb(path, true);
      ADD_FAILURE() << "opened " << path;
    } catch (const std::runtime_error& e) {
      EXPECT_NE(std::string(e.what()).find("cannot open '" + path + "'"), std::string::npos);
    }
    EXPECT_THROW(isUpgradeRequiredForOdb(path), std::runtime_error);
  }
}

// The pid of a process that has ended.
pid_t goneProcess() {
  pid_t pid = fork();
  if (pid == 0) _exit(0);
  waitpid(pid, nullptr, 0);
  return pid;
}

TEST_F(WriterFaults, TemporariesOfGoneWritersAreRemovedByTheNextWriter) {
  std::string path = dir_ + "/job.odb";
  std::string gone = path + ".tmp" + std::to_string(goneProcess());
  std::string running = path + ".tmp" + std::to_string(getppid());
  std::string other = path + ".tmpnotapid", otherJob = dir_ + "/other.odb.tmp1";
  for (const auto& p : {gone, running, other, otherJob}) std::ofstream(p) << "x";
  {
    odb::Writer w(path);
    EXPECT_FALSE(fs::exists(gone));
    EXPECT_TRUE(fs::exists(running));  // a writer still at work
  }
  EXPECT_TRUE(fs::exists(other));
  EXPECT_TRUE(fs::exists(otherJob));
  EXPECT_FALSE(fs::exists(path));  // destroyed without close: nothing under the name
}

TEST_F(WriterFaults, InterruptedWriterRemovesItsTemporary) {
  for (int sig : {SIGINT, SIGTERM}) {
    std::string path = dir_ + "/job.odb";
    pid_t pid = fork();
    if (pid == 0) {
      odb::Writer w(path);
      odb::addModel(w, odbtest::sampleModel());
      raise(sig);
      _exit(3);
    }
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == sig) << status;
    EXPECT_TRUE(entries(dir_).empty()) << sig;
  }
}

}  // namespace
