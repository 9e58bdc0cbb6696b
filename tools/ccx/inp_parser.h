// Reads a CalculiX input deck into a Deck (inp_model.h).
//
// Read: *HEADING, *NODE, *ELEMENT, *NSET and *ELSET (also GENERATE, also names of earlier
// sets as members), *SURFACE, *MATERIAL with *DENSITY, *ELASTIC and its other behaviours,
// *ORIENTATION, every section keyword of the solver, *CONTACT PAIR, *STEP ... *END STEP with
// the procedure and the print and file output requests, *INCLUDE. Loads, boundary
// conditions, interactions and the solver's other keywords are known and passed over;
// a keyword nobody knows is skipped with one warning (key "keyword:<NAME>").
//
// A malformed deck throws ParseError naming the file, the line and what was expected there.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tools/ccx/inp_model.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

// progress, when given, is called now and then with the bytes of the top file read so far
// and its size.
using Progress = std::function<void(int64_t done, int64_t total)>;

Deck parseDeck(const std::string& path, Warnings& warnings, const Progress& progress = nullptr);

// Checks the references between the parts of a deck: element nodes, surface elements,
// section sets and materials, layer materials, step output sets. Throws InputError naming
// the first thing that refers to something the deck does not define, or a node or element
// label defined twice. What the solver itself passes over is left out with one warning per
// kind: set members that the deck does not define, network elements at an inlet or outlet
// (node 0).
void checkDeck(Deck& deck, Warnings& warnings);

}  // namespace odbs::ccx
