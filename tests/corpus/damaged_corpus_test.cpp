// Damaged copies of every example database (cut, metadata and data bytes changed, headers
// crafted with their checksums recomputed) through the server's o g G S s fd u and through
// odb_fields. A damaged copy may be refused or answered in part; it must never crash a
// program or make it hang. Prints how many copies were tried, how many crashed or hung,
// and how many were answered exactly as the undamaged file.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/client_error.h"
#include "client/server_process.h"
#include "tests/ccx/test_files.h"
#include "tests/corpus/damage.h"
#include "tests/model/small_model_db.h"
#include "tools/ccx/importer.h"

namespace odbs::test {
namespace {

constexpr int kPerKind = 1;           // copies of each kind of damage per database
constexpr int kReplyLimitMs = 30000;  // a reply slower than this counts as a hang
constexpr int kToolLimitSeconds = 30;

struct Tally {
  int tried = 0, crashes = 0, hangs = 0, unchanged = 0;
  std::vector<std::string> faults;  // what crashed or hung, for the failure message
};

// Every reply of the server's database commands on one file, the raw bytes of each.
class CommandRun {
 public:
  explicit CommandRun(const std::string& scratch) : scratch_(scratch) { start(); }

  // Runs the commands on path. Returns the replies, or nothing when the server crashed or
  // hung (counted in tally and the server started again).
  std::optional<std::vector<std::vector<uint8_t>>> run(const std::string& path,
                                                       const std::string& what, Tally* tally) {
    const std::vector<std::string> lines = {
        "o " + path,     "g " + path,     "G " + path,
        "S 0 0 " + path, "s 0 1 " + path, "T " + scratch_ + "/catalogue",
        "fd " + path,    "u " + path,     "c " + path};
    std::vector<std::vector<uint8_t>> replies;
    for (const std::string& line : lines) {
      try {
        replies.push_back(server_->request(line, kReplyLimitMs).wireBytes());
      } catch (const client::TimeoutError&) {
        ++tally->hangs;
        tally->faults.push_back("server hung on '" + line.substr(0, 2) + "' for " + what);
        restart();
        return std::nullopt;
      } catch (const client::ClientError& e) {
        std::optional<int> status = server_->waitExit(5000);
        ++tally->crashes;
        tally->faults.push_back("server ended (status " + std::to_string(status.value_or(-1)) +
                                ") on '" + line.substr(0, 2) + "' for " + what + ": " + e.what());
        restart();
        return std::nullopt;
      }
    }
    return replies;
  }

  // Ends the server through the end of its input; it must exit with status 0.
  int stop() {
    server_->closeCommands();
    return server_->waitExit(kReplyLimitMs).value_or(-1);
  }

 private:
  void start() {
    server_ = std::make_unique<client::ServerProcess>(
        client::ServerOptions{ODB_SERVER_PATH, 0, kReplyLimitMs});
  }
  void restart() {
    server_->kill();
    start();
  }
  std::string scratch_;
  std::unique_ptr<client::ServerProcess> server_;
};

// odb_fields on path: status 0 or 1 is an answer; anything else a crash, a time-out a hang.
void runFields(const std::string& path, const std::string& scratch, const std::string& what,
               Tally* tally) {
  // Sanitizer findings get a status of their own, apart from odb_fields' 1 for a bad file;
  // leaks inside the file library on its error paths are the library's.
  std::string env =
      "ASAN_OPTIONS=exitcode=86:$ASAN_OPTIONS UBSAN_OPTIONS=exitcode=86 "
      "LSAN_OPTIONS=suppressions=" +
      scratch + "/lsan.supp ";
  std::string cmd = env + "timeout -s KILL " + std::to_string(kToolLimitSeconds) + " " +
                    ODB_FIELDS_PATH + " '" + path + "' --values 1000000 >/dev/null 2>>" + scratch +
                    "/tools.log";
  int raw = std::system(cmd.c_str());
  int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
  if (status == 0 || status == 1) return;
  if (status == 137) {
    ++tally->hangs;
    tally->faults.push_back("odb_fields hung on " + what);
  } else {
    ++tally->crashes;
    tally->faults.push_back("odb_fields ended with status " + std::to_string(status) + " on " +
                            what);
  }
}

TEST(DamagedCorpus, NoCopyCrashesOrHangsTheServerOrTheTools) {
  ccx::test::ScratchDir dir;
  // The example databases: every example deck imported with its results, and the small
  // model built from its description.
  std::vector<std::string> databases;
  for (std::string name : {"beam_steps", "plate_composite", "punch_contact", "strip_modes"}) {
    databases.push_back(dir.path() + "/" + name + ".odb");
    ccx::Warnings warnings;
    ccx::importCalculix({ccx::test::exampleFile(name + ".inp"), ccx::test::dataFile(name + ".frd"),
                         ccx::test::dataFile(name + ".dat"), databases.back()},
                        warnings);
  }
  databases.push_back(dir.path() + "/small_model.odb");
  buildSmallModel(databases.back());
  dir.write("lsan.supp", "leak:libhdf5\n");
  CommandRun server(dir.path());
  Tally tally;
  uint32_t seed = 1;
  for (const std::string& db : databases) {
    std::optional<std::vector<std::vector<uint8_t>>> reference = server.run(db, db, &tally);
    ASSERT_TRUE(reference.has_value()) << "the undamaged " << db << " failed";
    ASSERT_GT(reference->at(1).size(), 10u) << db << " sends no model";
    std::string whole = ccx::test::readWhole(db);
    std::vector<DamagedCopy> copies = damagedCopies({whole.begin(), whole.end()}, kPerKind, seed++);
    int crafted = 0;
    for (const DamagedCopy& copy : copies) crafted += copy.name.rfind("crafted", 0) == 0;
    EXPECT_GE(crafted, 4) << db << ": the generator found too few headers to craft";

    int number = 0;
    for (const DamagedCopy& copy : copies) {
      // Each copy under a name of its own: the server must not take it for an open one.
      std::string path = dir.path() + "/copy" + std::to_string(++number) + ".odb";
      std::ofstream(path, std::ios::binary)
          .write(reinterpret_cast<const char*>(copy.bytes.data()), long(copy.bytes.size()));
      std::string what = copy.name + " of " + db;
      ++tally.tried;
      std::optional<std::vector<std::vector<uint8_t>>> replies = server.run(path, what, &tally);
      if (replies && *replies == *reference) ++tally.unchanged;
      runFields(path, dir.path(), what, &tally);
      std::remove(path.c_str());
    }
  }
  EXPECT_EQ(server.stop(), 0);
  std::printf(
      "damaged corpus: %d copies tried, %d crashes, %d hangs, %d answered as the "
      "undamaged file\n",
      tally.tried, tally.crashes, tally.hangs, tally.unchanged);
  EXPECT_EQ(tally.crashes, 0);
  EXPECT_EQ(tally.hangs, 0);
  for (const std::string& f : tally.faults) ADD_FAILURE() << f;
  std::string log = ccx::test::readWhole(dir.path() + "/tools.log");
  if (tally.crashes > 0) std::printf("%s\n", log.substr(0, 20000).c_str());
}

}  // namespace
}  // namespace odbs::test
