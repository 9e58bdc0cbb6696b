// odb_cli history: a database's history output, from the server's history commands.
//
//   odb_cli history [options] DATABASE [--records] [--step N] [--output NAME]...
//                   [--plot FILE.svg] [--named REGION...]
//
// Without --named: the catalogue (hi) of every step, history region and output, as text or
// JSON. With --named: the time series of the named regions (ho, hb, hr), as CSV with one
// line per sample (step, region, output, frame value, total time (time and arc length
// steps only: the step's start plus the frame value), value, conjugate), every number
// printed with the digits that read back to the same value, ready for a plotting tool;
// --step N limits them to the N-th step, --output to outputs of the given names, and
// --plot draws them into an SVG file. --records prints the records as they came.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "client/history_records.h"
#include "tools/cli/cli_options.h"

namespace CLI {
class App;
}

namespace odbs::cli {

struct CliContext;

struct HistoryRequest {
  std::string database;
  bool records = false;
  int step = 0;                      // 0: every step
  std::string plot;                  // SVG file to draw into; empty: none
  std::vector<std::string> outputs;  // empty: every output
  std::vector<std::string> names;    // regions of the time series; empty: the catalogue
};

// Returns the process exit code: 0; 1 when the server could not be started, the reply
// not be read or the plot not be written (the error is printed on err); 2 for bad
// arguments.
int runHistory(const CliOptions& options, const std::string& serverPath,
               const HistoryRequest& req, std::ostream& out, std::ostream& err);

void addHistoryCommand(CLI::App& app, CliContext& ctx);

// The command lines of a time series request: ho, one hb per region, hr.
std::vector<std::string> historyLines(const std::string& database,
                                      const std::vector<std::string>& regions, int step);

// The CSV text of series: a header line, then one line per sample.
void writeHistoryCsv(const std::vector<client::HistorySeries>& series, std::ostream& out);

}  // namespace odbs::cli
