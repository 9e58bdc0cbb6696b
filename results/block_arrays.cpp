#include "results/block_arrays.h"

#include <algorithm>

namespace odbs {

namespace {

// Rows that an array of n values serves at per values per row.
template <typename T>
size_t rowsOf(const std::vector<T>& v, size_t per) {
  return per == 0 ? 0 : v.size() / per;
}

template <typename T>
const T* present(const std::vector<T>& v, size_t* rows) {
  if (v.empty()) return nullptr;
  *rows = std::min(*rows, v.size());
  return v.data();
}

}  // namespace

BlockArrays BlockArrays::of(const odb::FieldBlockData& b, bool complex, bool orientations) {
  BlockArrays a;
  if (b.width <= 0) return a;
  a.width = static_cast<size_t>(b.width);
  a.complex = complex;
  if (b.doublePrecision) {
    a.dataDouble = b.dataDouble.data();
    a.rows = rowsOf(b.dataDouble, a.width);
    if (complex) {
      a.conjugateDouble = b.conjugateDataDouble.data();
      a.rows = std::min(a.rows, rowsOf(b.conjugateDataDouble, a.width));
    }
  } else {
    a.data = b.data.data();
    a.rows = rowsOf(b.data, a.width);
    if (complex) {
      a.conjugate = b.conjugateData.data();
      a.rows = std::min(a.rows, rowsOf(b.conjugateData, a.width));
    }
  }
  a.elements = present(b.elementLabels, &a.rows);
  a.nodes = present(b.nodeLabels, &a.rows);
  a.points = present(b.integrationPoints, &a.rows);
  a.numberOfElements = b.numberOfElements;
  if (orientations && b.csysWidth > 0 && !b.localCsys.empty()) {
    a.csysWidth = static_cast<size_t>(b.csysWidth);
    a.csys = b.localCsys.data();
    a.rows = std::min(a.rows, rowsOf(b.localCsys, a.csysWidth));
  }
  return a;
}

size_t BlockArrays::elementStride() const {
  if (numberOfElements <= 0) return 1;
  return std::max<size_t>(1, rows / static_cast<size_t>(numberOfElements));
}

}  // namespace odbs
