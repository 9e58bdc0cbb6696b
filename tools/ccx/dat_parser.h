// Reads a CalculiX print file (.dat): the tables of *NODE PRINT, *EL PRINT and
// *CONTACT PRINT, and the eigenvalue output of frequency steps.
//
// A table is a title line "<quantity> (<columns>) for set <NAME> and time <t>" (or "for
// all contact elements and time <t>"), a blank line, and one row of numbers per node,
// integration point or contact face. Eigenmode tables follow an "E I G E N V A L U E
// N U M B E R <k>" line; steady-state tables follow a participation factor header for
// their frequency, real parts first and imaginary parts in a second table of the same
// title. Other sections of the file (participation factors, modal masses, ...) are skipped
// with one warning per kind.
//
// A malformed row throws ParseError with the file, the line and what was expected.
#pragma once

#include <string>

#include "tools/ccx/dat_model.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

DatFile readDat(const std::string& path, Warnings& warnings);

}  // namespace odbs::ccx
