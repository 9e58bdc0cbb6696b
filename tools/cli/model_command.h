// odb_cli model and odb_cli sets: a database's model or sets, summarised for people, as
// JSON, or record by record.
//
//   odb_cli model [options] DATABASE [--records] [--nodes-only]
//   odb_cli sets  [options] DATABASE [--records] [--surfaces] [--coupling] [--named NAME...]
//
// model sends g (G with --nodes-only); sets sends S (s with --surfaces; the coupling flag
// with --coupling), or with --named one irc line per name and then irs. The flags follow
// the database path (the shared options come first).
#pragma once

#include <iosfwd>

#include "tools/cli/cli_options.h"

namespace odbs::cli {

// Return the process exit code: 0; 1 when the server could not be started or a reply not
// be read (the error is printed on err); 2 for bad arguments.
int runModel(const CliOptions& options, const std::string& serverPath, std::ostream& out,
             std::ostream& err);
int runSets(const CliOptions& options, const std::string& serverPath, std::ostream& out,
            std::ostream& err);

}  // namespace odbs::cli
