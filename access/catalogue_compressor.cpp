#include "access/catalogue_compressor.h"

#include <zlib.h>

#include <charconv>
#include <cstring>
#include <utility>
#include <vector>

#include "access/real_text.h"
#include "platform/bounded_queue.h"
#include "platform/joinable_thread.h"

namespace odbs {

namespace {

// A block is handed over once it holds this many bytes of lines: the lines of about 600
// frames, enough for the compressor to work on without waiting for the next.
constexpr size_t kBlockBytes = 128 * 1024;
// Blocks in all: one being filled, the others queued or with the compressor. Enough that
// neither thread waits for the other when the compressor is off its core for a while.
constexpr size_t kBlocks = 16;
// The longest line of a number: a real (kRealE20Size) or an integer (20), and the newline.
constexpr size_t kMaxNumberLine = kRealE20Size + 1;

// Lines: used bytes of data, which is kBlockBytes long or, for one line longer than that,
// that line's length.
struct Block {
  Block() : data(kBlockBytes) {}
  std::vector<char> data;
  size_t used = 0;
};

// Writes s with '\\', newline and carriage return escaped as "\\\\", "\\n" and "\\r";
// returns the end. Writes at most twice the bytes of s.
char* putEscaped(std::string_view s, char* out) {
  for (char c : s) {
    switch (c) {
      case '\\':
        *out++ = '\\';
        *out++ = '\\';
        break;
      case '\n':
        *out++ = '\\';
        *out++ = 'n';
        break;
      case '\r':
        *out++ = '\\';
        *out++ = 'r';
        break;
      default:
        *out++ = c;
        break;
    }
  }
  return out;
}

}  // namespace

// The blocks, the two queues between the threads and the compressing thread. The gzip
// stream belongs to the compressing thread while it runs (to the command thread before
// and after, and throughout when no thread could be started); filling to the command
// thread.
struct CatalogueCompressor::Pipeline {
  explicit Pipeline(gzFile f) : file(f), toCompressor(kBlocks), toFiller(kBlocks) {
    filling = std::make_unique<Block>();
    for (size_t i = 1; i < kBlocks; ++i) toFiller.push(std::make_unique<Block>());
    threaded = thread.start([this] { run(); });
  }

  void compress(Block& b) {
    if (b.used > 0) gzwrite(file, b.data.data(), static_cast<unsigned>(b.used));
    b.used = 0;
  }

  // The compressing thread: every block in turn until the queue is closed.
  void run() {
    std::unique_ptr<Block> b;
    while (toCompressor.pop(&b)) {
      compress(*b);
      toFiller.push(std::move(b));
    }
  }

  // Hands the filled block over and takes an empty one.
  void handOver() {
    if (!threaded) return compress(*filling);
    toCompressor.push(std::move(filling));
    toFiller.pop(&filling);
  }

  // Room for a line of at most n bytes in the block being filled; returns where it goes.
  char* room(size_t n) {
    if (filling->data.size() - filling->used < n) {
      if (filling->used > 0) handOver();
      if (filling->data.size() < n) filling->data.resize(n);
    }
    return filling->data.data() + filling->used;
  }

  // Counts the line that ends at end (its newline not yet written).
  void close(char* end) {
    *end++ = '\n';
    filling->used = static_cast<size_t>(end - filling->data.data());
  }

  gzFile file;
  std::unique_ptr<Block> filling;
  platform::BoundedQueue<std::unique_ptr<Block>> toCompressor, toFiller;
  bool threaded = false;
  platform::JoinableThread thread;  // last: joined before the members above go
};

CatalogueCompressor::CatalogueCompressor(void* gzFile)
    : pipeline_(std::make_unique<Pipeline>(static_cast<::gzFile>(gzFile))) {}

CatalogueCompressor::~CatalogueCompressor() {
  abandon();
}

void CatalogueCompressor::raw(std::string_view line) {
  char* p = pipeline_->room(line.size() + 1);
  std::memcpy(p, line.data(), line.size());
  pipeline_->close(p + line.size());
}

void CatalogueCompressor::integer(int64_t v) {
  char* p = pipeline_->room(kMaxNumberLine);
  pipeline_->close(std::to_chars(p, p + kMaxNumberLine, v).ptr);
}

void CatalogueCompressor::real(double v) {
  char* p = pipeline_->room(kMaxNumberLine);
  pipeline_->close(formatRealE20(v, p));
}

void CatalogueCompressor::text(std::string_view v) {
  char* p = pipeline_->room(2 * v.size() + 1);
  pipeline_->close(putEscaped(v, p));
}

void CatalogueCompressor::finish() {
  Pipeline& p = *pipeline_;
  if (p.filling->used > 0) p.handOver();
  p.toCompressor.close();
  p.thread.join();
}

void CatalogueCompressor::abandon() {
  pipeline_->toCompressor.close(true);
  pipeline_->thread.join();
}

}  // namespace odbs
