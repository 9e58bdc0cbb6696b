// odb_cli steps: a database's steps and frames, from the server's step and frame catalogue.
//
//   odb_cli steps DATABASE [--records] [--all-frames] [--cache FILE]
//
// Sends fd (after T FILE with --cache, so that the server keeps the catalogue in FILE and
// answers later requests from it). The text summary lists every step with its procedure,
// domain and frame count, and its frames: all of them with --all-frames, else the first
// and last few of a long step. --format json gives every step and frame, --format csv one
// row per frame; --records prints the records as they came.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/cli/cli_options.h"

namespace CLI {
class App;
}

namespace odbs::cli {

struct CliContext;

struct StepsRequest {
  std::string database;
  bool records = false;
  bool allFrames = false;
  std::string cache;    // T FILE first when not empty
  bool counts = false;  // fs and fv: the counts of each step instead of the catalogue
};

// Returns the process exit code: 0; 1 when the server could not be started, the reply not
// be read or the database not be opened (the error is printed on err).
int runSteps(const CliOptions& options, const std::string& serverPath, const StepsRequest& req,
             std::ostream& out, std::ostream& err);

void addStepsCommand(CLI::App& app, CliContext& ctx);

}  // namespace odbs::cli
