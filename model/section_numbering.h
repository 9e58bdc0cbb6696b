// Section numbers: the positive numbers by which sections are known on the wire, built
// once per model command from the database's sections and section categories.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "odb/odb.h"

namespace odbs {

// Name tables of one model command; keys compare byte-wise.
struct SectionTables {
  // Section name (and names of categories tied to no section) -> section number.
  std::map<std::string, int32_t> numbers;
  // Section name -> name of the first section category that leads to it.
  std::map<std::string, std::string> categoryOf;

  // The number under name, or 0 when there is none.
  int32_t numberOf(const std::string& name) const;
};

// The section name a category name refers to, or "" when it refers to none by its text:
// the word after "< elset = " (up to the first blank), prefixed with "Section-" unless the
// category name begins with "connector".
std::string sectionNameOfCategory(const std::string& categoryName);

// The name as sent in section records: without a leading "Section-" when the name is
// longer than that prefix.
std::string shortSectionName(const std::string& name);

// Numbers every section and every category that leads to no section:
// 1. sections in container order: a short name "P<n>" or "p<n>" asks for n (atoi; a
//    number already taken, or 0, asks for nothing);
// 2. sections that asked for nothing, in name order, take the smallest free numbers;
// 3. categories that lead to a section of the container fill categoryOf (first wins);
// 4. the other category names, in name order, take the smallest free numbers.
// Takes the containers by reference for this call only; throws what the database throws.
SectionTables numberSections(const kseO_SectionContainer& sections,
                             const odb_SectionCategoryRepository& categories);

// The section number of an element found by its category name alone: the number of the
// section the category refers to (sectionNameOfCategory), else of the category name itself;
// 0 when the table has neither.
int32_t sectionNumberOfCategory(const std::string& categoryName, const SectionTables& tables);

}  // namespace odbs
