// The CalculiX import as one call: a deck plus its result and print files in, one
// database out.
//
// A malformed or inconsistent input throws (ParseError or InputError, naming the file and
// line) and leaves no database behind, not even a partial one: the deck and the print
// file are read before the database is begun, the result file is streamed into it under a
// temporary name that only a clean end renames. Warnings (unknown keywords, blocks
// and sections, skipped values) go to the Warnings object; progress reports of large
// inputs go to the progress callback.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "tools/ccx/warnings.h"

namespace odbs::ccx {

struct ImportRequest {
  std::string deck;     // the input deck (.inp)
  std::string results;  // its result file (.frd); "" when there is none
  std::string prints;   // its print file (.dat); "" when there is none
  std::string output;   // the database to write
};

struct ImportSummary {
  int64_t nodes = 0, elements = 0;
  int64_t expandedNodes = 0, expandedElements = 0;  // the solver's 3D form of shells, beams
  int64_t nodeSets = 0, elementSets = 0, surfaces = 0;
  int64_t sections = 0, materials = 0, steps = 0;
  int64_t frames = 0;          // frames of the result file, over all steps
  int64_t fieldOutputs = 0;    // field outputs over all frames
  int64_t historyRegions = 0;  // history regions over all steps
  int64_t resultBlocks = 0;    // result blocks read from the result file
  int64_t printedTables = 0;   // tables read from the print file
};

using ProgressReport = std::function<void(const std::string& message)>;

ImportSummary importCalculix(const ImportRequest& request, Warnings& warnings,
                             const ProgressReport& progress = nullptr);

// The result and print files beside a deck: "<deck without .inp>.frd" and ".dat", each
// only when it exists; "" otherwise.
std::string resultsBeside(const std::string& deck);
std::string printsBeside(const std::string& deck);

}  // namespace odbs::ccx
