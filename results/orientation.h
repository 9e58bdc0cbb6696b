// The orientation of a value's local coordinate system as the first two rows of its
// rotation matrix, from the quaternion stored with the value.
#pragma once

#include <array>

namespace odbs {

// Rows 0 and 1 of the rotation matrix: R00 R01 R02 R10 R11 R12.
using OrientationRows = std::array<float, 6>;

// q holds `width` floats (x, y, z, w); width 1 to 4, the missing ones are 0. The quaternion
// is normalised to unit length first (unless its length is 0), with the reciprocal of the
// length taken in double precision.
OrientationRows orientationRows(const float* q, int width);

}  // namespace odbs
