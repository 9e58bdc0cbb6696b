#include "client/command_lines.h"

#include "wire/line_cut.h"

namespace odbs::client {

std::vector<std::string> serverLines(std::string_view text) {
  std::string rest(text);
  rest += '\n';
  std::vector<std::string> lines;
  std::string line;
  for (char c : rest) {
    line += c;
    if (!endsCommandLine(c, line.size())) continue;
    line.pop_back();  // the server drops the last byte of every line
    lines.push_back(std::move(line));
    line.clear();
  }
  return lines;
}

}  // namespace odbs::client
