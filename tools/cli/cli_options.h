// Options shared by every subcommand of odb_cli.
#pragma once

#include <string>

namespace odbs::cli {

// text: for people; json: one JSON document; csv: a table (the subcommands that have one).
enum class OutputFormat { kText, kJson, kCsv };

struct CliOptions {
  std::string serverPath;  // empty: odb_server beside odb_cli
  OutputFormat format = OutputFormat::kText;
  int timeoutMs = 30000;  // limit for one reply
};

// The server program: options.serverPath, else odb_server in the folder of the program
// invoked as argv0, else ./odb_server.
std::string resolveServerPath(const CliOptions& options, const char* argv0);

}  // namespace odbs::cli
