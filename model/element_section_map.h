// Element label -> section number for the elements of one instance (or of the root
// assembly), filled from section assignment regions and then read once per element.
//
// Inserts are collected as runs of labels that share a number (the labels stay where their
// owner keeps them until freeze()); freeze() builds the look-up form: a dense array over the
// label range when labels are compact enough, else a sorted array searched by bisection.
// The first number inserted for a label wins.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace odbs {

class ElementSectionMap {
 public:
  // Records label -> number for each of the count labels at labels, unless a label already
  // has a number. Before freeze() only; the labels must stay in place until freeze().
  void insert(const int32_t* labels, size_t count, int32_t number) {
    if (count != 0) runs_.push_back({labels, count, number});
  }
  // Builds the look-up form; inserts after this are not seen until the next freeze().
  void freeze();
  // The number of label, or 0 when it has none (section numbers are never 0).
  int32_t find(int32_t label) const {
    if (!dense_.empty()) {
      int64_t at = int64_t(label) - base_;
      return at >= 0 && at < int64_t(dense_.size()) ? dense_[static_cast<std::size_t>(at)] : 0;
    }
    return findSorted(label);
  }
  bool empty() const { return runs_.empty(); }

 private:
  int32_t findSorted(int32_t label) const;

  struct Run {
    const int32_t* labels;
    size_t count;
    int32_t number;
  };
  std::vector<Run> runs_;       // insertion order
  std::vector<int32_t> dense_;  // index label - base_
  int64_t base_ = 0;
  std::vector<std::pair<int32_t, int32_t>> sorted_;  // by label, one entry per label
};

}  // namespace odbs
