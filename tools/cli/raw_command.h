// odb_cli raw: starts the server, sends command lines and prints every reply record.
//
//   odb_cli raw [options] [LINE...]
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/cli/cli_options.h"

namespace CLI {
class App;
}

namespace odbs::cli {

struct CliContext;

// Sends lines, or the lines of `in` when there are none, each followed by reading its
// reply (nothing for the silent commands; the exit status for q). Closes the command pipe
// at the end and reports the server's exit. Returns the process exit code: 0, or 1 when a
// reply could not be read (the error is printed). Text or JSON output; csv is text.
int runRaw(const CliOptions& options, const std::string& serverPath,
           const std::vector<std::string>& lines, std::istream& in, std::ostream& out);

void addRawCommand(CLI::App& app, CliContext& ctx);

}  // namespace odbs::cli
