#include "server/throughput.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace odbs {

void runRawWriteTest(const char* args, ReplyChannel& out) {
  int count = 0, size = 0;
  std::sscanf(args, "%d %d", &count, &size);
  if (size > 0) {
    for (int i = 0; i < count; ++i) {
      size_t left = static_cast<size_t>(size);
      while (left > 0) {
        size_t piece = std::min(left, kPendingBufferSize);
        out.writeBytes(out.pendingBuffer(), piece);
        left -= piece;
      }
    }
  }
  long long total = static_cast<long long>(std::max(count, 0)) * std::max(size, 0);
  std::fprintf(stderr, "\t%lld\n", total);
}

void runFramedRecordTest(const char* args, ReplyChannel& out) {
  // The largest n whose record (type, sequence number, n integers) fits the record buffer.
  constexpr int kMaxInts = static_cast<int>((kRecordBufferSize - 5) / 4);
  int count = 0, n = 0;
  std::sscanf(args, "%d %d", &count, &n);
  n = std::clamp(n, 0, kMaxInts);

  std::vector<uint8_t> ints(4 * static_cast<size_t>(n));
  for (int k = 0; k < n; ++k) putI32(ints.data() + 4 * k, k);

  out.discardPending();
  for (int i = 0; i < count; ++i) {
    uint8_t* body = out.queueFixed(kRecSequenced, 4 + ints.size());
    putBytes(putI32(body, i), ints.data(), ints.size());
  }
  out.flush();
  long long total = static_cast<long long>(4 * n + 7) * std::max(count, 0);
  std::fprintf(stderr, "\t%lld\n", total);
}

}  // namespace odbs
