#include "model/element_section_map.h"

#include <algorithm>

namespace odbs {

void ElementSectionMap::freeze() {
  dense_.clear();
  sorted_.clear();
  if (pending_.empty()) return;
  int64_t lo = pending_[0].first, hi = lo;
  for (const auto& e : pending_) {
    lo = std::min<int64_t>(lo, e.first);
    hi = std::max<int64_t>(hi, e.first);
  }
  // Dense when the array is at most a few times the size of the entries.
  if (hi - lo + 1 <= 4 * int64_t(pending_.size()) + 4096) {
    base_ = lo;
    dense_.assign(size_t(hi - lo + 1), 0);
    for (const auto& e : pending_) {
      int32_t& slot = dense_[size_t(e.first - lo)];
      if (slot == 0) slot = e.second;
    }
    return;
  }
  sorted_ = pending_;
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
