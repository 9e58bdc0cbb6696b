// Commands rn, rg, fs and fv through the real server on the imported CalculiX contact model
// (examples/punch_contact.inp): the contact pair of the deck is region pair 1, the region
// word reaches the handler with its suffix codes, and the step counts are the solver's.
#include <gtest/gtest.h>

#include "client/catalogue_records.h"
#include "client/field_records.h"
#include "client/server_process.h"
#include "tests/ccx/test_files.h"
#include "tests/protocol/server_fixture.h"
#include "tools/ccx/importer.h"
#include "wire/record_types.h"

namespace odbs::test {
namespace {

class PunchContact : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    dir_ = new ccx::test::ScratchDir();
    ccx::ImportRequest r;
    r.deck = ccx::test::exampleFile("punch_contact.inp");
    r.results = ccx::test::dataFile("punch_contact.frd");
    r.prints = ccx::test::dataFile("punch_contact.dat");
    r.output = dir_->path() + "/punch.odb";
    ccx::Warnings warnings;
    ccx::importCalculix(r, warnings);
  }
  static void TearDownTestSuite() { delete dir_; }
  void SetUp() override { server_ = client::test::startServer(); }

  std::string db() const { return dir_->path() + "/punch.odb"; }

  std::vector<client::RegionRecord> regionsOf(const client::Reply& reply) {
    std::vector<client::RegionRecord> out;
    for (const client::Record& r : reply.records)
      if (r.type == kRecRegion) out.push_back(client::decodeRegion(r));
    return out;
  }

  static ccx::test::ScratchDir* dir_;
  std::unique_ptr<client::ServerProcess> server_;
};

ccx::test::ScratchDir* PunchContact::dir_ = nullptr;

TEST_F(PunchContact, ContactPairIsRegionPairOne) {
  // *CONTACT PAIR, INTERACTION=SI1: slave SPUNCH, master SBLOCK.
  server_->send("d 0 0 0 U");
  auto regions = regionsOf(server_->request("rg 1:" + db()));
  ASSERT_EQ(regions.size(), 2u);
  EXPECT_EQ(regions[0].name, "SPUNCH");
  EXPECT_EQ(regions[0].pair, "SI1");
  EXPECT_EQ(regions[0].pairKind, 1);
  EXPECT_EQ(regions[0].kind, 3);
  EXPECT_EQ(regions[1].name, "SBLOCK");
  EXPECT_EQ(regions[1].side, 2);
  // The deck has one pair only.
  client::Reply none = server_->request("rg 2:" + db());
  ASSERT_EQ(none.records.size(), 4u);
  EXPECT_EQ(none.records[2].type, kRecMessage);
}

TEST_F(PunchContact, SuffixCodesOfTheRegionWord) {
  server_->send("d 0 0 0 U");
  auto codes = [&](const std::string& word) {
    std::vector<int32_t> out;
    for (const auto& r : regionsOf(server_->request("rN " + word + ":" + db())))
      out.push_back(r.code);
    return out;
  };
  EXPECT_EQ(codes("SI1.INNER:SI1.OUTER"), (std::vector<int32_t>{-1, -2}));
  EXPECT_EQ(codes("SI1.MINIMUM:SI1.MAXIMUM"), (std::vector<int32_t>{-3, -3}));
  EXPECT_EQ(codes("SI1.-7:SI1"), (std::vector<int32_t>{7, 0}));
  // rg takes numbers with the same suffixes.
  std::vector<int32_t> g;
  for (const auto& r : regionsOf(server_->request("rG 1.OUTER:1.2:" + db()))) g.push_back(r.code);
  EXPECT_EQ(g, (std::vector<int32_t>{-2, 2}));
  // No colon: the end record alone.
  EXPECT_EQ(server_->request("rn SI1").records.size(), 1u);
}

TEST_F(PunchContact, ValuesOfBothRegions) {
  // U of the last increment: node 110 of PTOP is pressed down by 0.05 (the .frd); the
  // master surface SBLOCK (the 16 top elements of a 4 x 4 x 1 block) has 50 nodes.
  server_->send("d 1 2 0 U");
  client::FieldReplyDecoder d;
  for (const client::Record& r : server_->request("rn PTOP:SI1.OUTER:" + db()).records) d.add(r);
  size_t a = 0, b = 0;
  for (const client::FieldValueRow& row : d.rows()) {
    (row.side == 1 ? a : b)++;
    if (row.side == 1 && row.node == 110) {
      EXPECT_EQ(row.components[2], -5.0e-2f);
    }
  }
  EXPECT_EQ(a, 9u);
  EXPECT_EQ(b, 50u);
  // A frame beyond the step's three: title and analysis code, then the end record.
  server_->send("d 1 3 0 U");
  EXPECT_EQ(server_->request("rg 1:" + db()).records.size(), 3u);
}

TEST_F(PunchContact, StepCountsOfFsAndFv) {
  // One *STATIC step of three increments, each with field output (.frd) and with contact
  // prints (.dat): 3 frames, 3 with field output, 3 history samples.
  for (const char* line : {"fs ", "fV "}) {
    client::Reply reply = server_->request(line + db());
    std::vector<client::StepCountsRecord> counts;
    size_t frames = 0;
    for (const client::Record& r : reply.records) {
      if (r.type == kRecStepCounts) counts.push_back(client::decodeStepCounts(r));
      if (r.type == kRecFrame) ++frames;
    }
    ASSERT_EQ(counts.size(), 1u) << line;
    EXPECT_EQ(counts[0].stepNumber, 1);
    EXPECT_EQ(counts[0].frames, 3);
    EXPECT_EQ(counts[0].fieldFrames, 3);
    EXPECT_EQ(counts[0].historySamples, 3);
    EXPECT_EQ(counts[0].selected, 3);
    EXPECT_EQ(frames, 3u);
  }
}

}  // namespace
}  // namespace odbs::test
