// The print file reader: the tables of the fixtures and malformed tables.
#include "tools/ccx/dat_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/ccx/test_files.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using ::testing::ElementsAre;

TEST(DatParser, NodeTotalAndIntegrationPointTables) {
  Warnings warnings;
  DatFile dat = readDat(dataFile("beam_steps.dat"), warnings);
  EXPECT_TRUE(warnings.texts().empty());
  ASSERT_EQ(dat.blocks.size(), 30u);  // three tables in each of ten increments
  const DatBlock& u = dat.blocks[0];
  EXPECT_EQ(u.kind, DatRowKind::Node);
  EXPECT_EQ(u.set, "TIP");
  EXPECT_DOUBLE_EQ(u.time, 0.25);
  EXPECT_THAT(u.components, ElementsAre("vx", "vy", "vz"));
  EXPECT_THAT(u.labels, ElementsAre(11, 22, 33, 44, 55, 66, 77, 88, 99));
  const DatBlock& total = dat.blocks[1];
  EXPECT_EQ(total.kind, DatRowKind::Total);
  EXPECT_EQ(total.rows(), 1u);
  EXPECT_NEAR(total.values[2], 22.5, 1e-9);  // a quarter of the 90 N tip load
  const DatBlock& s = dat.blocks[2];
  EXPECT_EQ(s.kind, DatRowKind::IntegrationPoint);
  EXPECT_EQ(s.rows(), 32u);  // four elements of eight points
  EXPECT_EQ(s.labels[8], 11);
  EXPECT_EQ(s.labels2[8], 1);
  EXPECT_THAT(s.components, ElementsAre("sxx", "syy", "szz", "sxy", "sxz", "syz"));
  EXPECT_EQ(dat.blocks.back().time, 2.0004);
}

TEST(DatParser, EigenmodeTablesAndSkippedSections) {
  Warnings warnings;
  DatFile dat = readDat(dataFile("strip_modes.dat"), warnings);
  ASSERT_EQ(dat.eigenvalues.size(), 6u);
  EXPECT_NEAR(dat.eigenvalues[0].cyclesPerTime, 209.2643, 1e-3);
  std::vector<int> modes;
  for (const DatBlock& b : dat.blocks) {
    if (b.mode) modes.push_back(b.mode);
  }
  EXPECT_THAT(modes, ElementsAre(1, 2, 3, 4, 5, 6));
  // Participation factors and modal masses are not imported: one warning per kind.
  EXPECT_EQ(warnings.count("dat-section:PARTICIPATIONFACTORS"), 1);
  EXPECT_EQ(warnings.count("dat-section:EFFECTIVEMODALMASS"), 1);
}

TEST(DatParser, ShellRowsWithOrientationNames) {
  Warnings warnings;
  DatFile dat = readDat(dataFile("plate_composite.dat"), warnings);
  ASSERT_EQ(dat.blocks.size(), 4u);
  const DatBlock& s = dat.blocks[1];
  EXPECT_EQ(s.set, "MIDDLE");
  EXPECT_EQ(s.rows(), 96u);  // four elements, three layers of eight points
  EXPECT_EQ(s.labels2[23], 24);
}

TEST(DatParser, ContactTablesFollowThePenaltyLaw) {
  Warnings warnings;
  DatFile dat = readDat(dataFile("punch_contact.dat"), warnings);
  const DatBlock* opening = nullptr;
  const DatBlock* stress = nullptr;
  for (const DatBlock& b : dat.blocks) {
    if (b.time != 1.0) continue;
    if (b.quantity == "relative contact displacement") opening = &b;
    if (b.quantity == "contact stress") stress = &b;
  }
  ASSERT_TRUE(opening && stress);
  EXPECT_EQ(opening->kind, DatRowKind::ContactFace);
  EXPECT_THAT(stress->components, ElementsAre("press", "tang1", "tang2"));
  ASSERT_EQ(opening->rows(), stress->rows());
  ASSERT_GT(opening->rows(), 0u);
  // Linear pressure-overclosure with slope 1e5 (the deck): pressure = -1e5 * opening.
  for (size_t r = 0; r < opening->rows(); ++r) {
    EXPECT_EQ(opening->labels[r], stress->labels[r]);
    EXPECT_NEAR(stress->values[r * 3], -1e5 * opening->values[r * 3],
                1e-5 * std::fabs(stress->values[r * 3]) + 1e-12);
  }
}

TEST(DatParser, MalformedTables) {
  struct Bad {
    const char* text;
    int line;
    const char* expected;
  };
  const Bad bad[] = {
      {" displacements (vx,vy,vz) for set A and time  x\n", 1, "a table title"},
      {" forces and time (fx) for set A\n", 1, "a table title"},
      {" stresses (elem, integ.pnt.,sxx) for set A and time 1.\n\n 1.5 1 2.0\n", 3,
       "an integer label in column 1"},
      {"     E I G E N V A L U E   N U M B E R     1.5\n", 1, "a mode number"},
  };
  test::ScratchDir dir;
  for (const Bad& b : bad) {
    SCOPED_TRACE(b.text);
    Warnings warnings;
    test::expectParseError([&] { readDat(dir.write("p.dat", b.text), warnings); }, b.line,
                           b.expected);
  }
}

// Rows that do not match their title (the solver prints internal state variables so): the
// table is passed over with one warning, and the tables after it are read.
TEST(DatParser, TablesOfAnotherFormArePassedOverWithAWarning) {
  test::ScratchDir dir;
  Warnings warnings;
  DatFile file = readDat(dir.write("p.dat",
                                   "\n displacements (vx,vy,vz) for set A and time  0.1E+01\n\n"
                                   "  1  1.0  2.0\n  2  1.0  2.0\n\n"
                                   " forces (fx,fy,fz) for set A and time  0.1E+01\n\n"
                                   "  1  1.0  2.0  3.0\n"),
                         warnings);
  ASSERT_EQ(file.blocks.size(), 1u);
  EXPECT_EQ(file.blocks[0].quantity, "forces");
  ASSERT_EQ(warnings.texts().size(), 1u);
  EXPECT_NE(warnings.texts()[0].find("p.dat:4: the rows of 'displacements' do not have the 4 "
                                     "numbers its title announces"),
            std::string::npos)
      << warnings.texts()[0];
}

}  // namespace
}  // namespace odbs::ccx
