// Which field outputs a result block of the result file becomes. A block holds one
// quantity at the nodes under the solver's name ("DISP", "STRESS", ...); the database
// knows it under the usual field output name ("U", "S", ...) with its own component
// labels and order. The contact block splits into one scalar field output per variable.
// A block name that ends in "I" where the name without it is known holds imaginary parts.
#pragma once

#include <string>
#include <vector>

#include "odb/enums.h"

namespace odbs::ccx {

struct FieldPart {
  std::string name;         // "U", "S", "CPRESS"
  std::string description;  // "Spatial displacement", ...
  odb_Enum::odb_DataTypeEnum type = odb_Enum::SCALAR;
  std::vector<std::string> labels;  // component labels; empty for a scalar
  // Stored components of the block that make up the part's components, in the part's
  // order: component i of the field output is block component source[i].
  std::vector<int> source;
  bool imaginary = false;  // the block holds the imaginary parts of the field output
};

// The field outputs of a block of the given name with storedComponents stored values per
// node; empty when the block is not imported (an error estimate, amplitude and phase
// forms), which the importer reports with one warning per name.
std::vector<FieldPart> fieldsOfBlock(const std::string& blockName, int storedComponents);

// The field outputs of a stress block that holds beam section forces (output requested with
// SECTION FORCES): SF (SF1 normal force, SF2 and SF3 shear forces in the section's 1- and
// 2-directions) and SM (SM1 and SM2 moments about those directions, SM3 torque).
std::vector<FieldPart> sectionForceParts(bool imaginary);

}  // namespace odbs::ccx
