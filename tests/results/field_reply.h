// Running walkField on a hand-made database and reading its reply as short lines, one per
// record, decoded by the client library: "31 e1 n10 p1 [1]", "30 C3D8 -1 -1", "% 2",
// "H PART-2", "' [1 0 0 0 1 0]".
#pragma once

#include <string>
#include <vector>

#include "client/record.h"
#include "context/command_state.h"
#include "context/odb_context.h"

namespace odbs::test {

// A request as D or d and an r form leave it.
FieldRequest fieldRequest(int step, int frame, const std::string& name, int mode,
                          bool requestDefined = false, bool upperCase = false,
                          SectionPointPair pair = {});

// The records that walkField writes (title and analysis code included).
std::vector<client::Record> walk(OdbContext& ctx, const FieldRequest& r,
                                 ResultCache* cache = nullptr);

// One line per record after the title and analysis-code records.
std::vector<std::string> describe(const std::vector<client::Record>& records);

}  // namespace odbs::test
