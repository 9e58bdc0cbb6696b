// The writing half of the catalogue's cache file: turns the values of the reply records
// into the file's lines and compresses them, on a second thread, so that the command
// thread only copies each value into a block and goes on sending the reply.
//
// Blocks of values pass to the compressing thread through a bounded queue and come back
// empty through a second one; with kBlocks blocks in all, the command thread waits only
// when the compressor is that far behind. The lines are exactly those of formatting each
// value on the command thread (docs/format.md gives the layout of the file).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace odbs {

// Feeds one open gzip stream, which it does not own: the caller opens it before and
// closes it after (once finish or abandon has returned). Not copyable. If no second
// thread can be started, each block is written on the command thread instead. The
// destructor abandons.
class CatalogueCompressor {
 public:
  explicit CatalogueCompressor(void* gzFile);
  ~CatalogueCompressor();
  CatalogueCompressor(const CatalogueCompressor&) = delete;
  CatalogueCompressor& operator=(const CatalogueCompressor&) = delete;

  // Each adds one line: raw as it is (no newline inside), an integer "%lld", a real
  // "%.20E", a text escaped. Wait only while every block is with the compressor.
  void raw(std::string_view line);
  void integer(int64_t v);
  void real(double v);
  void text(std::string_view v);

  // Waits until every line added is handed to the gzip stream and the thread has ended.
  // Returns false when a block could not be formatted (out of memory): the stream then
  // lacks lines and must not be published. Write errors of the stream are not seen here.
  bool finish();
  // Drops the lines not yet written and waits for the thread to end. Idempotent.
  void abandon();

 private:
  struct Pipeline;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace odbs
