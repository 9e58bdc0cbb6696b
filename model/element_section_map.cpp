#include "model/element_section_map.h"

#include <algorithm>

namespace odbs {

void ElementSectionMap::freeze() {
  dense_.clear();
  sorted_.clear();
  if (runs_.empty()) return;
  int64_t lo = runs_[0].labels[0], hi = lo;
  size_t total = 0;
  for (const Run& r : runs_) {
    for (size_t k = 0; k < r.count; ++k) {
      lo = std::min<int64_t>(lo, r.labels[k]);
      hi = std::max<int64_t>(hi, r.labels[k]);
    }
    total += r.count;
  }
  // Dense when the array is at most a few times the size of the entries.
  if (hi - lo + 1 <= 4 * int64_t(total) + 4096) {
    base_ = lo;
    dense_.assign(size_t(hi - lo + 1), 0);
    for (const Run& r : runs_) {
      for (size_t k = 0; k < r.count; ++k) {
        int32_t& slot = dense_[size_t(r.labels[k] - lo)];
        if (slot == 0) slot = r.number;
      }
    }
    return;
  }
  sorted_.reserve(total);
  for (const Run& r : runs_)
    for (size_t k = 0; k < r.count; ++k) sorted_.emplace_back(r.labels[k], r.number);
  std::stable_sort(sorted_.begin(), sorted_.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  sorted_.erase(std::unique(sorted_.begin(), sorted_.end(),
                            [](const auto& a, const auto& b) { return a.first == b.first; }),
                sorted_.end());
}

int32_t ElementSectionMap::findSorted(int32_t label) const {
  auto it = std::lower_bound(sorted_.begin(), sorted_.end(), label,
                             [](const auto& e, int32_t l) { return e.first < l; });
  return it != sorted_.end() && it->first == label ? it->second : 0;
}

}  // namespace odbs
