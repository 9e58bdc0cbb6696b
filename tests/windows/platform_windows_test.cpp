// The Windows platform layer where it differs from POSIX: renames over an existing file,
// one file under two spellings, file identity and times, children and their exit status.
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/platform.h"
#include "tests/odb/sample_model.h"

namespace odbs::platform {
namespace {

void writeFile(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(PlatformWindows, RenameReplacesAnExistingFile) {
  std::string from = odbtest::tempPath("new.tmp"), to = odbtest::tempPath("target.txt");
  writeFile(to, "old");
  writeFile(from, "new contents");
  EXPECT_EQ(renameFile(from, to), 0);
  EXPECT_EQ(readFile(to), "new contents");
  EXPECT_FALSE(fileReadable(from));
  EXPECT_NE(renameFile(from, to), 0) << "a missing source must fail";
  EXPECT_TRUE(removeFile(to));
  EXPECT_FALSE(removeFile(to));
}

TEST(PlatformWindows, OneFileUnderTwoSpellings) {
  std::string path = odbtest::tempPath("spelling.odb");
  writeFile(path, "x");
  std::string backslashed = path;
  for (char& c : backslashed) {
    if (c == '/') c = '\\';
  }
  EXPECT_TRUE(sameFile(path, backslashed));
  EXPECT_TRUE(sameFile(path, canonicalPath(path))) << canonicalPath(path);

  std::string other = odbtest::tempPath("other.odb");
  writeFile(other, "x");
  EXPECT_FALSE(sameFile(path, other));
  EXPECT_FALSE(sameFile(path, odbtest::tempPath("missing.odb")));
  removeFile(path);
  removeFile(other);
}

TEST(PlatformWindows, StatReportsSizeAndATimeThatChangesWithTheFile) {
  std::string path = odbtest::tempPath("stat.bin");
  writeFile(path, std::string(1000, 'a'));
  FileStat first;
  ASSERT_TRUE(statFile(path, &first));
  EXPECT_EQ(first.size, 1000);
  EXPECT_GT(first.mtimeSec, 1600000000);  // after 2020: the 1601 epoch was converted
  EXPECT_LT(first.mtimeNsec, 1000000000);

  FileStat again;
  ASSERT_TRUE(statFile(path, &again));
  EXPECT_EQ(again.device, first.device);
  EXPECT_EQ(again.inode, first.inode);

  writeFile(path, std::string(10, 'b'));
  FileStat changed;
  ASSERT_TRUE(statFile(path, &changed));
  EXPECT_EQ(changed.size, 10);
  EXPECT_FALSE(statFile(odbtest::tempPath("missing.bin"), &changed));
  removeFile(path);
}

TEST(PlatformWindows, ChildrenReportTheirExitStatus) {
  // The server as a child: q ends it with 0; killed, it reports 137.
  int commands[2];
  ASSERT_TRUE(makePipe(commands));
  pid_t quits =
      spawnProcess({ODB_SERVER_PATH, "0", std::to_string(commands[0]), "-1"}, {commands[0]});
  ASSERT_GT(quits, 0);
  closeFd(commands[0]);
  writeAll(commands[1], "q\n", 2);
  int status = -1;
  ASSERT_TRUE(waitChild(quits, 5000, &status));
  EXPECT_EQ(status, 0);
  closeFd(commands[1]);

  ASSERT_TRUE(makePipe(commands));
  pid_t killed = spawnProcess(
      {ODB_SERVER_PATH, std::to_string(processId()), std::to_string(commands[0]), "-1"},
      {commands[0]});
  ASSERT_GT(killed, 0);
  closeFd(commands[0]);
  EXPECT_FALSE(waitChild(killed, 200, &status)) << "the server ended without a reason";
  killProcess(killed);
  ASSERT_TRUE(waitChild(killed, 5000, &status));
  EXPECT_EQ(status, 137);
  closeFd(commands[1]);
}

}  // namespace
}  // namespace odbs::platform
