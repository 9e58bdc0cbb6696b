#include "tests/model/model_fixture.h"

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <stdexcept>

#include "client/byte_source.h"
#include "client/frame_reader.h"
#include "odb/odb.h"
#include "odb/writer.h"

namespace odbs::test {

Bytes capture(const std::function<void(ReplyChannel&)>& handler) {
  int fd = memfd_create("reply", 0);
  if (fd < 0) throw std::runtime_error("memfd_create failed");
  {
    ReplyChannel out(fd);
    handler(out);
  }
  off_t size = lseek(fd, 0, SEEK_END);
  Bytes bytes(static_cast<size_t>(size));
  if (size > 0 && pread(fd, bytes.data(), bytes.size(), 0) != size) {
    close(fd);
    throw std::runtime_error("cannot read the captured reply");
  }
  close(fd);
  return bytes;
}

std::vector<client::Record> splitRecords(const Bytes& bytes) {
  client::MemorySource source(bytes);
  client::FrameReader reader(source);
  std::vector<client::Record> out;
  while (auto rec = reader.nextOrEnd(client::deadlineIn(1000))) out.push_back(std::move(*rec));
  return out;
}

std::string frameLines(const Bytes& bytes) {
  std::string s;
  for (const auto& r : splitRecords(bytes)) s += client::hexBytes(r.frameBytes()) + "\n";
  return s;
}

std::string typeSequence(const std::vector<client::Record>& records) {
  std::string s;
  for (const auto& r : records) {
    if (!s.empty()) s += ' ';
    if (r.type >= 33 && r.type < 127) {
      s += static_cast<char>(r.type);
    } else {
      s += std::to_string(r.type);
    }
  }
  return s;
}

odb::SetData setOf(const std::string& name, odb_Enum::odb_SetTypeEnum type,
                   const std::string& instance, const std::vector<int32_t>& labels,
                   const std::vector<int32_t>& faces) {
  odb::SetData s;
  s.name = name;
  s.type = type;
  s.addMembers(instance, labels, faces);
  return s;
}

odb::NodeData nodeLine(int count) {
  odb::NodeData n;
  for (int i = 1; i <= count; ++i) {
    n.labels.push_back(i);
    n.coordinates.insert(n.coordinates.end(), {float(i), 0.f, 0.f});
  }
  return n;
}

}  // namespace odbs::test
