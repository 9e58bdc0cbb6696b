// The results import through a recording sink: element blocks given in parts, fields handed
// over as their blocks are read, and contact history that follows one point as the contact
// zone grows. What the import writes to a
// database is checked on the database itself (import_results_test.cpp).
#include "tools/ccx/results_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "tests/ccx/test_files.h"
#include "tools/ccx/dat_parser.h"
#include "tools/ccx/inp_parser.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using test::exampleFile;
using ::testing::ElementsAre;

// Keeps the history of each step and what else came, in order: "frame", each field's name
// ("U*" when it has imaginary parts), "end".
class Recorder : public ResultSink {
 public:
  void step(int, const PlannedStep&) override {}
  void frame(int, const PlannedFrame&, std::vector<PointField>&&) override {
    events.push_back("frame");
  }
  void field(NodalField&& f) override {
    events.push_back(f.part.name + (f.imaginary.empty() ? "" : "*"));
  }
  void frameEnd() override { events.push_back("end"); }
  void history(int, const std::vector<HistoryRegionData>& regions) override {
    histories.push_back(regions);
  }
  const HistoryRegionData* region(int step, const std::string& name) const {
    for (const auto& r : histories.at(step))
      if (r.name == name) return &r;
    return nullptr;
  }
  std::vector<std::vector<HistoryRegionData>> histories;
  std::vector<std::string> events;
};

// The result file's elements may come in parts (large meshes do): the check and the
// expanded mesh are the same as from the whole block at once.
TEST(ResultsImport, ElementsInPartsGiveTheSameExpansion) {
  for (const char* name : {"plate_shell", "frame_beams", "beam_steps"}) {
    SCOPED_TRACE(name);
    Warnings warnings;
    Deck deck = parseDeck(exampleFile(std::string(name) + ".inp"), warnings);
    FrdFile frd = readFrdFile(dataFile(std::string(name) + ".frd"), warnings);
    Expansion whole(deck, "whole.frd"), parts(deck, "parts.frd");
    whole.nodes(frd.nodes, warnings);
    parts.nodes(frd.nodes, warnings);
    whole.elements(frd.elements, warnings);
    const size_t half = frd.elements.size() / 2;
    parts.addElements({frd.elements.begin(), frd.elements.begin() + half});
    parts.addElements({frd.elements.begin() + half, frd.elements.end()});
    parts.finishElements(warnings);
    EXPECT_EQ(parts.mesh().nodeLabels, whole.mesh().nodeLabels);
    ASSERT_EQ(parts.mesh().elements.size(), whole.mesh().elements.size());
    for (size_t e = 0; e < whole.mesh().elements.size(); ++e) {
      EXPECT_EQ(parts.mesh().elements[e].nodes, whole.mesh().elements[e].nodes);
    }
    ASSERT_EQ(parts.sources().size(), whole.sources().size());
    for (size_t s = 0; s < whole.sources().size(); ++s) {
      EXPECT_EQ(parts.sources()[s].deckNode, whole.sources()[s].deckNode);
      EXPECT_EQ(parts.sources()[s].all, whole.sources()[s].all);
    }
  }
}

// Reads an example's result file into r block by block, calling after(step) after each.
void readInto(const std::string& name, Recorder& r, const std::function<void(int)>& after) {
  Warnings warnings;
  Deck deck = parseDeck(exampleFile(name + ".inp"), warnings);
  FrdFile frd = readFrdFile(dataFile(name + ".frd"), warnings);
  DatFile prints;
  ResultImport import(deck, prints, name + ".frd", r, warnings);
  import.nodes(std::move(frd.nodes));
  import.elements(std::move(frd.elements));
  import.elementsEnd();
  for (FrdBlock& block : frd.blocks) {
    const int step = block.step;
    import.block(std::move(block));
    after(step);
  }
  import.finish();
}

// A field of a static step goes as soon as its block is read; those of a steady-state
// point wait for their imaginary parts, which the solver writes after all the real ones.
TEST(ResultsImport, FieldsGoAsReadUnlessImaginaryPartsMayFollow) {
  Recorder statics;
  size_t blocks = 0;
  readInto("beam_steps", statics, [&](int) {
    if (blocks++ == 0) {
      EXPECT_THAT(statics.events, ElementsAre("frame", "U"));
    }
  });
  Recorder dynamics;
  readInto("strip_modes", dynamics, [&](int step) {
    if (step == 2) {
      EXPECT_EQ(dynamics.events.back(), "frame");
    }
  });
  EXPECT_THAT(std::vector<std::string>(dynamics.events.end() - 5, dynamics.events.end()),
              ElementsAre("frame", "U*", "S*", "ERROR*", "end"));
}

// A dome pressed onto a block: the contact zone grows from 32 to 128 printed points. Every
// contact series follows one slave node or one slave face through all four increments;
// the expected values are the solver's own (.frd rows of nodes 101 and 106; .dat rows of
// the faces).
TEST(ResultsImport, ContactHistoryFollowsNodesAndFacesAsTheZoneGrows) {
  Warnings warnings;
  Deck deck = parseDeck(exampleFile("dome_contact.inp"), warnings);
  DatFile prints = readDat(dataFile("dome_contact.dat"), warnings);
  Recorder r;
  ResultImport import(deck, prints, dataFile("dome_contact.frd"), r, warnings);
  readFrd(dataFile("dome_contact.frd"), import, warnings);
  import.finish();
  EXPECT_EQ(import.tablesPassedOver(), 0u);
  ASSERT_EQ(r.histories.size(), 1u);
  const std::vector<HistoryRegionData>& regions = r.histories[0];
  // 16 slave nodes, 9 slave faces, the total of PTOP and the count of contact elements.
  EXPECT_EQ(regions.size(), 27u);
  for (const HistoryRegionData& region : regions) {
    EXPECT_EQ(region.name.find("Int Point"), std::string::npos) << region.name;
    for (const auto& [name, output] : region.outputs) {
      EXPECT_THAT(output.frameValues, ElementsAre(0.25, 0.5, 0.75, 1.0))
          << region.name << " " << name;
    }
  }

  // Node 101, a corner of the dome, is open in the first increment: 0 there.
  const HistoryRegionData* corner = r.region(0, "Node PART-1-1.101");
  ASSERT_NE(corner, nullptr);
  EXPECT_EQ(corner->position, odb_Enum::NODAL);
  EXPECT_THAT(corner->outputs.at("COPEN").values,
              ElementsAre(0.f, -3.20729e-4f, -2.41036e-4f, -7.81847e-4f));
  EXPECT_THAT(corner->outputs.at("CPRESS").values,
              ElementsAre(0.f, 3.20729e1f, 2.41036e1f, 7.81847e1f));
  const HistoryRegionData* middle = r.region(0, "Node PART-1-1.106");
  ASSERT_NE(middle, nullptr);
  EXPECT_THAT(middle->outputs.at("COPEN").values,
              ElementsAre(-1.67918e-3f, -3.80451e-3f, -3.32999e-3f, -4.33939e-3f));
  EXPECT_EQ(r.region(0, "Node PART-1-1.1"), nullptr);  // a block node: never in contact

  // Face 1 of element 101: 2, 6, 12 and 18 printed points. Its first increment prints the
  // pressure 9.989559 and the energy 3.926403e-4 at both points.
  const HistoryRegionData* face = r.region(0, "Element PART-1-1.101 Face 1");
  ASSERT_NE(face, nullptr);
  EXPECT_EQ(face->element, 101);
  EXPECT_EQ(face->face, 1);
  EXPECT_THAT(face->outputs.at("CPOINTS").values, ElementsAre(2.f, 6.f, 12.f, 18.f));
  EXPECT_FLOAT_EQ(face->outputs.at("CPRESS").values[0], 9.989559f);
  EXPECT_FLOAT_EQ(face->outputs.at("CELS").values[0], 2 * 3.926403e-4f);
  // Face 1 of element 107 in the last increment: the mean opening of its 18 points.
  const HistoryRegionData* other = r.region(0, "Element PART-1-1.107 Face 1");
  ASSERT_NE(other, nullptr);
  EXPECT_NEAR(other->outputs.at("COPEN").values[3], -3.0137758e-3, 1e-9);

  const HistoryRegionData* count = r.region(0, "Assembly");
  ASSERT_NE(count, nullptr);
  EXPECT_EQ(count->position, odb_Enum::WHOLE_MODEL);
  EXPECT_THAT(count->outputs.at("CNUM").values, ElementsAre(32.f, 56.f, 96.f, 128.f));
  EXPECT_EQ(warnings.count("dat-line"), 0);
}

}  // namespace
}  // namespace odbs::ccx
