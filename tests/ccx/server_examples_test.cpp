// Every example deck, imported, through the real server: the database opens, the model and
// the sets that the server sends are the deck's, and the catalogue lists every frame.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "client/catalogue_records.h"
#include "client/model_records.h"
#include "client/server_process.h"
#include "tests/ccx/test_files.h"
#include "tools/ccx/importer.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/model_import.h"
#include "wire/frame.h"

namespace odbs::ccx {
namespace {

class ServerExamplesTest : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    ImportRequest request;
    request.deck = test::exampleFile(std::string(GetParam()) + ".inp");
    request.results = test::dataFile(std::string(GetParam()) + ".frd");
    request.prints = test::dataFile(std::string(GetParam()) + ".dat");
    request.output = db_ = dir_.path() + "/example.odb";
    Warnings warnings;
    summary_ = importCalculix(request, warnings);
    Warnings again;
    deck_ = parseDeck(request.deck, again);
    server_ =
        std::make_unique<client::ServerProcess>(client::ServerOptions{ODB_SERVER_PATH, 0, 20000});
  }
  test::ScratchDir dir_;
  std::string db_;
  ImportSummary summary_;
  Deck deck_;
  std::unique_ptr<client::ServerProcess> server_;
};

TEST_P(ServerExamplesTest, ModelSetsAndFramesAreTheDecks) {
  client::Reply model = server_->request("g " + db_);
  std::map<int32_t, client::NodeRecord> nodes;
  std::map<int32_t, client::ElementRecord> elements;
  // A model with the solver's expanded shells and beams has a second instance: the deck's
  // nodes and elements are those of the deck's instance.
  std::string instance = kInstanceName;
  for (const client::Record& r : model.records) {
    if (r.type == kRecInstanceHeader) instance = client::decodeInstanceHeader(r);
    if (instance != kInstanceName) continue;
    if (r.type == kRecTitle) {
      EXPECT_EQ(client::decodeTitle(r), deck_.title);
    }
    if (r.type == kRecNode) {
      client::NodeRecord n = client::decodeNode(r);
      nodes[n.label] = n;
    }
    if (r.type == kRecElement) {
      client::ElementRecord e = client::decodeElement(r);
      elements[e.label] = e;
    }
  }
  ASSERT_EQ(nodes.size(), deck_.nodes.size());
  for (const Node& n : deck_.nodes) {
    ASSERT_EQ(nodes.count(n.label), 1u) << n.label;
    EXPECT_FLOAT_EQ(nodes[n.label].coordinates.at(0), static_cast<float>(n.x));
    EXPECT_FLOAT_EQ(nodes[n.label].coordinates.at(2), static_cast<float>(n.z));
  }
  ASSERT_EQ(elements.size(), deck_.elements.size());
  for (const Element& e : deck_.elements) {
    EXPECT_EQ(elements[e.label].type, e.type) << e.label;
    EXPECT_EQ(elements[e.label].nodes, e.nodes) << e.label;
    EXPECT_GT(elements[e.label].section, 0) << "element " << e.label << " has no section";
  }

  // Sets: each of the deck's sets, with its members.
  client::Reply sets = server_->request("S 0 0 " + db_);
  std::map<std::string, std::set<int32_t>> nodeSets, elementSets;
  std::set<int32_t>* current = nullptr;
  for (const client::Record& r : sets.records) {
    if (r.type == kRecNodeSetHeader || r.type == kRecElementSetHeader) {
      client::SetHeaderRecord h = client::decodeSetHeader(r);
      current = &(h.kind == client::SetKind::kNode ? nodeSets : elementSets)[h.name];
    } else if (r.type == kRecNodeLabels || r.type == kRecElementLabels) {
      for (int32_t label : client::decodeLabelBlock(r)) current->insert(label);
    }
  }
  for (const LabelSet& s : deck_.nodeSets) {
    ASSERT_EQ(nodeSets.count(s.name), 1u) << s.name;
    EXPECT_EQ(nodeSets[s.name], std::set<int32_t>(s.labels.begin(), s.labels.end())) << s.name;
  }
  for (const LabelSet& s : deck_.elementSets) {
    ASSERT_EQ(elementSets.count(s.name), 1u) << s.name;
    EXPECT_EQ(elementSets[s.name], std::set<int32_t>(s.labels.begin(), s.labels.end())) << s.name;
  }

  // The catalogue: one frame record per imported frame.
  client::Reply catalogue = server_->request("fd " + db_);
  int64_t frames = 0;
  for (const client::Record& r : catalogue.records) frames += r.type == kRecFrame;
  EXPECT_EQ(frames, summary_.frames);
}

INSTANTIATE_TEST_SUITE_P(Examples, ServerExamplesTest,
                         ::testing::Values("beam_steps", "strip_modes", "plate_composite",
                                           "punch_contact", "plate_shell", "frame_beams",
                                           "beam_forces", "dome_contact"));

}  // namespace
}  // namespace odbs::ccx
