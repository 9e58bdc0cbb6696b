// Every letter and sub-letter through the dispatcher, read back with the client library's
// reply kinds: the dispatcher closes each reply exactly as the shared command table says.
#include "wire/command_table.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "client/byte_source.h"
#include "client/frame_reader.h"
#include "client/reply_reader.h"
#include "server/dispatcher.h"

namespace odbs {
namespace {

// Runs line through a fresh dispatcher and returns every byte it wrote.
std::vector<uint8_t> reply(const std::string& line) {
  int fd = memfd_create("reply", 0);
  EXPECT_GE(fd, 0);
  {
    Dispatcher dispatcher(fd);
    dispatcher.run(line.c_str());
  }
  off_t size = lseek(fd, 0, SEEK_END);
  std::vector<uint8_t> bytes(static_cast<size_t>(size));
  if (size > 0) {
    EXPECT_EQ(pread(fd, bytes.data(), bytes.size(), 0), size);
  }
  close(fd);
  return bytes;
}

// Every row's prefix, each followed by every letter, and every single byte but newline:
// the lines a client may send, naming a database that does not exist.
std::vector<std::string> commandLines() {
  std::vector<std::string> lines;
  for (int c = 1; c < 128; ++c)
    if (c != '\n') lines.push_back(std::string(1, static_cast<char>(c)));
  for (const CommandRow& row : kCommandTable) {
    for (char c = 'A'; c <= 'z'; ++c) {
      if (c > 'Z' && c < 'a') continue;
      lines.push_back(std::string(row.prefix) + c);
    }
  }
  return lines;
}

TEST(CommandTable, DispatcherClosesEveryReplyAsTheClientExpects) {
  for (const std::string& command : commandLines()) {
    if (command[0] == 'q') continue;  // ends the process
    std::string line = command + " /no/such/dir/db.odb";
    std::vector<uint8_t> bytes = reply(line);
    client::ReplyShape shape = client::replyShapeOf(line);
    ASSERT_EQ(shape.rawBytes, 0u) << line;
    if (shape.kind == ReplyKind::kNone) {
      EXPECT_TRUE(bytes.empty()) << '"' << line << '"';
      continue;
    }
    ASSERT_FALSE(bytes.empty()) << '"' << line << '"';
    client::MemorySource source(bytes);
    client::FrameReader reader(source);
    client::Reply r = client::readReply(reader, shape, client::deadlineIn(1000));
    // With no database to read, only p (its process id) sends more than the end record.
    ASSERT_EQ(r.records.size(), command[0] == 'p' ? 2u : 1u) << '"' << line << '"';
    EXPECT_EQ(r.records.back().type, kRecEnd) << '"' << line << '"';
    // Nothing follows the closing record.
    EXPECT_FALSE(reader.nextOrEnd(client::deadlineIn(1000))) << '"' << line << '"';
  }
}

TEST(CommandTable, LongestPrefixWins) {
  EXPECT_EQ(commandRowOf("irc 1 2 x").prefix, "irc");
  EXPECT_EQ(commandRowOf("irx").prefix, "i");
  EXPECT_EQ(commandRowOf("is").prefix, "is");
  EXPECT_EQ(commandRowOf("h").prefix, "h");
  EXPECT_EQ(commandRowOf("").prefix, "");
  EXPECT_EQ(commandRowOf("Z").prefix, "");
  EXPECT_EQ(commandRowOf("g /x.odb").namePos, 2);
}

}  // namespace
}  // namespace odbs
