// Commands rn and rg through the real server on the imported CalculiX contact model
// (examples/punch_contact.inp): the contact pair of the deck is region pair 1, and the values
// of both regions are the solver's. The region word's parsing is in
// tests/server/command_parse_test.cpp, every suffix code's handling in region_field_test.cpp.
#include <gtest/gtest.h>

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
}

}  // namespace
}  // namespace odbs::test
