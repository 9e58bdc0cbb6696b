#include "server/line_reader.h"

#include "platform/platform.h"
#include "wire/line_cut.h"

namespace odbs {

bool LineReader::next(char (&line)[kMaxCommandLine + 1]) {
  size_t stored = 0;
  for (;;) {
    if (unread_ == 0) {
      long r = platform::readSome(fd_, block_, sizeof block_);
      if (r < 0) return false;
      if (r == 0) {
        if (stored == 0) return false;
        break;  // a partial last line is taken as it stands
      }
      unread_ = r;
      pos_ = 0;
    }
    char c = block_[pos_++];
    --unread_;
    line[stored++] = c;
    if (endsCommandLine(c, stored)) break;
  }
  line[stored] = '\0';
  line[stored - 1] = '\0';
  return true;
}

}  // namespace odbs
