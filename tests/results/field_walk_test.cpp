// The paths of the field walk: section point pair (rl), all section points (rv), surfaces
// (rt, rb), the general path (rs), the early ends, and the matrix path of a frequency step.
#include <gtest/gtest.h>

#include <cmath>

#include "results/results.h"
#include "tests/model/model_fixture.h"
#include "tests/results/field_db.h"
#include "tests/results/field_reply.h"

namespace odbs::test {
namespace {

using Lines = std::vector<std::string>;

// The databases: shellRegions() of field_db.h, and modes() below.
TEST(FieldWalk, SectionPointPairOfRl) {
  WrittenDatabase db = shellRegions();
  // rl 5 1: blocks of points 5 (first of the pair: tag 1) and 1 (tag 2), and the solid.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T", 0, false, false, {5, 1}))),
            (Lines{"% 1", "30 S4R 2 1", "31 e1 n-1 p1 [11]", "34 e2 [12]", "30 S4R 1 5",
                   "34 e1 [51]", "30 C3D8 -1 -1", "34 e9 [100]"}));
}

TEST(FieldWalk, EverySectionPointOfRvAndRs) {
  WrittenDatabase db = shellRegions();
  // The place is remembered across blocks: element 1 at point 1 again after block 4 is 21.
  const Lines all = {"% 1",        "30 S4R 1 1", "31 e1 n-1 p1 [11]", "34 e2 [12]",
                     "30 S4R 2 2", "34 e1 [21]", "34 e2 [22]",        "30 S4R 3 3",
                     "34 e1 [31]", "34 e2 [32]", "30 S4R 4 4",        "34 e1 [41]",
                     "30 S4R 5 5", "21 [51]",    "30 C3D8 -1 -1",     "34 e9 [100]"};
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T", -1))), all);
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T", 0))), all);
}

TEST(FieldWalk, SurfacesOfRtAndRb) {
  WrittenDatabase db = shellRegions();
  // Lowest point of both elements: 1.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T", -2))),
            (Lines{"% 1", "30 S4R 1 1", "31 e1 n-1 p1 [11]", "34 e2 [12]", "30 C3D8 -1 -1",
                   "34 e9 [100]"}));
  // Highest: 3 for element 2, 5 for element 1, in block order.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "T", -3))),
            (Lines{"% 1", "30 S4R 2 3", "31 e2 n-1 p1 [32]", "30 S4R 2 5", "34 e1 [51]",
                   "30 C3D8 -1 -1", "34 e9 [100]"}));
}

TEST(FieldWalk, EarlyEnds) {
  WrittenDatabase db = shellRegions();
  // Step 0 and a field that the frame does not hold: title and analysis code only.
  EXPECT_EQ(walk(db.context(), fieldRequest(0, 0, "T", 0)).size(), 2u);
  EXPECT_EQ(walk(db.context(), fieldRequest(1, 0, "S", 0)).size(), 2u);
  // A name that begins with a matrix name is an ordinary field.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(1, 0, "MATRIX Sqqx", 0))),
            (Lines{"% 1", "30 C3D8 -1 -1", "31 e9 n-1 p1 [4]"}));
  // Frame or step out of range: the exception reaches the dispatcher after the two
  // immediate records; nothing else is written.
  for (auto [step, frame] : {std::pair{1, 1}, std::pair{2, 0}, std::pair{1, -1}}) {
    Bytes bytes = capture([&](ReplyChannel& out) {
      ResultCache cache;
      EXPECT_THROW(walkField(db.context(), fieldRequest(step, frame, "T", 0), cache, out),
                   std::out_of_range);
    });
    EXPECT_EQ(splitRecords(bytes).size(), 2u);
  }
}

// Step 1: a static step; step 2: a frequency step whose base frame holds the two matrix
// fields (order 3) and whose frames 1..3 are modes 1..3 with "S" at two integration points
// of element 4. Mode k has S11 = k at point 1 and 2k at point 2, nothing else. scale
// multiplies every stress.
WrittenDatabase modes(float scale) {
  return WrittenDatabase([scale](odb::Writer& w) {
    w.addInstance("PART-1-1").addNodes({1}, {0, 0, 0});
    addStepFrame(w, "Static");
    odb::StepData s;
    s.name = "Modes";
    s.procedure = "*FREQUENCY";
    w.addStep(s);
    w.addFrame(odb::FrameData{});
    // Lower triangle of [[1, 0.5, 0], [0.5, 2, 0.25], [0, 0.25, 1]].
    for (const char* name : {"MATRIX Sqq", "MATRIX RSqq"}) {
      odb::FieldOutputData m = fieldOf(name, odb_Enum::MATRIX, {"M"});
      m.matrixOrder = 3;
      w.addFieldOutput(m);
      odb::FieldBlockData b;
      b.instance = "PART-1-1";
      b.position = odb_Enum::WHOLE_MODEL;
      b.type = odb_Enum::MATRIX;
      b.width = 6;
      b.data = {1, 0.5f, 2, 0, 0.25f, 1};
      w.addFieldBlock(b);
    }
    for (int k = 1; k <= 3; ++k) {
      odb::FrameData f;
      f.mode = k;
      w.addFrame(f);
      w.addFieldOutput(
          fieldOf("S", odb_Enum::TENSOR_3D_FULL, {"S11", "S22", "S33", "S12", "S13", "S23"}));
      std::vector<float> v(12, 0.f);
      v[0] = scale * float(k);
      v[6] = scale * float(2 * k);
      w.addFieldBlock(elementBlock("C3D8", {4, 4}, {1, 2}, {}, 6, v));
    }
  });
}

TEST(FieldWalk, ModalMatrixOfAFrequencyStep) {
  WrittenDatabase db = modes(1.f);
  ResultCache cache;
  // q = s^T M s with s = (1, 2, 3): 1 + 8 + 9 + 2 (0.5 * 2 + 0 * 3 + 0.25 * 6) = 23; with
  // s doubled, 92.
  EXPECT_EQ(describe(walk(db.context(), fieldRequest(2, 0, "MATRIX Sqq", 0), &cache)),
            (Lines{"31 e4 n-1 p1 [23]", "23 p2 [92]"}));
  ASSERT_EQ(cache.size(), 1u);
  EXPECT_EQ(cache[0].size(), 3u * 2 * 6);
  // From the static step after the frequency step there is none: searched backwards from
  // step 1, nothing is found.
  EXPECT_EQ(walk(db.context(), fieldRequest(1, 0, "MATRIX Sqq", 0), &cache).size(), 2u);

  // The cache is keyed by block index alone: another database with the same shapes gets
  // the stresses of the first until the cache is emptied (command C).
  WrittenDatabase other = modes(2.f);
  auto recs = walk(other.context(), fieldRequest(2, 0, "MATRIX RSqq", 0), &cache);
  EXPECT_EQ(describe(recs),
            (Lines{"31 e4 n-1 p1 [" + std::to_string(std::sqrt(23.f)).substr(0, 7) + "]",
                   "23 p2 [" + std::to_string(std::sqrt(92.f)).substr(0, 7) + "]"}));
  cache.clear();
  EXPECT_EQ(describe(walk(other.context(), fieldRequest(2, 0, "MATRIX Sqq", 0), &cache)),
            (Lines{"31 e4 n-1 p1 [92]", "23 p2 [368]"}));
}

}  // namespace
}  // namespace odbs::test
