// Why a database could not be opened. The server answers a database it cannot open with
// its end record alone and no reason; odb_cli then looks at the file itself to tell the
// user what is wrong with it.
#pragma once

#include <iosfwd>
#include <string>

namespace odbs::cli {

// The reason path cannot be opened as a database: "no such file", "a directory, not a
// file", or the database library's own message (not a database, truncated, damaged, of a
// newer format version). A path that the library opens gives a note saying so.
std::string openFailureReason(const std::string& path);

// Writes "odb_cli: cannot open PATH: REASON" to err and returns exit status 1.
int reportOpenFailure(const std::string& path, std::ostream& err);

}  // namespace odbs::cli
