// The command table as data: one row per command prefix (letter and sub-letters) with the
// kind of reply the command gets and where its database name starts.
//
// The server's dispatcher joins each row with its handler (server/dispatcher.cpp); the
// client library reads the same rows to know where a reply ends. A line belongs to the row
// with the longest prefix that starts it; the row with the empty prefix takes every other
// line, unknown letters and the empty line included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace odbs {

enum class ReplyKind : uint8_t {
  kNone,          // nothing is written, not even the end record
  kUntilEnd,      // the command's records, then the end record
  kUpgradeCheck,  // one record in place of the end record, or the end record alone (u)
  kExit,          // the server exits without writing (q)
  kRawThenEnd,    // unframed bytes, then the end record (M)
};

// Name positions that are not a plain "rest of the line from position n".
constexpr uint8_t kNoName = 0;        // the command names no database
constexpr uint8_t kNameParsed = 255;  // the command finds the name in its arguments

struct CommandRow {
  std::string_view prefix;
  ReplyKind reply;
  uint8_t namePos;  // the database name runs from here to the end of the line
};

inline constexpr CommandRow kCommandTable[] = {
    {"", ReplyKind::kUntilEnd, kNoName},  // any other line
    {"C", ReplyKind::kNone, kNoName},
    {"D", ReplyKind::kNone, kNoName},
    {"G", ReplyKind::kUntilEnd, 2},
    {"M", ReplyKind::kRawThenEnd, kNoName},
    {"S", ReplyKind::kUntilEnd, 6},
    {"T", ReplyKind::kUntilEnd, kNoName},
    {"a", ReplyKind::kUntilEnd, kNoName},
    {"b", ReplyKind::kUntilEnd, kNoName},
    {"c", ReplyKind::kUntilEnd, 2},
    {"d", ReplyKind::kNone, kNoName},
    {"f", ReplyKind::kUntilEnd, 3},
    {"g", ReplyKind::kUntilEnd, 2},
    {"h", ReplyKind::kUntilEnd, kNoName},  // h + any other sub-letter
    {"hb", ReplyKind::kNone, kNoName},
    {"hi", ReplyKind::kUntilEnd, 3},
    {"ho", ReplyKind::kNone, kNoName},
    {"hr", ReplyKind::kUntilEnd, kNameParsed},  // after the space that follows the number
    {"i", ReplyKind::kUntilEnd, kNoName},       // i + any other sub-letters
    {"irc", ReplyKind::kNone, kNoName},
    {"irf", ReplyKind::kUntilEnd, 4},
    {"irs", ReplyKind::kUntilEnd, 6},
    {"is", ReplyKind::kUntilEnd, 5},
    {"l", ReplyKind::kUntilEnd, kNoName},
    {"m", ReplyKind::kUntilEnd, kNoName},
    {"o", ReplyKind::kUntilEnd, 2},
    {"p", ReplyKind::kUntilEnd, kNoName},
    {"q", ReplyKind::kExit, kNoName},
    {"r", ReplyKind::kUntilEnd, 3},  // rl: after the first comma; rn, rg: in the region word
    {"s", ReplyKind::kUntilEnd, 6},
    {"u", ReplyKind::kUpgradeCheck, 2},
    {"v", ReplyKind::kUntilEnd, kNoName},
};

// The row that a command line (without its newline) belongs to.
inline const CommandRow& commandRowOf(std::string_view line) {
  const CommandRow* best = &kCommandTable[0];
  for (const CommandRow& row : kCommandTable) {
    if (row.prefix.size() > best->prefix.size() && line.substr(0, row.prefix.size()) == row.prefix)
      best = &row;
  }
  return *best;
}

}  // namespace odbs
