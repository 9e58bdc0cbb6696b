// The section number of each element of one sequence, as element records carry it: the
// number of the element's label in the element section map, else the number its section
// category leads to (worked out once per category), else 0.
#pragma once

#include <cstdint>
#include <vector>

#include "model/element_section_map.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

class ElementSectionNumbers {
 public:
  // Borrows all three for its lifetime; sections must be frozen.
  ElementSectionNumbers(const odb_SequenceElement& elements, const ElementSectionMap& sections,
                        const SectionTables& tables);
  // The number of the element at index i of the sequence.
  int32_t of(size_t i) {
    int32_t number = sections_.find(elements_.data().labels[i]);
    return number != 0 ? number : ofCategory(i);
  }

 private:
  int32_t ofCategory(size_t i);

  static constexpr int64_t kUnknown = INT64_MIN;
  const odb_SequenceElement& elements_;
  const ElementSectionMap& sections_;
  const SectionTables& tables_;
  const int32_t none_;          // the number of the empty category name
  std::vector<int64_t> known_;  // per category index, kUnknown until worked out
};

}  // namespace odbs
