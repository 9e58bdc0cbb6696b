#include "client/command_lines.h"

#include "core/record_format.h"

namespace odbs::client {

std::vector<std::string> serverLines(std::string_view text) {
  std::string rest(text);
  rest += '\n';
  std::vector<std::string> lines;
  size_t pos = 0;
  while (pos < rest.size()) {
    std::string_view window = std::string_view(rest).substr(pos, kMaxCommandLine);
    size_t newline = window.find('\n');
    size_t taken = newline == std::string_view::npos ? window.size() : newline + 1;
    lines.emplace_back(window.substr(0, taken - 1));
    pos += taken;
  }
  return lines;
}

}  // namespace odbs::client
