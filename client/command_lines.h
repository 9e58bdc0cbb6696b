// How the server cuts the bytes it reads into command lines, for clients that must know
// which replies a text will produce.
//
// The server ends a line at a newline or after 4095 bytes, and drops the last byte of each
// line: the newline, or for a line cut by length its 4095th byte. So a text longer than
// 4094 characters, or one holding newlines, runs as several commands with one reply each.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace odbs::client {

// The command lines that the server runs when `text` followed by one newline is sent, in
// order, each as the server sees it (without its dropped last byte).
std::vector<std::string> serverLines(std::string_view text);

}  // namespace odbs::client
