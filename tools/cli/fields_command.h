// odb_cli fields: the values of one field output of one frame, through the server.
//
//   odb_cli fields [options] DATABASE --field NAME [--step N] [--frame N] [--form F]
//                  [--pair A B] [--position P] [--defined] [--orientations] [--values N]
//                  [--records]
//
// Sends "d" (or "D" with --defined: places already sent are not repeated) with the step
// number (1-based, default 1), the frame index (default 0), the position number P (default
// 0) and the field name, then the r form F (s by default; l with --pair A B; m, v, t, b),
// upper case with --orientations. Prints one row per value: instance, element type,
// element, integration point, node, section point and components (text table, or JSON
// with --format json); --values N prints the first N only. --records prints the records
// as they came. The r forms send element-based values; nodal values have no rows here.
#pragma once

#include <iosfwd>
#include <string>

#include "tools/cli/cli_options.h"

namespace odbs::cli {

// Returns the process exit code: 0; 1 when the server could not be started or the reply
// not be read; 2 for bad arguments.
int runFields(const CliOptions& options, const std::string& serverPath, std::ostream& out,
              std::ostream& err);

}  // namespace odbs::cli
