// The writing half of the catalogue's cache file: turns the values of the reply records
// into the file's lines and hands them, in blocks, to a second thread that compresses them
// into the gzip stream while the command thread goes on with the reply.
//
// The command thread formats (cheap: about a quarter of the cost of compressing the lines)
// and the compressing thread compresses. The reply's frames are only read once the
// database library has loaded every step's frame list, so the compression cannot start
// earlier; sharing the work this way lets both threads finish at about the same time.
// Blocks pass to the compressing thread through a bounded queue and come back empty through
// a second one: with kBlocks blocks in all, the command thread waits only when the
// compressor is that far behind.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace odbs {

// Feeds one open gzip stream, which it does not own: the caller opens it before and
// closes it after (once finish or abandon has returned). Not copyable. If no second
// thread can be started, each block is compressed on the command thread instead. The
// destructor abandons.
class CatalogueCompressor {
 public:
  explicit CatalogueCompressor(void* gzFile);
  ~CatalogueCompressor();
  CatalogueCompressor(const CatalogueCompressor&) = delete;
  CatalogueCompressor& operator=(const CatalogueCompressor&) = delete;

  // Each adds one line: raw as it is (no newline inside), an integer "%lld", a real
  // "%.20E", a text escaped. They wait only while every block is with the compressor, and
  // throw std::bad_alloc when a line does not fit in memory.
  void raw(std::string_view line);
  void integer(int64_t v);
  void real(double v);
  void text(std::string_view v);

  // Waits until every line added is handed to the gzip stream and the thread has ended.
  // Write errors of the stream are not seen here (nor were they without the thread).
  void finish();
  // Drops the lines not yet compressed and waits for the thread to end. Idempotent.
  void abandon();

 private:
  struct Pipeline;
  std::unique_ptr<Pipeline> pipeline_;
};

}  // namespace odbs
