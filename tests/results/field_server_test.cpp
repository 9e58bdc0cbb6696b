// The field forms of command r through the real server: the dispatcher's parsing of each
// form reaches the walk, and the values of an imported CalculiX shell model are the solver's
// own printed stresses. A failed walk's reply through the server: region_server_test.cpp.
#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "client/field_records.h"
#include "client/server_process.h"
#include "odb/odb.h"
#include "tests/ccx/test_files.h"
#include "tests/protocol/server_fixture.h"
#include "tests/results/field_db.h"
#include "tools/ccx/importer.h"

namespace odbs::test {
namespace {

using client::FieldValueRow;

std::vector<FieldValueRow> rowsOf(const client::Reply& reply) {
  client::FieldReplyDecoder d;
  for (const client::Record& r : reply.records) d.add(r);
  return d.rows();
}

TEST(FieldServer, FormsReachTheirPaths) {
  // Two instances, each with a five-point shell field "T".
  WrittenDatabase db([](odb::Writer& w) {
    w.setTitle("two shells");
    w.addInstance("A").addNodes({1}, {0, 0, 0});
    w.addInstance("B").addNodes({1}, {0, 0, 0});
    addStepFrame(w, "Step-1");
    w.addFieldOutput(fieldOf("T", odb_Enum::SCALAR, {"T"}));
    for (const char* instance : {"A", "B"})
      for (int sp = 1; sp <= 5; ++sp) w.addFieldBlock(shellAt(sp, {1, 2}, instance));
  });
  auto server = client::test::startServer();
  server->send("D 1 0 0 T");
  // The value 10 sp + e names the section point; rows go by instance, A then B.
  struct Form {
    const char* line;  // before the database name
    size_t rows, at;
    int instanceB;  // 1 when row at is of instance B
    float value;
  } forms[] = {
      {"rm ", 4, 3, 1, 32.f},                              // the middle point 3 of each element
      {"rl 4 2,", 8, 2, 0, 41.f},                          // two section points per instance
      {"rs ", 20, 19, 1, 52.f},                            // the pair does not outlive its line
      {"rv ", 20, 0, 0, 11.f},                             // every section point
      {"rb ", 4, 0, 0, 51.f},     {"rx ", 4, 2, 1, 51.f},  // any other letter runs as rb
      {"rt ", 4, 1, 0, 12.f},
  };
  for (const Form& f : forms) {
    auto rows = rowsOf(server->request(f.line + db.path()));
    ASSERT_EQ(rows.size(), f.rows) << f.line;
    EXPECT_EQ(rows[f.at].instance, f.instanceB ? "B" : "A") << f.line;
    EXPECT_EQ(rows[f.at].components[0], f.value) << f.line;
  }
}

// The CalculiX composite plate: *EL PRINT of S in elements 6, 7, 10 and 11, integration
// points 1..24 through three plies, imported as section points 1..6 of four points each.
class PlateFromSolver : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = new ccx::test::ScratchDir();
    ccx::ImportRequest r;
    r.deck = ccx::test::exampleFile("plate_composite.inp");
    r.results = ccx::test::dataFile("plate_composite.frd");
    r.prints = ccx::test::dataFile("plate_composite.dat");
    r.output = dir_->path() + "/plate.odb";
    ccx::Warnings warnings;
    ccx::importCalculix(r, warnings);
  }
  static void TearDownTestSuite() { delete dir_; }

  // S of the last frame (time 1.0) by the form, keyed by (element, section point, point).
  std::map<std::tuple<int, int, int>, std::vector<float>> stresses(const std::string& form) {
    auto server = client::test::startServer();
    server->send("D 1 1 2 S");
    std::map<std::tuple<int, int, int>, std::vector<float>> m;
    for (const FieldValueRow& row :
         rowsOf(server->request(form + " " + dir_->path() + "/plate.odb")))
      m[{row.element, row.sectionPoint, row.point}] = row.components;
    return m;
  }

  static ccx::test::ScratchDir* dir_;
};

ccx::test::ScratchDir* PlateFromSolver::dir_ = nullptr;

TEST_F(PlateFromSolver, SectionPointValuesAreTheSolversPrints) {
  auto all = stresses("rv");
  // Lines of the .dat at time 1.0: element 6 points 1 and 24, element 7 point 1.
  EXPECT_EQ(all[std::make_tuple(6, 1, 1)],
            (std::vector<float>{-3.991220E+00f, -4.490982E-01f, -1.508884E-01f, 2.338923E-01f,
                                1.558006E-02f, -1.065618E-01f}));
  EXPECT_EQ(all[std::make_tuple(6, 6, 4)],
            (std::vector<float>{9.113855E+00f, 6.390282E-01f, -4.316819E-02f, -3.583698E-02f,
                                -1.203897E-02f, -3.117026E-02f}));
  EXPECT_EQ(all[std::make_tuple(7, 1, 1)][0], -7.016581E+00f);
  // rt: the bottom (point 1 of element 6 is print point 1); rb: the top (print point 21).
  EXPECT_EQ(stresses("rt")[std::make_tuple(6, 1, 1)][0], -3.991220E+00f);
  EXPECT_EQ(stresses("rb")[std::make_tuple(6, 6, 1)][0], 4.200377E+00f);
}

TEST_F(PlateFromSolver, MidSurfaceIsTheMeanOfTheMiddlePoints) {
  // Six section points: the middle pair is 3 and 4, print points 9 and 13 for point 1 of
  // element 6: S11 (-0.8582384 + 1.030663) / 2 = 0.0862123, S22 (-0.09349088 + 0.1076228) / 2
  // = 0.00706596.
  auto mid = stresses("rm");
  auto v = mid[std::make_tuple(6, 1, 1)];
  ASSERT_EQ(v.size(), 6u);
  EXPECT_NEAR(v[0], 0.0862123f, 1e-7f);
  EXPECT_NEAR(v[1], 0.00706596f, 1e-8f);
  EXPECT_EQ(mid.size(), 16u);  // four elements, four points each
}

}  // namespace
}  // namespace odbs::test
