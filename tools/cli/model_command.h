// odb_cli model and odb_cli sets: a database's model or sets, summarised for people, as
// JSON, as a CSV table, or record by record.
//
//   odb_cli model    DATABASE [--records] [--nodes-only] [--filter KIND=TEXT...]
//   odb_cli sets     DATABASE [--records] [--surfaces] [--coupling] [--named NAME...]
//   odb_cli sections DATABASE [--records]
//
// model sends g (G with --nodes-only), or with --filter one irc line per filter and then
// irf (model_filter_option.h); sets sends S (s with --surfaces; the coupling flag with
// --coupling), or with --named one irc line per name and then irs; sections sends "is 0 DATABASE".
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
  bool records = false;              // print the records as they came
  bool nodesOnly = false;            // G instead of g
  std::vector<std::string> filters;  // KIND=TEXT criteria: irc lines and irf
};

struct SectionsRequest {
  std::string database;
  bool records = false;
};

struct SetsRequest {
  std::string database;
  bool records = false;
  bool surfaces = false;
  bool coupling = false;
  std::vector<std::string> named;  // only these sets (irc and irs)
};

// Return the process exit code: 0; 1 when the server could not be started or a reply not
// be read, 2 for a bad --filter (the error is printed on err).
int runModel(const CliOptions& options, const std::string& serverPath, const ModelRequest& req,
             std::ostream& out, std::ostream& err);
int runSets(const CliOptions& options, const std::string& serverPath, const SetsRequest& req,
            std::ostream& out, std::ostream& err);
int runSections(const CliOptions& options, const std::string& serverPath,
                const SectionsRequest& req, std::ostream& out, std::ostream& err);

// Adds the subcommands model, sets and sections.
void addModelCommands(CLI::App& app, CliContext& ctx);

}  // namespace odbs::cli
