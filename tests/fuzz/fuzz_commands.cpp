// Feeds arbitrary bytes through the command line reader and the dispatcher. No database
// can be opened, so every database command runs its parsing and its failed look-up.
// Lines that would end the process (q) or write unbounded output (M, m) are skipped:
// the protocol tests cover them.
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>

#include "server/dispatcher.h"
#include "server/line_reader.h"

namespace {

int devNull() {
  static int fd = ::open("/dev/null", O_WRONLY);
  return fd;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FILE* in = std::tmpfile();
  if (in == nullptr) return 0;
  std::fwrite(data, 1, size, in);
  std::fflush(in);
  ::lseek(fileno(in), 0, SEEK_SET);

  odbs::LineReader reader(fileno(in));
  odbs::Dispatcher dispatcher(devNull());
  static char line[odbs::kMaxCommandLine + 1];
  while (reader.next(line)) {
    if (line[0] == 'q' || line[0] == 'M' || line[0] == 'm') continue;
    dispatcher.run(line);
  }
  std::fclose(in);
  return 0;
}
