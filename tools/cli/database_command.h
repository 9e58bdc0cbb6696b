// What the database subcommands of odb_cli share: one exchange with a freshly started
// server, and the record-by-record output.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "client/record.h"
#include "tools/cli/cli_options.h"

namespace odbs::cli {

// Starts a server, sends lines, passes over the replies of all but the last and feeds the
// records of the last one's reply to onRecord. Returns 0, or 1 with the error on err.
int exchange(const CliOptions& options, const std::string& serverPath,
             const std::vector<std::string>& lines,
             const std::function<void(const client::RecordView&)>& onRecord, std::ostream& err);

// Every record of every line, through the raw printer. Returns raw mode's exit code.
int printRecords(const CliOptions& options, const std::string& serverPath,
                 const std::vector<std::string>& lines, std::ostream& out);

}  // namespace odbs::cli
