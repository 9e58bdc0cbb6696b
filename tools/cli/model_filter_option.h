// The --filter option of odb_cli model: KIND=TEXT turned into the irc line of one
// criterion of the filtered model export (irf).
//
//   instance=NAME  nset=NAME  section=NUMBER|NAME  material=NAME  type=NAME|PREFIX*
//   elements=FIRST[-LAST]  elset=NAME  nodes=FIRST[-LAST]
#pragma once

#include <string>

namespace odbs::cli {

// The irc line for filter, or "" with *error set when filter is not of the forms above.
std::string criterionLine(const std::string& filter, std::string* error);

}  // namespace odbs::cli
