#include "results/orientation.h"

#include <cmath>

namespace odbs {

OrientationRows orientationRows(const float* q, int width) {
  float v[4] = {0.f, 0.f, 0.f, 0.f};
  for (int i = 0; i < width && i < 4; ++i) v[i] = q[i];
  float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2] + v[3] * v[3]);
  if (length != 0.f) {
    double inverse = 1.0 / static_cast<double>(length);
    for (float& c : v) c = static_cast<float>(c * inverse);
  }
  const float x = v[0], y = v[1], z = v[2], w = v[3];
  return {1.f - 2.f * (y * y + z * z), 2.f * (x * y - z * w),       2.f * (x * z + y * w),
          2.f * (x * y + z * w),       1.f - 2.f * (x * x + z * z), 2.f * (y * z - x * w)};
}

}  // namespace odbs
