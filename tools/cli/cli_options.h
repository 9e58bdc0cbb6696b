// Options shared by every subcommand of odb_cli, and their parsing.
#pragma once

#include <string>
#include <vector>

namespace odbs::cli {

enum class OutputFormat { kText, kJson };

struct CliOptions {
  std::string serverPath;  // empty: odb_server beside odb_cli
  OutputFormat format = OutputFormat::kText;
  int timeoutMs = 30000;          // limit for one reply
  std::vector<std::string> args;  // what follows the options
};

// Parses argv[first..argc): --server PATH, --format text|json, --timeout MS, then the
// remaining arguments ("--" ends the options). Throws std::invalid_argument with a message
// for the user on a bad option.
CliOptions parseOptions(int argc, char** argv, int first);

// The server program: options.serverPath, else odb_server in the folder of the program
// invoked as argv0, else ./odb_server.
std::string resolveServerPath(const CliOptions& options, const char* argv0);

}  // namespace odbs::cli
