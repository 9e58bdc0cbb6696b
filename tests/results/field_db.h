// Short builders of the result databases of the field tests (written with
// WrittenDatabase): bulk data blocks, steps with one frame, field output descriptions.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "odb/results_data.h"
#include "odb/writer.h"
#include "tests/support/written_database.h"

namespace odbs::test {

// A single-precision block of one element type at integration points: element labels,
// integration points and node labels (either may be empty: absent), width components per
// row in data.
odb::FieldBlockData elementBlock(const std::string& type, std::vector<int32_t> elements,
                                 std::vector<int32_t> points, std::vector<int32_t> nodes, int width,
                                 std::vector<float> data, const std::string& instance = "PART-1-1");

// A scalar S4R block at section point sp, integration point 1 of each element, the value
// of element e being 10 sp + e.
odb::FieldBlockData shellAt(int sp, std::vector<int32_t> elements = {1, 2},
                            const std::string& instance = "PART-1-1");

// Adds step name (procedure) with one frame to w.
void addStepFrame(odb::Writer& w, const std::string& name, const std::string& procedure = "*STATIC",
                  int mode = 0);

// A field output description.
odb::FieldOutputData fieldOf(const std::string& name, int type, std::vector<std::string> labels,
                             bool complex = false);

// Shell element 1 (section points 1..5) in element set TOP, shell element 2 (points 1..3)
// in surface SURF, solid element 9 (no section points, nodes 12 and 13) in element set
// SOLID, node 10 in node set NS. Pair 1 "CP" (contact) couples SURF and TOP, pair 2 "TIE1"
// (tie) NS and SOLID. Field T: the value of element e at point sp is 10 sp + e, 100 for
// the solid; field U: nodal, 1 to 4 at nodes 10 to 13; field "MATRIX Sqqx", an ordinary
// scalar, 4 at the solid.
WrittenDatabase shellRegions();

}  // namespace odbs::test
