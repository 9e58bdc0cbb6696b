// Why a database could not be opened. The server answers a database it cannot open with
// its end record alone and no reason; odb_cli then looks at the file itself to tell the
// user what is wrong with it.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "client/record.h"
#include "tools/cli/cli_options.h"

namespace odbs::cli {

// The reason path cannot be opened as a database: "no such file", "a directory, not a
// file", or the database library's own message (not a database, truncated, damaged, of a
// newer format version). A path that the library opens gives a note saying so.
std::string openFailureReason(const std::string& path);

// Writes "odb_cli: cannot open PATH: REASON" to err and returns exit status 1.
int reportOpenFailure(const std::string& path, std::ostream& err);

// exchange() (database_command.h) for lines whose last one names database: every reply
// for an open database starts with its title record, so a reply without one means the
// server could not open it; then the reason goes to err and the result is 1.
int exchangeOnDatabase(const CliOptions& options, const std::string& serverPath,
                       const std::vector<std::string>& lines, const std::string& database,
                       const std::function<void(const client::RecordView&)>& onRecord,
                       std::ostream& err);

}  // namespace odbs::cli
