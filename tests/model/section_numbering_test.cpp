// Section numbers: requested "P<n>" numbers, gap filling in name order, categories.
#include "model/section_numbering.h"

#include <gtest/gtest.h>

namespace odbs {
namespace {

kseO_SectionContainer containerOf(const std::vector<std::string>& names) {
  kseO_SectionContainer c;
  for (const auto& n : names) {
    odb::SectionData d;
    d.name = n;
    d.kind = kseO_HOMOGENEOUS_SOLID;
    c.insert(n, std::shared_ptr<const odb_Section>(kseO_makeSection(d)));
  }
  return c;
}

odb_SectionCategoryRepository categoriesOf(const std::vector<std::string>& names) {
  odb_SectionCategoryRepository r;
  for (const auto& n : names) {
    odb::SectionCategoryData d;
    d.name = n;
    r.insert(n, odb_SectionCategory(d));
  }
  return r;
}

// Plain requested numbers, gap filling in name order and the short names of the records:
// export_model_test.cpp, section_assignments_test.cpp and section_material_records_test.cpp.
TEST(SectionNumbering, FirstSectionInContainerOrderKeepsAContestedNumber) {
  // "P2" comes before "Section-P2" in name order; "p3x" asks for 3 as atoi reads it;
  // "P" alone and "Px" ask for nothing; "Section-P7" asks for 7 by its short name.
  SectionTables t = numberSections(
      containerOf({"Section-P2", "P2", "p3x", "P", "Px", "Section-P7"}), categoriesOf({}));
  EXPECT_EQ(t.numberOf("P2"), 2);
  EXPECT_EQ(t.numberOf("p3x"), 3);
  EXPECT_EQ(t.numberOf("Section-P7"), 7);
  EXPECT_EQ(t.numberOf("P"), 1);
  EXPECT_EQ(t.numberOf("Px"), 4);
  EXPECT_EQ(t.numberOf("Section-P2"), 5);
  EXPECT_EQ(shortSectionName("Sect"), "Sect");
}

TEST(SectionNumbering, CategoriesLeadToSectionsOrGetNumbersOfTheirOwn) {
  SectionTables t =
      numberSections(containerOf({"Section-BLOCK", "CONN", "P1"}),
                     categoriesOf({"solid < elset = BLOCK", "connector < elset = CONN extra",
                                   "shell < elset = MISSING", "beam", "another"}));
  EXPECT_EQ(t.categoryOf.at("Section-BLOCK"), "solid < elset = BLOCK");
  EXPECT_EQ(t.categoryOf.at("CONN"), "connector < elset = CONN extra");
  EXPECT_EQ(t.categoryOf.count("Section-MISSING"), 0u);
  // Sections: P1 1, CONN 2, Section-BLOCK 3; then the loose categories in name order.
  EXPECT_EQ(t.numberOf("another"), 4);
  EXPECT_EQ(t.numberOf("beam"), 5);
  EXPECT_EQ(t.numberOf("shell < elset = MISSING"), 6);

  EXPECT_EQ(sectionNumberOfCategory("solid < elset = BLOCK", t), 3);
  EXPECT_EQ(sectionNumberOfCategory("connector < elset = CONN extra", t), 2);
  EXPECT_EQ(sectionNumberOfCategory("beam", t), 5);
  // A category naming a section that does not exist: its own number is not used.
  EXPECT_EQ(sectionNumberOfCategory("shell < elset = MISSING", t), 0);
  EXPECT_EQ(sectionNumberOfCategory("", t), 0);
}

}  // namespace
}  // namespace odbs
