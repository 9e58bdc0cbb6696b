// The tools given bad arguments or files that are not databases, run as a user runs them:
// each must say what is wrong and exit with a non-zero status, never crash or print an
// empty result as if all were well.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "odb/h5.h"
#include "odb/odb.h"
#include "tests/ccx/test_files.h"
#include "tests/model/small_model_db.h"

namespace odbs::test {
namespace {

struct Outcome {
  int status = -1;  // exit status, or 128 + signal
  std::string out, err;
};

// Files that are not databases, each with the words its message must contain.
struct BadFile {
  std::string path;
  std::string reason;
};

class ToolFaults : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = new ccx::test::ScratchDir();
    buildSmallModel(goodDb());
    // A database of a newer format version than this build reads.
    std::string newer = dir_->write("newer.odb", ccx::test::readWhole(goodDb()));
    odb::h5::File::open(newer, false).root().setInt("format_version", 99);
  }
  static void TearDownTestSuite() {
    delete dir_;
    dir_ = nullptr;
  }
  static std::string goodDb() { return dir_->path() + "/good.odb"; }

  static std::vector<BadFile> badFiles() {
    return {{dir_->path() + "/missing.odb", "no such file"},
            {dir_->write("empty.odb", ""), "not a results database"},
            {dir_->write("text.odb", "*HEADING\nnot a database\n"), "not a results database"},
            {dir_->path(), "directory"},
            {dir_->path() + "/newer.odb", "format version 99"}};
  }

  // Runs program with args (each quoted for the shell), capturing both outputs.
  static Outcome run(const std::string& program, const std::vector<std::string>& args) {
    std::string cmd = program;
    for (const std::string& a : args) cmd += " '" + a + "'";
    std::string out = dir_->path() + "/stdout", err = dir_->path() + "/stderr";
    int raw = std::system((cmd + " >" + out + " 2>" + err + " </dev/null").c_str());
    Outcome o;
    o.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw);
    o.out = ccx::test::readWhole(out);
    o.err = ccx::test::readWhole(err);
    return o;
  }
  // odb_cli finds the server beside itself.
  static Outcome cli(const std::string& sub, const std::string& db) {
    return run(ODB_CLI_PATH, {sub, db});
  }

  static ccx::test::ScratchDir* dir_;
};

ccx::test::ScratchDir* ToolFaults::dir_ = nullptr;

TEST_F(ToolFaults, CliSaysWhyAFileIsNoDatabase) {
  for (const char* sub : {"model", "sets", "steps"}) {
    for (const BadFile& f : badFiles()) {
      Outcome o = cli(sub, f.path);
      SCOPED_TRACE(std::string(sub) + " " + f.path);
      EXPECT_EQ(o.status, 1) << o.err;
      EXPECT_NE(o.err.find("cannot open " + f.path + ": "), std::string::npos) << o.err;
      EXPECT_NE(o.err.find(f.reason), std::string::npos) << o.err;
    }
    Outcome good = cli(sub, goodDb());
    EXPECT_EQ(good.status, 0) << sub << ": " << good.err;
    EXPECT_EQ(good.err, "");
  }
}

TEST_F(ToolFaults, FieldsRefusesBadNumbers) {
  for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
           {"--frame", "-5"}, {"--frame", "2x"}, {"--values", "-1"}, {"--values", ""}}) {
    std::vector<std::string> all = {goodDb()};
    all.insert(all.end(), args.begin(), args.end());
    Outcome o = run(ODB_FIELDS_PATH, all);
    EXPECT_EQ(o.status, 2) << args[0] << " " << args[1];
    EXPECT_NE(o.err.find(args[0]), std::string::npos) << o.err;
    EXPECT_EQ(o.out, "");
  }
}

TEST_F(ToolFaults, FieldsErrorsAfterOpeningLeakNothing) {
  // Each fails after the database is open: under the leak checker a missed close would
  // turn status 1 into the checker's own.
  Outcome step = run(ODB_FIELDS_PATH, {goodDb(), "--step", "NOPE"});
  EXPECT_EQ(step.status, 1) << step.err;
  EXPECT_NE(step.err.find("NOPE"), std::string::npos) << step.err;

  Outcome frame = run(ODB_FIELDS_PATH, {goodDb(), "--step", "Step-1", "--frame", "3"});
  EXPECT_EQ(frame.status, 1) << frame.err;
  EXPECT_NE(frame.err.find("Step-1 has 1 frames"), std::string::npos) << frame.err;

  Outcome field = run(ODB_FIELDS_PATH, {goodDb(), "--field", "NOPE"});
  EXPECT_EQ(field.status, 1) << field.err;

  for (const BadFile& f : badFiles()) {
    Outcome o = run(ODB_FIELDS_PATH, {f.path});
    EXPECT_EQ(o.status, 1) << f.path << ": " << o.err;
    EXPECT_NE(o.err.find("odb_fields: "), std::string::npos) << o.err;
  }

  Outcome good = run(ODB_FIELDS_PATH, {goodDb(), "--step", "Step-1", "--frame", "0"});
  EXPECT_EQ(good.status, 0) << good.err;
  EXPECT_NE(good.out.find("Step-1, frame 0"), std::string::npos) << good.out;
}

}  // namespace
}  // namespace odbs::test
