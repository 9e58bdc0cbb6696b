#include "access/catalogue_compressor.h"

#include <zlib.h>

#include <charconv>
#include <cstring>
#include <new>
#include <utility>
#include <vector>

#include "access/real_text.h"
#include "platform/bounded_queue.h"
#include "platform/joinable_thread.h"

namespace odbs {

namespace {

// A block is handed over when it holds this many values or this many bytes of text: some
// 100 KB of lines, the values of about 600 frames.
constexpr size_t kBlockValues = 8192;
constexpr size_t kBlockTextBytes = 128 * 1024;
// Blocks in all: one being filled, the others queued or with the compressor. Enough that
// neither thread waits for the other when the compressor is off its core for a while.
constexpr size_t kBlocks = 16;

// One value as added; a text's bytes are in the block's texts, one after the other.
struct Value {
  enum class Kind : uint8_t { kRaw, kInteger, kReal, kText } kind;
  union {
    int64_t integer;
    double real;
    size_t length;
  };
};

struct Block {
  Block() {
    values.reserve(kBlockValues);
    texts.reserve(kBlockTextBytes);
  }
  bool full() const { return values.size() >= kBlockValues || texts.size() >= kBlockTextBytes; }
  void clear() {
    values.clear();
    texts.clear();
  }
  std::vector<Value> values;
  std::string texts;
};

// The longest line of a value without text: a real (kRealE20Size) or an integer (20).
constexpr size_t kMaxNumberLine = kRealE20Size + 1;

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

// Writes the lines of every value in b to out, which it sizes; returns their length.
size_t formatBlock(const Block& b, std::vector<char>* out) {
  size_t bound = b.values.size() * kMaxNumberLine + 2 * b.texts.size();
  if (out->size() < bound) out->resize(bound);  // grows only: nothing to fill next time
  char* p = out->data();
  const char* text = b.texts.data();  // the next text's first byte
  for (const Value& v : b.values) {
    switch (v.kind) {
      case Value::Kind::kRaw:
        std::memcpy(p, text, v.length);
        p += v.length;
        text += v.length;
        break;
      case Value::Kind::kInteger:
        p = std::to_chars(p, p + kMaxNumberLine, v.integer).ptr;
        break;
      case Value::Kind::kReal:
        p = formatRealE20(v.real, p);
        break;
      case Value::Kind::kText:
        p = putEscaped(std::string_view(text, v.length), p);
        text += v.length;
        break;
    }
    *p++ = '\n';
  }
  return static_cast<size_t>(p - out->data());
}

}  // namespace

// The blocks, the two queues between the threads and the compressing thread. The gzip
// stream, lines and failed belong to the compressing thread while it runs (to the command
// thread before and after, and throughout when no thread could be started); filling to the
// command thread.
struct CatalogueCompressor::Pipeline {
  explicit Pipeline(gzFile f) : file(f), toCompressor(kBlocks), toFiller(kBlocks) {
    filling = std::make_unique<Block>();
    for (size_t i = 1; i < kBlocks; ++i) toFiller.push(std::make_unique<Block>());
    threaded = thread.start([this] { run(); });
  }

  // Formats and compresses one block. False when it could not be formatted.
  bool write(const Block& b) {
    size_t n;
    try {
      n = formatBlock(b, &lines);
    } catch (const std::bad_alloc&) {
      return false;
    }
    if (n > 0) gzwrite(file, lines.data(), static_cast<unsigned>(n));
    return true;
  }

  // The compressing thread: every block in turn until the queue is closed. After a failed
  // block the rest are only handed back, so the command thread never waits for nothing.
  void run() {
    std::unique_ptr<Block> b;
    while (toCompressor.pop(&b)) {
      if (!failed && !write(*b)) failed = true;
      b->clear();
      toFiller.push(std::move(b));
    }
  }

  // Hands the filled block over and takes an empty one.
  void handOver() {
    if (!threaded) {
      if (!failed && !write(*filling)) failed = true;
      filling->clear();
      return;
    }
    toCompressor.push(std::move(filling));
    toFiller.pop(&filling);
  }

  Value& add(Value::Kind kind) {
    if (filling->full()) handOver();
    Value& v = filling->values.emplace_back();
    v.kind = kind;
    return v;
  }

  void addText(Value::Kind kind, std::string_view s) {
    add(kind).length = s.size();
    filling->texts.append(s.data(), s.size());
  }

  gzFile file;
  std::vector<char> lines;
  bool failed = false;  // a block could not be formatted
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
  pipeline_->addText(Value::Kind::kRaw, line);
}

void CatalogueCompressor::integer(int64_t v) {
  pipeline_->add(Value::Kind::kInteger).integer = v;
}

void CatalogueCompressor::real(double v) {
  pipeline_->add(Value::Kind::kReal).real = v;
}

void CatalogueCompressor::text(std::string_view v) {
  pipeline_->addText(Value::Kind::kText, v);
}

bool CatalogueCompressor::finish() {
  Pipeline& p = *pipeline_;
  if (!p.filling->values.empty()) p.handOver();
  p.toCompressor.close();
  p.thread.join();
  return !p.failed;
}

void CatalogueCompressor::abandon() {
  pipeline_->toCompressor.close(true);
  pipeline_->thread.join();
}

}  // namespace odbs
