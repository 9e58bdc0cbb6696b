// The odb_cli command line: the shared options (--server, --format, --timeout, --help,
// --version) and one subcommand per file, each added to the parser by its add...Command
// function. Options may come before or after the subcommand's own arguments:
//
//   odb_cli model DB --format json    equals    odb_cli --format json model DB
//
// A subcommand runs once the whole command line has parsed; a bad command line exits with
// status 2 and the reason on standard error.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/cli/cli_options.h"

namespace CLI {
class App;
}

namespace odbs::cli {

// What a subcommand works with: the shared options and the program's streams.
struct CliContext {
  CliOptions options;
  std::string argv0;
  std::istream* in = nullptr;
  std::ostream* out = nullptr;
  std::ostream* err = nullptr;
  int exitCode = 0;  // set by the subcommand that ran

  std::string serverPath() const { return resolveServerPath(options, argv0.c_str()); }
};

// Runs odb_cli with args (args[0] is the program name). Returns the exit status.
int runCli(const std::vector<std::string>& args, std::istream& in, std::ostream& out,
           std::ostream& err);

}  // namespace odbs::cli
