// odb_cli fields: the values of one field output of one frame, through the server.
//
//   odb_cli fields DATABASE --field NAME [--step N] [--frame N] [--position P]
//                  [--form s|l|m|v|t|b|d] [--pair A B] [--defined] [--orientations]
//                  [--values N] [--records]
//
// Sends "d" (or "D" with --defined: places already sent are not repeated) with the step
// number (1-based, default 1), the frame index (default 0), the position number P (default
// 0) and the field name, then the r form: s by default, l with --pair A B, upper case with
// --orientations. The r forms send element-based values only; when such a form brings no
// value (a nodal field such as U), the request is sent again as rd, whose rows carry node
// labels. --form d asks for rd at once. Prints one row per value: instance, element type,
// element, integration point, node, section point and components, as text (first N rows
// with --values N), --format csv or --format json (every row, full precision).
// --records prints the records as they came.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/cli/cli_options.h"

namespace CLI {
class App;
}

namespace odbs::cli {

struct CliContext;

struct FieldsRequest {
  std::string database;
  std::string field;
  int step = 1, frame = 0, position = 0;
  char form = 's';             // s l m v t b, d for rd, n for rn, g for rg
  std::string regions;         // with form n: "A" or "A:B" (names with suffixes)
  int regionPair = 0;          // with form g: the region pair number
  int pairA = -1, pairB = -1;  // with form l: the section point pair
  bool defined = false, orientations = false, records = false;
  long limit = -1;  // text rows shown; -1: all
};

// Returns the process exit code: 0; 1 when the server could not be started, the reply not
// be read or the database not be opened (the error is printed on err).
int runFields(const CliOptions& options, const std::string& serverPath, const FieldsRequest& req,
              std::ostream& out, std::ostream& err);

// Registers the fields subcommand with the program's argument parser.
void addFieldsCommand(CLI::App& app, CliContext& ctx);

}  // namespace odbs::cli
