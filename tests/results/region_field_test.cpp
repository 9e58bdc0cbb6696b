// The two-region field output (rn, rg) on a hand-made database: regions by pair name, by
// set name and by pair number, every suffix code, nodal blocks, unknown regions and the
// early ends.
#include <gtest/gtest.h>

#include "odb/odb.h"
#include "results/results.h"
#include "tests/model/model_fixture.h"
#include "tests/results/field_db.h"
#include "tests/results/field_reply.h"

namespace odbs::test {
namespace {

using Lines = std::vector<std::string>;

RequestParams request(int step, int frame, const std::string& field) {
  RequestParams r;
  r.param1 = step;
  r.param2 = frame;
  r.text = field;
  return r;
}

RegionRequest byName(std::string a, int32_t codeA, std::string b = "", int32_t codeB = 0) {
  RegionRequest r;
  r.byName = true;
  r.nameA = std::move(a);
  r.nameB = std::move(b);
  r.codeA = codeA;
  r.codeB = codeB;
  return r;
}

RegionRequest byNumber(int32_t a, int32_t b = 0) {
  RegionRequest r;
  r.numberA = a;
  r.numberB = b;
  return r;
}

std::vector<client::Record> regionReply(OdbContext& ctx, const RequestParams& p,
                                        const RegionRequest& r) {
  return splitRecords(capture([&](ReplyChannel& out) { sendRegionField(ctx, p, false, r, out); }));
}

Lines reply(OdbContext& ctx, const RequestParams& p, const RegionRequest& r) {
  return describe(regionReply(ctx, p, r));
}

TEST(RegionFieldByName, PairNameGivesBothSurfacesWithEverySectionPoint) {
  WrittenDatabase db = shellRegions();
  EXPECT_EQ(reply(db.context(), request(1, 0, "T"), byName("CP", 0)),
            (Lines{"` 1 0 3 SURF PART-1-1 CP 1",
                   "% 1",
                   "30 S4R 1 1",
                   "31 e2 n-1 p1 [12]",
                   "30 S4R 2 2",
                   "21 [22]",
                   "30 S4R 3 3",
                   "21 [32]",
                   "` 2 0 2 TOP PART-1-1 CP 1",
                   "% 1",
                   "30 S4R 1 1",
                   "31 e1 n-1 p1 [11]",
                   "30 S4R 2 2",
                   "21 [21]",
                   "30 S4R 3 3",
                   "21 [31]",
                   "30 S4R 4 4",
                   "21 [41]",
                   "30 S4R 5 5",
                   "21 [51]"}));
}

TEST(RegionFieldByName, SuffixCodes) {
  WrittenDatabase db = shellRegions();
  // .INNER (-1): the lowest point; .OUTER (-2): the highest (3 for element 2).
  EXPECT_EQ(reply(db.context(), request(1, 0, "T"), byName("TOP", -1, "SURF", -2)),
            (Lines{"` 1 -1 2 TOP PART-1-1 - 0", "% 1", "30 S4R 1 1", "31 e1 n-1 p1 [11]",
                   "` 2 -2 3 SURF PART-1-1 - 0", "% 1", "30 S4R 2 3", "31 e2 n-1 p1 [32]"}));
  // .MINIMUM/.MAXIMUM (-3): lowest, then highest; .4: the blocks at point 4, tag 1.
  EXPECT_EQ(
      reply(db.context(), request(1, 0, "T"), byName("TOP", -3, "TOP", 4)),
      (Lines{"` 1 -3 2 TOP PART-1-1 - 0", "% 1", "30 S4R 1 1", "31 e1 n-1 p1 [11]", "30 S4R 2 5",
             "21 [51]", "` 2 4 2 TOP PART-1-1 - 0", "% 1", "30 S4R 1 4", "31 e1 n-1 p1 [41]"}));
  // A block without section points is sent whole whatever the code.
  EXPECT_EQ(reply(db.context(), request(1, 0, "T"), byName("SOLID", -2, "SOLID", 7)),
            (Lines{"` 1 -2 2 SOLID PART-1-1 - 0", "% 1", "30 C3D8 -1 -1", "31 e9 n-1 p1 [100]",
                   "` 2 7 2 SOLID PART-1-1 - 0", "% 1", "30 C3D8 -1 -1", "31 e9 n-1 p1 [100]"}));
}

TEST(RegionFieldByName, NodalBlocksTakeTheRegionsNodes) {
  WrittenDatabase db = shellRegions();
  // A node set its own nodes; an element set the nodes of its elements.
  EXPECT_EQ(
      reply(db.context(), request(1, 0, "U"), byName("NS", 0, "SOLID", 0)),
      (Lines{"` 1 0 1 NS PART-1-1 - 0", "% 1", "30  -1 -1", "31 e0 n10 p0 [1]",
             "` 2 0 2 SOLID PART-1-1 - 0", "% 1", "30  -1 -1", "31 e0 n12 p0 [3]", "22 n13 [4]"}));
}

TEST(RegionFieldByName, UnknownNamesAndMissingB) {
  WrittenDatabase db = shellRegions();
  EXPECT_EQ(reply(db.context(), request(0, 0, "T"), byName("NOPE", 0, "TOP", 0)),
            (Lines{"| Unknown region: NOPE", "` 2 0 2 TOP PART-1-1 - 0"}));
  // A set without B: region A alone.
  EXPECT_EQ(reply(db.context(), request(0, 0, "T"), byName("TOP", 0)),
            (Lines{"` 1 0 2 TOP PART-1-1 - 0"}));
}

TEST(RegionFieldByNumber, PairNumbers) {
  WrittenDatabase db = shellRegions();
  // rg 2: both regions of pair 2; rg 1:2: the first of pair 1, the second of pair 2.
  EXPECT_EQ(reply(db.context(), request(0, 0, "T"), byNumber(2)),
            (Lines{"` 1 0 1 NS PART-1-1 TIE1 2", "` 2 0 2 SOLID PART-1-1 TIE1 2"}));
  EXPECT_EQ(reply(db.context(), request(0, 0, "T"), byNumber(1, 2)),
            (Lines{"` 1 0 3 SURF PART-1-1 CP 1", "` 2 0 2 SOLID PART-1-1 TIE1 2"}));
  EXPECT_EQ(reply(db.context(), request(1, 0, "T"), byNumber(3)),
            (Lines{"| Unknown region pair: 3"}));
  EXPECT_EQ(reply(db.context(), request(0, 0, "T"), byNumber(0, 1)),
            (Lines{"| Unknown region pair: 0", "` 2 0 2 TOP PART-1-1 CP 1"}));
}

TEST(RegionFieldEarlyEnds, StepFrameAndField) {
  WrittenDatabase db = shellRegions();
  // A field that the frame does not hold: the region records alone.
  EXPECT_EQ(reply(db.context(), request(1, 0, "S"), byNumber(1)),
            (Lines{"` 1 0 3 SURF PART-1-1 CP 1", "` 2 0 2 TOP PART-1-1 CP 1"}));
  // A step or frame that does not exist: the exception reaches the dispatcher after the
  // title and analysis code (and the messages); nothing else is written.
  for (auto [step, frame] : {std::pair{2, 0}, std::pair{1, 1}, std::pair{1, -1}}) {
    Bytes bytes = capture([&](ReplyChannel& out) {
      EXPECT_THROW(sendRegionField(db.context(), request(step, frame, "T"), false,
                                   byName("NOPE", 0, "TOP", 0), out),
                   std::out_of_range);
    });
    std::vector<client::Record> records = splitRecords(bytes);
    ASSERT_EQ(records.size(), 3u) << step << " " << frame;
    EXPECT_EQ(describe(records), (Lines{"| Unknown region: NOPE"}));
  }
}

}  // namespace
}  // namespace odbs::test
