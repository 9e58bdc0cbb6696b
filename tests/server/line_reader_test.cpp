#include "server/line_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/platform.h"

namespace odbs {
namespace {

// Feeds bytes through a pipe (from a thread, so large inputs do not block) and collects
// every line the reader produces until it reports the end.
std::vector<std::string> readAll(const std::string& input) {
  int fds[2];
  EXPECT_TRUE(platform::makePipe(fds));
  std::thread writer([&] {
    platform::writeAll(fds[1], input.data(), input.size());
    platform::closeFd(fds[1]);
  });
  LineReader reader(fds[0]);
  std::vector<std::string> lines;
  static char line[kMaxCommandLine + 1];
  while (reader.next(line)) lines.emplace_back(line);
  writer.join();
  platform::closeFd(fds[0]);
  return lines;
}

TEST(LineReader, SplitsAtNewlinesAndKeepsCarriageReturn) {
  EXPECT_EQ(readAll("p\n\nv 5\r\n"), (std::vector<std::string>{"p", "", "v 5\r"}));
}

TEST(LineReader, LastLineWithoutNewlineLosesItsLastCharacter) {
  EXPECT_EQ(readAll("p\nabc"), (std::vector<std::string>{"p", "ab"}));
  EXPECT_TRUE(readAll("").empty());
}

TEST(LineReader, LongLineIsCutAt4095AndTheRestIsTheNextLine) {
  std::string input(5000, 'x');
  input += '\n';
  auto lines = readAll(input);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0].size(), 4094u);
  EXPECT_EQ(lines[1].size(), 905u);
}

TEST(LineReader, LinesAcrossBlockBoundaries) {
  std::string input;
  for (int i = 0; i < 3000; ++i) input += "line " + std::to_string(i) + "\n";
  auto lines = readAll(input);
  ASSERT_EQ(lines.size(), 3000u);
  EXPECT_EQ(lines[1234], "line 1234");
}

}  // namespace
}  // namespace odbs
