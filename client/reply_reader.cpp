#include "client/reply_reader.h"

#include <cstdio>
#include <string>

#include "client/client_error.h"
#include "wire/frame.h"

namespace odbs::client {

ReplyShape replyShapeOf(std::string_view line) {
  ReplyShape shape{commandRowOf(line).reply, 0};
  if (shape.kind == ReplyKind::kRawThenEnd) {
    int count = 0, size = 0;
    std::string args(line.size() > 2 ? line.substr(2) : std::string_view());
    std::sscanf(args.c_str(), "%d %d", &count, &size);
    if (count > 0 && size > 0) shape.rawBytes = uint64_t(count) * uint64_t(size);
  }
  return shape;
}

std::vector<uint8_t> Reply::wireBytes() const {
  std::vector<uint8_t> out;
  for (const Record& r : records) {
    std::vector<uint8_t> frame = r.frameBytes();
    out.insert(out.end(), frame.begin(), frame.end());
  }
  return out;
}

bool isUpgradeNeeded(const RecordView& rec) {
  return rec.type == kRecMessage && rec.size == 4 && loadU32(rec.body) == 1;
}

size_t readReplyEach(FrameReader& reader, ReplyShape shape, Deadline deadline,
                     const std::function<void(const RecordView&)>& onRecord) {
  ReplyKind kind = shape.kind;
  if (kind == ReplyKind::kNone || kind == ReplyKind::kExit) return 0;
  if (shape.rawBytes != 0) reader.skipBytes(shape.rawBytes, deadline);
  size_t n = 0;
  for (;;) {
    RecordView rec = reader.nextView(deadline);
    ++n;
    onRecord(rec);
    if (rec.type == kRecEnd) return n;
    if (kind == ReplyKind::kUpgradeCheck && n == 1 && isUpgradeNeeded(rec)) return n;
  }
}

Reply readReply(FrameReader& reader, ReplyShape shape, Deadline deadline, size_t maxRecords) {
  Reply reply;
  reply.rawBytes = shape.rawBytes;
  readReplyEach(reader, shape, deadline, [&](const RecordView& rec) {
    if (reply.records.size() == maxRecords) {
      throw ClientError("a reply held more than " + std::to_string(maxRecords) +
                        " records before its end record");
    }
    reply.records.push_back(Record::copyOf(rec));
  });
  return reply;
}

}  // namespace odbs::client
