// odb_cli raw: starts the server, sends command lines and prints every reply record.
#pragma once

#include <iosfwd>

#include "tools/cli/cli_options.h"

namespace odbs::cli {

// Sends options.args as command lines, or the lines of `in` when there are none, each
// followed by reading its reply (nothing for the silent commands; the exit status for q).
// Closes the command pipe at the end and reports the server's exit. Returns the process
// exit code: 0, or 1 when a reply could not be read (the error is printed).
int runRaw(const CliOptions& options, const std::string& serverPath, std::istream& in,
           std::ostream& out);

}  // namespace odbs::cli
