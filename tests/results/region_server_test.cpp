// Commands rn and rg through the real server on the imported CalculiX contact model
// (examples/punch_contact.inp): the values of both regions are the solver's, and a failed
// walk still closes its reply. The region word's parsing is in
// tests/server/command_parse_test.cpp, every suffix code's handling in region_field_test.cpp,
// the region pairs of an import in tests/ccx/import_test.cpp.
#include <gtest/gtest.h>

#include "client/field_records.h"
#include "client/server_process.h"
#include "tests/ccx/test_files.h"
#include "tests/protocol/server_fixture.h"
#include "tools/ccx/importer.h"

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

  static ccx::test::ScratchDir* dir_;
  std::unique_ptr<client::ServerProcess> server_;
};

ccx::test::ScratchDir* PunchContact::dir_ = nullptr;

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

}  // namespace
}  // namespace odbs::test
