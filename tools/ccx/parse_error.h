// The one error type of the CalculiX parsers: a file that cannot be read as what it should
// be. The message names the file, the line (or the byte offset inside binary data) and what
// was expected there, so that a user can find and fix the input.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace odbs::ccx {

class ParseError : public std::runtime_error {
 public:
  // "<file>:<line>: expected <expected>[, found '<found>']". A line of 0 is left out.
  ParseError(const std::string& file, int64_t line, const std::string& expected,
             const std::string& found = std::string());

  const std::string& file() const { return file_; }
  int64_t line() const { return line_; }

 private:
  std::string file_;
  int64_t line_;
};

// An error about the input as a whole rather than one spot in it (a set that names an
// element that no deck line defines, for example).
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace odbs::ccx
