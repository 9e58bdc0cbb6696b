// Internal to the result file reader: the reader's state and its steps. The mesh blocks
// are read in frd_mesh.cpp, the rest in frd_parser.cpp.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/piece_runner.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/frd_records.h"
#include "tools/ccx/line_pieces.h"
#include "tools/ccx/parse_error.h"
#include "tools/ccx/source_reader.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {

constexpr size_t kFrdNodeChunk = 65536;     // nodes handed to the visitor at once
constexpr size_t kFrdElementChunk = 16384;  // elements handed to the visitor at once

class FrdReader {
 public:
  FrdReader(const std::string& path, FrdVisitor& visitor, Warnings& warnings)
      : in_(path), visitor_(visitor), warnings_(warnings) {}

  void run();

 private:
  [[noreturn]] void fail(const std::string& expected, const std::string& found = "") const {
    throw ParseError(in_.path(), in_.lineNumber(), expected, found);
  }
  [[noreturn]] void failBinary(const std::string& expected) const {
    throw ParseError(in_.path() + " (byte offset " + std::to_string(in_.offset()) + ")", 0,
                     expected, "end of file");
  }
  // The next line (a view valid until the next read), or ParseError naming what was
  // expected.
  std::string_view nextRow(const char* expected) {
    std::string_view row;
    if (!in_.nextLine(row)) fail(expected, "end of file");
    return row;
  }
  std::string requireLine(const std::string& expected) {
    std::string line;
    if (!in_.nextLine(line)) fail(expected, "end of file");
    return line;
  }
  // what names the field in the ParseError for a bad one (a plain text: no string is built
  // for the good case).
  long long integerAt(std::string_view line, size_t begin, int width, const char* what) {
    long long v = 0;
    if (!frd_records::labelAt(line, begin, width, &v)) fail(what, std::string(line));
    return v;
  }
  long long tokenInteger(const std::vector<std::string_view>& tokens, size_t i, const char* what,
                         std::string_view line) {
    if (i >= tokens.size()) fail(what, std::string(line));
    auto v = toInteger(tokens[i]);
    if (!v) fail(what, std::string(line));
    return *v;
  }
  // A count from a block header, checked against what the rest of the file can hold.
  int64_t checkedCount(long long count, int64_t bytesEach, const std::string& what);
  void sendHeader();
  void readUserLine(std::string_view line);
  void readParameterLine(std::string_view line);
  void readNodes(std::string_view line);
  void readElements(std::string_view line);
  void readResult(std::string_view line);
  // rows: the count the block's header announces (checked against the file's size).
  void readTextRows(FrdBlock& block, int labelWidth, int64_t rows);
  void readBinaryRows(FrdBlock& block, int64_t rows, bool doubles);
  void skipBlock();

  // The bulk paths of the text blocks (frd_bulk.cpp): parsers of whole pieces of lines for
  // LineCursor and PieceParse, each reading the lines that its line-by-line code reads
  // and stopping at any other.
  struct Rows {  // a result block's rows
    std::vector<int32_t> nodes;
    std::vector<float> values;
    void clear() {
      nodes.clear();
      values.clear();
    }
  };
  static PieceParsed parseRows(std::string_view text, int labelWidth, int stored, Rows& out);
  static PieceParsed parseNodes(std::string_view text, int labelWidth, std::vector<FrdNode>& out);
  static PieceParsed parseElements(std::string_view text, int labelWidth,
                                   std::vector<FrdElement>& out);
  static bool startsRecord(std::string_view line) { return startsWith(line, " -1"); }
  // The reader's lines for the record parsers of the line-by-line reading.
  struct FileLines {
    SourceReader& in;
    bool next(std::string_view& line) { return in.nextLine(line); }
  };

  SourceReader in_;
  platform::PieceRunner runner_;  // for the bulk paths
  FrdVisitor& visitor_;
  Warnings& warnings_;
  FrdHeader header_;
  bool headerSent_ = false;
  int step_ = 0, increment_ = 0, counter_ = 0, mode_ = 0;
  bool binarySeen_ = false;
  int64_t lineStart_ = 0;  // offset of the line being handled
};

}  // namespace odbs::ccx
