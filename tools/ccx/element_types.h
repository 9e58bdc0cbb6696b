// Node counts of the element types that CalculiX decks name, and the element type codes of
// the mesh blocks in its result files.
#pragma once

#include <string>

namespace odbs::ccx {

// Nodes of one element of a deck type ("C3D20R" -> 20), or -1 for a type not in the table
// (user elements): their data lines then end where a line no longer ends with a comma.
int deckNodeCount(const std::string& type);

// Nodes of a result-file element type code (1 = 8-node brick ... 12 = 3-node beam), or -1.
int frdNodeCount(int typeCode);

}  // namespace odbs::ccx
