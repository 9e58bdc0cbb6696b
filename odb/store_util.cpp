#include "odb/store_util.h"

namespace odb {

void damaged(const h5::Group& g, const std::string& what) {
  h5::fail("damaged database: " + g.path() + ": " + what);
}

int64_t sumCounts(const h5::Group& g, const std::vector<int64_t>& counts) {
  int64_t s = 0;
  for (int64_t c : counts) {
    if (c < 0 || c > (int64_t(1) << 40)) damaged(g, "negative or huge count");
    s += c;
    if (s > (int64_t(1) << 40)) damaged(g, "counts add up to an impossible size");
  }
  return s;
}

int64_t sumCounts(const h5::Group& g, const std::vector<int32_t>& counts) {
  return sumCounts(g, std::vector<int64_t>(counts.begin(), counts.end()));
}

std::vector<std::vector<SectionPointData>> loadSectionPointLists(const h5::Group& g,
                                                                 const std::string& prefix,
                                                                 int64_t n) {
  std::vector<int32_t> counts = g.read<int32_t>(prefix + name::kCountsSuffix, n);
  int64_t total = sumCounts(g, counts);
  std::vector<int32_t> numbers = g.read<int32_t>(prefix + name::kNumbersSuffix, total);
  std::vector<std::string> descriptions = g.readStrings(prefix + name::kDescriptionsSuffix, total);
  std::vector<std::vector<SectionPointData>> out(counts.size());
  size_t at = 0;
  for (size_t i = 0; i < counts.size(); ++i)
    for (int32_t k = 0; k < counts[i]; ++k, ++at) out[i].push_back({numbers[at], descriptions[at]});
  return out;
}

}  // namespace odb
