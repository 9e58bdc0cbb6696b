// The results import on the fixtures: frames of every step, field outputs with the
// database's names and component order, printed values at integration points and as
// history, complex results of the steady-state step.
#include "tools/ccx/results_import.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "tests/ccx/test_files.h"
#include "tools/ccx/dat_parser.h"
#include "tools/ccx/inp_parser.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using test::exampleFile;
using ::testing::ElementsAre;

struct RecordedFrame {
  int step;
  PlannedFrame frame;
  std::vector<NodalField> nodal;
  std::vector<PointField> points;

  const NodalField* nodalField(const std::string& name) const {
    for (const auto& f : nodal)
      if (f.part.name == name) return &f;
    return nullptr;
  }
  const PointField* pointField(const std::string& name) const {
    for (const auto& f : points)
      if (f.name == name) return &f;
    return nullptr;
  }
};

class Recorder : public ResultSink {
 public:
  void step(int index, const PlannedStep& step) override {
    EXPECT_EQ(index, static_cast<int>(steps.size()));
    steps.push_back(step.domain);
  }
  void frame(int step, const PlannedFrame& frame, std::vector<NodalField>&& nodal,
             std::vector<PointField>&& points) override {
    EXPECT_EQ(step, static_cast<int>(steps.size()) - 1);
    frames.push_back({step, frame, std::move(nodal), std::move(points)});
  }
  void history(int step, const std::vector<HistoryRegionData>& regions) override {
    EXPECT_EQ(step, static_cast<int>(histories.size()));
    histories.push_back(regions);
  }

  std::vector<odb_Enum::odb_DomainEnum> steps;
  std::vector<RecordedFrame> frames;
  std::vector<std::vector<HistoryRegionData>> histories;

  std::vector<double> frameValues(int step) const {
    std::vector<double> v;
    for (const auto& f : frames)
      if (f.step == step) v.push_back(f.frame.frameValue);
    return v;
  }
  const HistoryRegionData* region(int step, const std::string& name) const {
    for (const auto& r : histories.at(step))
      if (r.name == name) return &r;
    return nullptr;
  }
};

struct Imported {
  Deck deck;
  DatFile prints;
  FrdFile results;
  Recorder recorder;
  Warnings warnings;
};

void importFixture(const std::string& name, Imported& out) {
  out.deck = parseDeck(exampleFile(name + ".inp"), out.warnings);
  out.prints = readDat(dataFile(name + ".dat"), out.warnings);
  out.results = readFrdFile(dataFile(name + ".frd"), out.warnings);
  ResultImport import(out.deck, out.prints, dataFile(name + ".frd"), out.recorder, out.warnings);
  import.nodes(std::vector<FrdNode>(out.results.nodes));
  import.elements(std::vector<FrdElement>(out.results.elements));
  import.elementsEnd();
  for (const FrdBlock& b : out.results.blocks) import.block(FrdBlock(b));
  import.finish();
  EXPECT_EQ(import.tablesPassedOver(), 0u);
}

TEST(ResultsImport, CantileverFramesFieldsAndHistory) {
  Imported in;
  importFixture("beam_steps", in);
  Recorder& r = in.recorder;
  EXPECT_THAT(r.steps, ElementsAre(odb_Enum::TIME, odb_Enum::TIME, odb_Enum::TIME));
  EXPECT_THAT(r.frameValues(0), ElementsAre(0.25, 0.5, 0.75, 1.0));
  std::vector<double> second = r.frameValues(1), third = r.frameValues(2);
  ASSERT_EQ(second.size(), 2u);
  EXPECT_NEAR(second[0], 0.5, 1e-9);
  ASSERT_EQ(third.size(), 4u);
  EXPECT_NEAR(third[0], 1e-4, 1e-9);
  EXPECT_NEAR(third[3], 4e-4, 1e-9);
  EXPECT_EQ(r.frames[1].frame.description, "Increment 2: Step Time = 0.5");

  const RecordedFrame& first = r.frames[0];
  std::vector<std::string> names;
  for (const auto& f : first.nodal) names.push_back(f.part.name);
  EXPECT_THAT(names, ElementsAre("U", "S", "E", "RF", "ENER", "ERROR"));

  // Stress components in the database's order: S13 is the solver's SZX, S23 its SYZ.
  const FrdBlock& stress = in.results.blocks[1];
  const NodalField& s = *first.nodalField("S");
  EXPECT_THAT(s.part.labels, ElementsAre("S11", "S22", "S33", "S12", "S13", "S23"));
  EXPECT_EQ(s.values[7 * 6 + 4], stress.values[7 * 6 + 5]);
  EXPECT_EQ(s.values[7 * 6 + 5], stress.values[7 * 6 + 4]);
  EXPECT_EQ(s.values[7 * 6 + 3], stress.values[7 * 6 + 3]);

  // *EL PRINT: stresses at the eight points of the four root elements.
  const PointField& ip = *first.pointField("S");
  ASSERT_EQ(ip.elements.size(), 32u);
  EXPECT_EQ(ip.elements[8], 11);
  EXPECT_EQ(ip.integrationPoints[9], 2);
  EXPECT_EQ(ip.sectionPoints[9], 0);
  EXPECT_FLOAT_EQ(ip.values[0], static_cast<float>(in.prints.blocks[2].values[0]));
  EXPECT_TRUE(ip.imaginary.empty());

  // *NODE PRINT: one region per tip node; the total over FIX as the set's region.
  ASSERT_EQ(r.histories.size(), 3u);
  const HistoryRegionData* tip = r.region(0, "Node PART-1-1.99");
  ASSERT_NE(tip, nullptr);
  EXPECT_EQ(tip->position, odb_Enum::NODAL);
  EXPECT_EQ(tip->node, 99);
  const HistoryOutputData& u3 = tip->outputs.at("U3");
  EXPECT_THAT(u3.frameValues, ElementsAre(0.25, 0.5, 0.75, 1.0));
  EXPECT_FLOAT_EQ(u3.values[3], static_cast<float>(in.prints.blocks[9].values[8 * 3 + 2]));
  const HistoryRegionData* fix = r.region(0, "Node set FIX");
  ASSERT_NE(fix, nullptr);
  EXPECT_EQ(fix->position, odb_Enum::WHOLE_REGION);
  EXPECT_NEAR(fix->outputs.at("RF3").values[3], 90.0, 1e-3);
  EXPECT_EQ(r.region(2, "Node PART-1-1.99")->outputs.at("U1").values.size(), 4u);
}

TEST(ResultsImport, ModesAndComplexSteadyStatePoints) {
  Imported in;
  importFixture("strip_modes", in);
  Recorder& r = in.recorder;
  EXPECT_THAT(r.steps, ElementsAre(odb_Enum::FREQUENCY, odb_Enum::FREQUENCY));
  std::vector<double> modes = r.frameValues(0);
  ASSERT_EQ(modes.size(), 6u);
  for (size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(r.frames[i].frame.mode, static_cast<int>(i + 1));
    EXPECT_NEAR(modes[i], in.prints.eigenvalues[i].cyclesPerTime, 1e-4 * modes[i]);
    // Each mode carries its printed stresses.
    ASSERT_NE(r.frames[i].pointField("S"), nullptr);
    EXPECT_EQ(r.frames[i].pointField("S")->elements.size(), 8u);
  }
  EXPECT_EQ(r.frames[0].frame.description.substr(0, 19), "Mode 1: Frequency =");
  std::vector<double> points = r.frameValues(1);
  ASSERT_GE(points.size(), 4u);
  EXPECT_DOUBLE_EQ(points.front(), 10.0);
  EXPECT_DOUBLE_EQ(points.back(), 400.0);
  for (const RecordedFrame& f : r.frames) {
    if (f.step != 1) continue;
    const NodalField* u = f.nodalField("U");
    ASSERT_NE(u, nullptr);
    EXPECT_EQ(u->imaginary.size(), u->values.size());
    const PointField* s = f.pointField("S");
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->imaginary.size(), s->values.size());
  }
  const HistoryRegionData* tip = r.region(1, "Node PART-1-1.34");
  ASSERT_NE(tip, nullptr);
  const HistoryOutputData& u3 = tip->outputs.at("U3");
  EXPECT_EQ(u3.values.size(), points.size());
  EXPECT_EQ(u3.imaginary.size(), points.size());
  EXPECT_TRUE(r.histories[0].empty());
}

TEST(ResultsImport, ShellPointsCarryLayerSectionPoints) {
  Imported in;
  importFixture("plate_composite", in);
  Recorder& r = in.recorder;
  ASSERT_EQ(r.frames.size(), 2u);
  const NodalField& u = *r.frames[1].nodalField("U");
  // The deck's nodes (the solver wrote them with OUTPUT=2D), and the expanded composite
  // layers' nodes apart.
  EXPECT_EQ(u.nodes.size(), in.deck.nodes.size());
  EXPECT_EQ(u.expandedNodes.size(), 465u);
  EXPECT_EQ(in.warnings.count("frd-nodes"), 0);
  const PointField& s = *r.frames[1].pointField("S");
  ASSERT_EQ(s.elements.size(), 96u);
  // Element 6: points 1-4 bottom of layer 1, 5-8 its top, ... 21-24 the top of layer 3.
  EXPECT_THAT(std::vector<int32_t>(s.sectionPoints.begin(), s.sectionPoints.begin() + 24),
              ElementsAre(1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 6, 6, 6, 6));
  EXPECT_EQ(s.integrationPoints[23], 4);
  EXPECT_EQ(s.integrationPoints[4], 1);
  const HistoryRegionData* centre = r.region(0, "Node PART-1-1.41");
  ASSERT_NE(centre, nullptr);
  EXPECT_EQ(centre->outputs.at("U3").values.size(), 2u);
}

TEST(ResultsImport, ContactFieldsAndContactHistory) {
  Imported in;
  importFixture("punch_contact", in);
  Recorder& r = in.recorder;
  ASSERT_EQ(r.frames.size(), 3u);
  std::vector<std::string> names;
  for (const auto& f : r.frames[2].nodal) names.push_back(f.part.name);
  EXPECT_THAT(names, ElementsAre("U", "S", "COPEN", "CSLIP1", "CSLIP2", "CPRESS", "CSHEAR1",
                                 "CSHEAR2", "ERROR"));
  const HistoryRegionData* face = r.region(0, "Element PART-1-1.101 Face 1");
  ASSERT_NE(face, nullptr);
  EXPECT_EQ(face->position, odb_Enum::ELEMENT_FACE);
  const HistoryOutputData& open = face->outputs.at("COPEN");
  const HistoryOutputData& press = face->outputs.at("CPRESS");
  ASSERT_EQ(open.values.size(), 3u);
  // The face means keep the deck's linear pressure-overclosure law.
  EXPECT_NEAR(press.values[2], -1e5 * open.values[2], 1e-4 * std::fabs(press.values[2]));
  EXPECT_NE(r.region(0, "Node set PTOP"), nullptr);
}

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

// A dome pressed onto a block: the contact zone grows from 32 to 128 printed points. Every
// contact series follows one slave node or one slave face through all four increments;
// the expected values are the solver's own (.frd rows of nodes 101 and 106; .dat rows of
// the faces).
TEST(ResultsImport, ContactHistoryFollowsNodesAndFacesAsTheZoneGrows) {
  Imported in;
  importFixture("dome_contact", in);
  Recorder& r = in.recorder;
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
  EXPECT_EQ(in.warnings.count("dat-line"), 0);
}

}  // namespace
}  // namespace odbs::ccx
