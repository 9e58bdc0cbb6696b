// libFuzzer target: arbitrary bytes as a reply stream. The frame reader and every record
// describer must turn damaged input into ClientError, never into a crash, a read past a
// buffer or a hang. The first byte picks the read sizes, so frames split everywhere.
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "client/byte_source.h"
#include "client/client_error.h"
#include "client/command_lines.h"
#include "client/frame_reader.h"
#include "client/record_catalog.h"
#include "client/reply_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace odbs::client;
  if (size == 0) return 0;
  size_t chunk = 1 + data[0] % 17;
  MemorySource source(std::vector<uint8_t>(data + 1, data + size), {chunk, 1, 4093});
  FrameReader reader(source);
  const RecordCatalog& catalog = standardCatalog();
  const char* commands[] = {"p", "m 1 1", "g /x", "rd /x", "u /x"};
  try {
    while (auto rec = reader.nextOrEnd(deadlineIn(1000))) {
      for (const char* command : commands) {
        if (const Describer* d = catalog.find(command, rec->type)) {
          try {
            (*d)(*rec);
          } catch (const DecodeError&) {
          }
        }
      }
    }
  } catch (const ClientError&) {
  }
  std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const std::string& line : serverLines(text)) replyShapeOf(line);
  return 0;
}
