// The command loop run to a normal return, in this process: the leak checker of the
// sanitizer build then sees everything that the commands left behind when the test exits.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "access/registry.h"
#include "odb/repository.h"
#include "server/dispatcher.h"
#include "tests/model/small_model_db.h"

namespace odbs {
namespace {

// An anonymous file holding text, positioned at its start.
struct TempFile {
  explicit TempFile(const std::string& text = "") : f(std::tmpfile()) {
    std::fwrite(text.data(), 1, text.size(), f);
    std::fflush(f);
    std::rewind(f);
  }
  ~TempFile() { std::fclose(f); }
  int fd() const { return fileno(f); }
  std::string read() const {
    std::rewind(f);
    std::string s;
    for (int c; (c = std::fgetc(f)) != EOF;) s += char(c);
    return s;
  }
  FILE* f;
};

class CommandLoop : public ::testing::Test {
 protected:
  void SetUp() override {
    std::random_device fresh;
    dir_ = (std::filesystem::temp_directory_path() / ("loop_" + std::to_string(fresh()))).string();
    std::filesystem::create_directory(dir_);
    db_ = dir_ + "/small.odb";
    test::buildSmallModel(db_);
    initializeDatabases();
  }
  void TearDown() override { std::filesystem::remove_all(dir_); }

  // Every reply of the lines, run through the loop until it returns.
  std::string serve(const std::string& lines) {
    TempFile in(lines), out;
    serveCommands(in.fd(), out.fd());
    return out.read();
  }
  std::string dir_, db_;
};

const std::string kEnd("\x01\x00\x7e", 3);

TEST_F(CommandLoop, ReturnsAtTheEndOfInput) {
  std::string replies =
      serve("g " + db_ + "\nS 0 1 " + db_ + "\nT " + dir_ + "/cat\nfd " + db_ + "\nfD " + db_ +
            "\nrs " + db_ + "\nhi " + db_ + "\ng " + dir_ + "/missing.odb\n");
  ASSERT_GE(replies.size(), 3u);
  EXPECT_EQ(replies.substr(replies.size() - 3), kEnd);  // the missing database's end record
  EXPECT_EQ(odb_OdbRepository::instance().size(), 1);   // still open: no clean-up at the end
  shutdownAll();
}

TEST_F(CommandLoop, ReturnsAfterQuitHavingClosedEverything) {
  std::string replies = serve("o " + db_ + "\nq\np\n");
  EXPECT_EQ(replies, kEnd);  // o's end record; nothing for q, and p never runs
  EXPECT_EQ(odb_OdbRepository::instance().size(), 0);
}

}  // namespace
}  // namespace odbs
