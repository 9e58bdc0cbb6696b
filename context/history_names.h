// The history name list: the region names that ho and hb leave for the next hr.
//
// ho n announces n slots and hb fills them in order; a slot that hb never filled holds the
// empty name, and names beyond the n slots are ignored. Only the filled slots are stored,
// so announcing a huge count costs nothing. A history walk that reaches its end empties
// the list (clear()); one that fails early leaves it for the next walk.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace odbs {

class HistoryNameList {
 public:
  // ho: a new list of n empty slots (none when n < 1); earlier names are gone.
  void open(int32_t n) {
    names_.clear();
    capacity_ = n > 0 ? n : 0;
  }
  // hb: a copy of name into the next slot, if one is left.
  void append(std::string_view name) {
    if (static_cast<int64_t>(names_.size()) < capacity_) names_.emplace_back(name);
  }
  void clear() { open(0); }

  int32_t capacity() const { return capacity_; }
  // Slots filled by hb, in order; the slots after them up to capacity() hold "".
  const std::vector<std::string>& filled() const { return names_; }

 private:
  int32_t capacity_ = 0;
  std::vector<std::string> names_;
};

}  // namespace odbs
