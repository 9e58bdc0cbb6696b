#include "model/section_numbering.h"

#include <cstdlib>
#include <cstring>
#include <set>
#include <vector>

namespace odbs {

namespace {

constexpr char kSectionPrefix[] = "Section-";
constexpr size_t kSectionPrefixLen = sizeof kSectionPrefix - 1;
constexpr char kElsetMarker[] = "< elset = ";
constexpr size_t kElsetMarkerLen = sizeof kElsetMarker - 1;
constexpr char kConnectorPrefix[] = "connector";
constexpr size_t kConnectorPrefixLen = sizeof kConnectorPrefix - 1;

// Hands out the smallest positive numbers not yet taken.
class NumberPool {
 public:
  bool taken(int32_t n) const { return used_.count(n) != 0; }
  void take(int32_t n) { used_.insert(n); }
  int32_t takeSmallestFree() {
    while (taken(next_)) ++next_;
    used_.insert(next_);
    return next_;
  }

 private:
  std::set<int32_t> used_;
  int32_t next_ = 1;
};

int32_t requestedNumber(const std::string& name) {
  std::string shortName = shortSectionName(name);
  if (shortName.size() > 1 && (shortName[0] == 'P' || shortName[0] == 'p')) {
    return static_cast<int32_t>(std::atoi(shortName.c_str() + 1));
  }
  return 0;
}

}  // namespace

int32_t SectionTables::numberOf(const std::string& name) const {
  auto it = numbers.find(name);
  return it == numbers.end() ? 0 : it->second;
}

std::string sectionNameOfCategory(const std::string& categoryName) {
  size_t at = categoryName.find(kElsetMarker);
  if (at == std::string::npos) return std::string();
  std::string word = categoryName.substr(at + kElsetMarkerLen);
  word = word.substr(0, word.find(' '));
  if (categoryName.compare(0, kConnectorPrefixLen, kConnectorPrefix) == 0) return word;
  return kSectionPrefix + word;
}

std::string shortSectionName(const std::string& name) {
  if (name.size() > kSectionPrefixLen && name.compare(0, kSectionPrefixLen, kSectionPrefix) == 0) {
    return name.substr(kSectionPrefixLen);
  }
  return name;
}

SectionTables numberSections(const kseO_SectionContainer& sections,
                             const odb_SectionCategoryRepository& categories) {
  SectionTables t;
  NumberPool pool;
  for (kseO_SectionContainerIT it(sections); !it.isDone(); it.next()) {
    int32_t n = requestedNumber(it.currentValue().name());
    if (n != 0 && pool.taken(n)) n = 0;
    if (n != 0) pool.take(n);
    t.numbers[it.currentValue().name()] = n;
  }
  for (auto& entry : t.numbers) {
    if (entry.second == 0) entry.second = pool.takeSmallestFree();
  }

  std::set<std::string> unattached;
  for (odb_SectionCategoryRepositoryIT it(categories); !it.isDone(); it.next()) {
    const std::string& name = it.currentValue().name();
    std::string section = sectionNameOfCategory(name);
    if (!section.empty() && sections.isMember(section)) {
      t.categoryOf.emplace(section, name);
    } else {
      unattached.insert(name);
    }
  }
  for (const std::string& name : unattached) t.numbers.emplace(name, pool.takeSmallestFree());
  return t;
}

int32_t sectionNumberOfCategory(const std::string& categoryName, const SectionTables& tables) {
  if (categoryName.find(kElsetMarker) == std::string::npos) return tables.numberOf(categoryName);
  return tables.numberOf(sectionNameOfCategory(categoryName));
}

}  // namespace odbs
