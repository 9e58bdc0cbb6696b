// irf and is on imported example decks through the real server: the section assignments
// carry the deck's OFFSET and thickness, and a filtered model holds exactly the deck's
// elements that the criteria name.
#include <gtest/gtest.h>

#include <set>

#include "client/model_records.h"
#include "client/server_process.h"
#include "tests/ccx/test_files.h"
#include "tools/ccx/importer.h"
#include "tools/ccx/inp_parser.h"
#include "wire/record_types.h"

namespace odbs::ccx {
namespace {

class ServerModelFilterTest : public ::testing::Test {
 protected:
  std::string import(const std::string& name) {
    ImportRequest request;
    request.deck = test::exampleFile(name + ".inp");
    request.results = test::dataFile(name + ".frd");
    request.prints = test::dataFile(name + ".dat");
    request.output = dir_.path() + "/" + name + ".odb";
    Warnings warnings;
    importCalculix(request, warnings);
    return request.output;
  }
  test::ScratchDir dir_;
  client::ServerProcess server_{client::ServerOptions{ODB_SERVER_PATH, 0, 20000}};
};

TEST_F(ServerModelFilterTest, CompositeShellAssignmentHasTheDecksOffsetAndThickness) {
  std::string db = import("plate_composite");
  client::Reply reply = server_.request("is 0 " + db);
  std::vector<client::SectionAssignmentRecord> assignments;
  std::vector<std::string> regions;
  for (const client::Record& r : reply.records) {
    if (r.type == kRecSectionAssignment) assignments.push_back(client::decodeSectionAssignment(r));
    if (r.type == kRecElementSetHeader) regions.push_back(client::decodeSetHeader(r).name);
  }
  // *SHELL SECTION, ELSET=PLATE, COMPOSITE, OFFSET=0. with three layers of 0.5
  ASSERT_EQ(assignments.size(), 1u);
  EXPECT_EQ(assignments[0].name, "PLATE");
  EXPECT_GT(assignments[0].number, 0u);
  EXPECT_TRUE(assignments[0].hasOffset);
  EXPECT_EQ(assignments[0].offset1, 0.f);
  EXPECT_TRUE(assignments[0].hasThickness);
  EXPECT_EQ(assignments[0].thickness, 1.5f);
  EXPECT_EQ(regions, std::vector<std::string>{"PLATE"});
}

TEST_F(ServerModelFilterTest, FilteredFrameHoldsTheNamedElementsOnly) {
  std::string db = import("frame_beams");
  Warnings warnings;
  Deck deck = parseDeck(test::exampleFile("frame_beams.inp"), warnings);
  // The model has the expanded beams as a second instance: set names carry the instance.
  server_.send("irc 7 0 PART-1-1.COLUMN");
  server_.send("irc 7 0 PART-1-1.BEAM");
  server_.send("irc 5 0 B32");
  client::Reply reply = server_.request("irf " + db);
  std::set<int32_t> elements, nodes, sections;
  for (const client::Record& r : reply.records) {
    if (r.type == kRecElement) elements.insert(client::decodeElement(r).label);
    if (r.type == kRecNode) nodes.insert(client::decodeNode(r).label);
    if (r.type == kRecSection) sections.insert(int32_t(client::decodeSection(r).number));
  }
  std::set<int32_t> want, wantNodes;
  for (const Element& e : deck.elements) {
    if (e.type != "B32") continue;
    want.insert(e.label);
    wantNodes.insert(e.nodes.begin(), e.nodes.end());
  }
  ASSERT_FALSE(want.empty());
  EXPECT_EQ(elements, want);
  EXPECT_EQ(nodes, wantNodes);
  EXPECT_EQ(sections.size(), 1u);  // only the column's section: the B32 elements are its own

  // The list is used up: the next irf is the whole model.
  client::Reply whole = server_.request("irf " + db);
  client::Reply g = server_.request("g " + db);
  EXPECT_EQ(whole.wireBytes(), g.wireBytes());
}

}  // namespace
}  // namespace odbs::ccx
