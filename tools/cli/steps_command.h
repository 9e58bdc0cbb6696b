// odb_cli steps: a database's steps and frames, from the server's step and frame catalogue.
//
//   odb_cli steps [options] DATABASE [--records] [--all-frames] [--cache FILE]
//
// Sends fd (after T FILE with --cache, so that the server keeps the catalogue in FILE and
// answers later requests from it). The text summary lists every step with its procedure,
// domain and frame count, and its frames: all of them with --all-frames, else the first
// and last few of a long step. --format json gives every step and frame; --records prints
// the records as they came.
#pragma once

#include <iosfwd>

#include "tools/cli/cli_options.h"

namespace odbs::cli {

// Returns the process exit code: 0; 1 when the server could not be started or the reply
// not be read (the error is printed on err); 2 for bad arguments.
int runSteps(const CliOptions& options, const std::string& serverPath, std::ostream& out,
             std::ostream& err);

}  // namespace odbs::cli
