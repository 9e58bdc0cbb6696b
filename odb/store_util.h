// Helpers shared by the store and load functions of every table: the damaged-file error,
// checked sums of member counts and the ragged lists of section points (a count per
// entry, then the numbers and descriptions of all entries one after the other).
#pragma once

#include <string>
#include <vector>

#include "odb/h5.h"
#include "odb/model_data.h"
#include "odb/names.h"

namespace odb {

// Throws std::runtime_error naming the damaged object g.
[[noreturn]] void damaged(const h5::Group& g, const std::string& what);

// The sum of counts read from g; throws when one is negative or impossibly large.
int64_t sumCounts(const h5::Group& g, const std::vector<int64_t>& counts);
int64_t sumCounts(const h5::Group& g, const std::vector<int32_t>& counts);

// Stores the section point list of each item (points(item) gives it) as the datasets
// <prefix>_counts, <prefix>_numbers and <prefix>_descriptions of g.
template <typename T, typename Points>
void storeSectionPointLists(const h5::Group& g, const std::string& prefix,
                            const std::vector<T>& items, Points points) {
  std::vector<int32_t> counts, numbers;
  std::vector<std::string> descriptions;
  for (const T& item : items) {
    const std::vector<SectionPointData>& list = points(item);
    counts.push_back(static_cast<int32_t>(list.size()));
    for (const SectionPointData& p : list) {
      numbers.push_back(p.number);
      descriptions.push_back(p.description);
    }
  }
  g.write(prefix + name::kCountsSuffix, counts);
  g.write(prefix + name::kNumbersSuffix, numbers);
  g.writeStrings(prefix + name::kDescriptionsSuffix, descriptions);
}

// Loads what storeSectionPointLists stored for n items.
std::vector<std::vector<SectionPointData>> loadSectionPointLists(const h5::Group& g,
                                                                 const std::string& prefix,
                                                                 int64_t n);

}  // namespace odb
