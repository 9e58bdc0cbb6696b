#include "model/element_section_numbers.h"

#include <string>

namespace odbs {

ElementSectionNumbers::ElementSectionNumbers(const odb_SequenceElement& elements,
                                             const ElementSectionMap& sections,
                                             const SectionTables& tables)
    : elements_(elements),
      sections_(sections),
      tables_(tables),
      none_(tables.numberOf(std::string())) {}

int32_t ElementSectionNumbers::ofCategory(size_t i) {
  const odb::ElementData& d = elements_.data();
  int32_t category = d.categoryIndex[i];
  if (category < 0) return none_;  // the element's category is the empty one
  size_t at = size_t(category);
  if (at >= known_.size()) known_.resize(at + 1, kUnknown);
  if (known_[at] == kUnknown) {
    known_[at] =
        sectionNumberOfCategory(elements_[static_cast<int>(i)].sectionCategory().name(), tables_);
  }
  return static_cast<int32_t>(known_[at]);
}

}  // namespace odbs
