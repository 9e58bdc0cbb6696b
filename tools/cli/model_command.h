// odb_cli model and odb_cli sets: a database's model or sets, summarised for people, as
// JSON, as a CSV table, or record by record.
//
//   odb_cli model DATABASE [--records] [--nodes-only]
//   odb_cli sets  DATABASE [--records] [--surfaces] [--coupling] [--named NAME...]
//
// model sends g (G with --nodes-only); sets sends S (s with --surfaces; the coupling flag
// with --coupling), or with --named one irc line per name and then irs.
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

struct ModelRequest {
  std::string database;
  bool records = false;    // print the records as they came
  bool nodesOnly = false;  // G instead of g
};

struct SetsRequest {
  std::string database;
  bool records = false;
  bool surfaces = false;
  bool coupling = false;
  std::vector<std::string> named;  // only these sets (irc and irs)
};

// Return the process exit code: 0; 1 when the server could not be started or a reply not
// be read (the error is printed on err).
int runModel(const CliOptions& options, const std::string& serverPath, const ModelRequest& req,
             std::ostream& out, std::ostream& err);
int runSets(const CliOptions& options, const std::string& serverPath, const SetsRequest& req,
            std::ostream& out, std::ostream& err);

// Adds the subcommands model and sets.
void addModelCommands(CLI::App& app, CliContext& ctx);

}  // namespace odbs::cli
