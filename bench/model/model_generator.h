// Databases for the model benchmarks.
#pragma once

#include <string>

namespace odbs::bench {

// One instance of n x n x n eight-node hexahedra ((n+1)^3 nodes), all elements in one
// element set assigned to a solid section, with a material; written to path.
void writeHexModel(const std::string& path, int n);

// One instance of `nodes` nodes and as many two-node elements, with sets / 2 node sets and
// sets / 2 element sets of 1 to 61 members each; written to path.
void writeSetModel(const std::string& path, int nodes, int sets);

}  // namespace odbs::bench
