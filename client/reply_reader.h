// What a command line gets back, and reading it.
//
// Most commands answer with records closed by the end record '~'. Some answer with nothing
// at all (C, D, d, ho, hb, irc: a client sends them in front of the command that uses
// them without waiting); q ends the server without a word; u answers either with the
// end record alone or with the upgrade-needed record alone; M writes count * size
// unframed bytes before its end record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "client/deadline.h"
#include "client/frame_reader.h"
#include "client/record.h"
#include "wire/command_table.h"

namespace odbs::client {

// The reply kinds of wire/command_table.h, the table the server's dispatcher runs on.
using ReplyKind = odbs::ReplyKind;

struct ReplyShape {
  ReplyKind kind = ReplyKind::kUntilEnd;
  uint64_t rawBytes = 0;  // unframed bytes before the records (kRawThenEnd)
};

// The reply that the server gives to this command line (without its newline), decided by
// the command table that the server's dispatcher runs on, and for M by
// its two numbers (read like the server: "%d %d" from position 2, bad numbers are 0).
ReplyShape replyShapeOf(std::string_view line);
inline ReplyKind replyKindOf(std::string_view line) {
  return replyShapeOf(line).kind;
}

// The records of one reply in arrival order, the closing record (end or upgrade-needed)
// included; empty for kNone and kExit.
struct Reply {
  std::vector<Record> records;
  uint64_t rawBytes = 0;  // unframed bytes read and dropped before the records

  // The reply as it was on the wire: every frame, count first.
  std::vector<uint8_t> wireBytes() const;
  // The records before the closing one.
  size_t bodyRecords() const { return records.empty() ? 0 : records.size() - 1; }
};

// True for the upgrade-needed record: a '|' record whose text count says 1 and that
// carries no text byte.
bool isUpgradeNeeded(const RecordView& rec);

// Reads one reply of the given shape: skips its unframed bytes, then calls onRecord for
// each record in order (the closing one included); returns the number of records. Throws
// what the frame reader throws; the deadline bounds the whole reply.
size_t readReplyEach(FrameReader& reader, ReplyShape shape, Deadline deadline,
                     const std::function<void(const RecordView&)>& onRecord);

// Reads one reply into memory. Throws ClientError when it holds more than maxRecords
// records, so that a runaway reply cannot exhaust memory.
Reply readReply(FrameReader& reader, ReplyShape shape, Deadline deadline,
                size_t maxRecords = 1 << 20);

}  // namespace odbs::client
