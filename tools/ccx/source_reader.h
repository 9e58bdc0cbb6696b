// Buffered reading of one input file as lines and, where a format mixes them in, raw bytes.
// Keeps the current line number and byte offset for error messages. Lines end at '\n'; a
// '\r' before it is dropped, so files written on Windows read the same.
#pragma once

#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace odbs::ccx {

class SourceReader {
 public:
  // Lines longer than this are refused: no text line of the solver's files comes near it,
  // and a damaged file must not grow one line without bound.
  static constexpr size_t kMaxLine = 1 << 20;

  // Opens path for reading; throws ParseError when it is not a regular file or cannot be
  // opened.
  explicit SourceReader(const std::string& path);

  const std::string& path() const { return path_; }
  // Number of the line last returned by nextLine (1-based; 0 before the first).
  int64_t lineNumber() const { return line_; }
  // Offset of the next unread byte from the start of the file.
  int64_t offset() const { return offset_; }
  int64_t fileSize() const { return size_; }

  // Reads the next line into line (without its end). Returns false at the end of the file.
  bool nextLine(std::string& line);
  // The same as a view: into the read buffer when the line lies whole in it (no copy), else
  // into a string of the reader's own. Valid until the next nextLine or readBytes.
  // The common case, a line whole in the buffer, is inline: it is called once a line.
  bool nextLine(std::string_view& line) {
    const char* start = buf_.data() + pos_;
    const void* nl = pos_ < end_ ? std::memchr(start, '\n', end_ - pos_) : nullptr;
    if (!nl) return nextLineAcross(line);
    size_t n = static_cast<const char*>(nl) - start;
    ++line_;
    pos_ += n + 1;
    offset_ += static_cast<int64_t>(n + 1);
    lineEnded_ = true;
    if (n > 0 && start[n - 1] == '\r') --n;
    line = std::string_view(start, n);
    return true;
  }
  // Whether the line last returned by nextLine ended with a line end ('\n'); false for a
  // last line that the file cuts off.
  bool lineEnded() const { return lineEnded_; }
  // Reads exactly n bytes; returns false (and reads what there is) when the file ends first.
  bool readBytes(void* out, size_t n);

  // For bulk parsers of many short lines: the whole lines that the read buffer holds from
  // the next unread byte on, as one view, each line with its line end ('\n', with the '\r'
  // before it where the file has one). The buffer is topped up first when it is less than
  // half full. Empty at the end of the file and when the next line does not end within the
  // buffer (nextLine reads those). Valid until the next call of any reading function.
  std::string_view bufferedLines();
  // Passes over the first bytes of the view that bufferedLines() last gave, which must end
  // at a line end and hold lines lines: as if nextLine had read them.
  void skipBuffered(size_t bytes, int64_t lines) {
    pos_ += bytes;
    offset_ += static_cast<int64_t>(bytes);
    line_ += lines;
    if (lines > 0) lineEnded_ = true;
  }
  // Reads the next block of the file into a second buffer, which the next reading function
  // takes over: for a thread of its own while others parse the view that bufferedLines()
  // gave (it writes neither that view nor the reader's position). Does nothing when a block
  // read ahead is still waiting or the buffer could not take it.
  void readAhead();

 private:
  static constexpr size_t kBlock = size_t(1) << 18;  // bytes read from the file at once
  bool fill();
  // Puts the block read ahead behind the unread bytes of the buffer.
  void takeReadAhead();
  // nextLine for a line that is not whole in the buffer: refills it, or copies the line.
  bool nextLineAcross(std::string_view& line);

  std::string path_;
  std::ifstream in_;
  std::vector<char> buf_;    // 3 blocks: unread bytes, a block read ahead behind them
  std::vector<char> ahead_;  // the block read ahead, from kBlock on
  size_t aheadBytes_ = 0;    // its size; 0 when none waits
  std::string spill_;        // a line that crosses the end of the buffer
  size_t pos_ = 0, end_ = 0;
  int64_t line_ = 0;
  int64_t offset_ = 0;
  int64_t size_ = 0;
  bool lineEnded_ = true;
};

}  // namespace odbs::ccx
