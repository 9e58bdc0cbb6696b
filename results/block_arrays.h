// A bounded view of the arrays of one bulk data block, as the value extraction reads them.
//
// The row count is the smallest that every present array can serve, so a block whose
// arrays disagree in length (a damaged file, a fuzzed block) is read only as far as all of
// them reach. Absent label arrays give integration point 0 and node -1; a complex field
// whose block lacks a conjugate array has no readable rows.
#pragma once

#include <cstddef>
#include <cstdint>

#include "odb/results_data.h"
#include "wire/field_value_coding.h"

namespace odbs {

struct BlockArrays {
  size_t rows = 0;
  size_t width = 0;
  const float* data = nullptr;  // single precision, or null when dataDouble is used
  const double* dataDouble = nullptr;
  bool complex = false;              // values carry conjugate components
  const float* conjugate = nullptr;  // set only for a complex field
  const double* conjugateDouble = nullptr;
  const int32_t* elements = nullptr;  // null: the block has no element labels
  const int32_t* nodes = nullptr;
  const int32_t* points = nullptr;
  const float* csys = nullptr;  // set only when orientations are wanted and present
  size_t csysWidth = 0;
  int32_t numberOfElements = 0;

  // complex: read the conjugate arrays; orientations: read the local coordinate systems.
  static BlockArrays of(const odb::FieldBlockData& block, bool complex, bool orientations);

  ValuePlace place(size_t row) const {
    return {elements ? elements[row] : 0, points ? points[row] : 0, nodes ? nodes[row] : -1};
  }
  // Rows per element when the label array is stepped one entry per element (at least 1).
  size_t elementStride() const;
};

}  // namespace odbs
