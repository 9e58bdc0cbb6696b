// Bulk parsing of the long runs of short lines that make up a large mesh or result block,
// on two threads: the lines that the read buffer holds are cut into pieces at line ends,
// the pieces are parsed at the same time (platform::PieceRunner), and their results are
// taken in file order.
//
// A piece parser is a fast path: it parses whole lines of the one form it knows and stops
// at the first line of any other form (the block's end line, a damaged line, a form the
// general code reads), reporting how far it came. The lines up to the first stop are taken;
// the caller's line-by-line code then reads on from there, as it would have without the
// bulk path, with the same values, messages and line numbers. While the pieces are parsed,
// the file's next block is read into the reader's second buffer (SourceReader::readAhead).
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/piece_runner.h"
#include "tools/ccx/source_reader.h"

namespace odbs::ccx {

// How far a piece parser came: the bytes and lines of the whole lines it parsed, and
// whether it parsed all of its piece.
struct PieceParsed {
  size_t bytes = 0;
  int64_t lines = 0;
  bool whole = false;
};

// Lines of text one at a time, each without its line end (and without a '\r' before it),
// as SourceReader::nextLine gives them. text must end at a line end.
class LineCursor {
 public:
  explicit LineCursor(std::string_view text) : p_(text.data()), e_(text.data() + text.size()) {}
  // The next line, or false at the end of the text.
  bool next(std::string_view& line) {
    if (p_ == e_) return false;
    const char* nl = static_cast<const char*>(std::memchr(p_, '\n', static_cast<size_t>(e_ - p_)));
    size_t n = static_cast<size_t>(nl - p_);
    line = std::string_view(p_, n > 0 && p_[n - 1] == '\r' ? n - 1 : n);
    p_ = nl + 1;
    ++lines_;
    return true;
  }
  // How far the lines given so far reach in text, the text the cursor was made over: their
  // bytes and their count, as PieceParsed (not whole).
  PieceParsed parsed(std::string_view text) const {
    return {static_cast<size_t>(p_ - text.data()), lines_, false};
  }
  // Where the line after the last one given starts.
  const char* position() const { return p_; }

 private:
  const char* p_;
  const char* e_;
  int64_t lines_ = 0;
};

// Where text (whole lines) is cut into pieces of about pieceBytes each: each cut lies at
// the start of a line for which startsPiece(line) is true (the first such line from the
// even cut on), so that a record of several lines stays in one piece. Sets cuts to the
// starts of the pieces after the first, in order.
template <typename StartsPiece>
void cutAtLines(std::string_view text, size_t pieceBytes, StartsPiece startsPiece,
                std::vector<size_t>& cuts) {
  cuts.clear();
  size_t at = pieceBytes;
  while (at < text.size()) {
    // To the start of the next line, then on to one that may start a piece.
    const void* nl = std::memchr(text.data() + at, '\n', text.size() - at);
    if (!nl) break;
    at = static_cast<size_t>(static_cast<const char*>(nl) - text.data()) + 1;
    LineCursor lines(text.substr(at));
    std::string_view line;
    const char* start = text.data() + at;
    while (lines.next(line) && !startsPiece(line)) start = lines.position();
    if (start == text.data() + text.size()) break;
    at = static_cast<size_t>(start - text.data());
    if (cuts.empty() || cuts.back() < at) cuts.push_back(at);
    at += pieceBytes;
  }
}

// The bulk path over one block: per piece an output of type Out (kept between calls, so
// that their arrays are reused).
template <typename Out>
class PieceParse {
 public:
  // Bytes of lines per piece, and the least bytes of lines for which the bulk path runs at
  // all: a short block is read line by line.
  static constexpr size_t kPieceBytes = size_t(32) << 10;
  static constexpr size_t kLeast = size_t(16) << 10;

  // Parses the lines that in's buffer holds: parse(std::string_view piece, Out& out) ->
  // PieceParsed on each piece, out cleared first (Out has clear()), from several threads at
  // once, so parse may write nothing but out. Then take(Out& out) on this thread for each
  // piece in file order, up to and with the first that did not parse whole. Reads on
  // through the buffer's refills as long as every piece was whole. startsPiece as for
  // cutAtLines. Returns false when a parser stopped before its piece's end, or when fewer
  // than kLeast bytes of lines were left in the buffer: the caller then reads the next line
  // itself. Throws what parse or take throws.
  template <typename StartsPiece, typename Parse, typename Take>
  bool run(SourceReader& in, platform::PieceRunner& runner, StartsPiece startsPiece, Parse parse,
           Take take) {
    while (true) {
      std::string_view text = in.bufferedLines();
      if (text.size() < kLeast) return false;
      cutAtLines(text, kPieceBytes, startsPiece, cuts_);
      const size_t count = cuts_.size() + 1;
      if (outs_.size() < count) outs_.resize(count);
      if (parsed_.size() < count) parsed_.resize(count);
      // Piece 0 reads the file's next block while the others are parsed. Pieces after one
      // that stopped are not taken: those not begun yet are passed over.
      std::atomic<size_t> firstStop{count};
      runner.run(count + 1, [&](size_t piece) {
        if (piece == 0) return in.readAhead();
        const size_t i = piece - 1;
        outs_[i].clear();
        parsed_[i] = PieceParsed();
        if (i > firstStop.load(std::memory_order_relaxed)) return;
        const size_t begin = i == 0 ? 0 : cuts_[i - 1];
        const size_t end = i + 1 < count ? cuts_[i] : text.size();
        parsed_[i] = parse(text.substr(begin, end - begin), outs_[i]);
        if (parsed_[i].whole) return;
        size_t stop = firstStop.load(std::memory_order_relaxed);
        while (i < stop && !firstStop.compare_exchange_weak(stop, i, std::memory_order_relaxed)) {
        }
      });
      size_t bytes = 0;
      int64_t lines = 0;
      bool whole = true;
      for (size_t i = 0; i < count && whole; ++i) {
        take(outs_[i]);
        bytes += parsed_[i].bytes;
        lines += parsed_[i].lines;
        whole = parsed_[i].whole;
      }
      in.skipBuffered(bytes, lines);
      if (!whole) return false;
    }
  }

 private:
  std::vector<size_t> cuts_;
  std::vector<Out> outs_;
  std::vector<PieceParsed> parsed_;
};

}  // namespace odbs::ccx
