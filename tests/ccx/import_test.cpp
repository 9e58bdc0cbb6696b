// The importer on every example deck: the database it writes opens, and its model is the
// deck's model. Failed imports leave no file behind.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "odb/odb.h"
#include "tests/ccx/test_files.h"
#include "tools/ccx/importer.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/model_import.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using test::exampleFile;

std::vector<int> asVector(odb_View<int> v) {
  return std::vector<int>(v.begin(), v.end());
}

class ImportTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { odb_initializeAPI(); }

  // Imports an example deck with its fixtures and opens the database.
  odb_Odb& import(const std::string& name, Deck* deckOut) {
    ImportRequest request;
    request.deck = exampleFile(name + ".inp");
    request.results = dataFile(name + ".frd");
    request.prints = dataFile(name + ".dat");
    request.output = dir_.path() + "/" + name + ".odb";
    Warnings warnings;
    ImportSummary summary = importCalculix(request, warnings);
    Warnings again;
    *deckOut = parseDeck(request.deck, again);
    EXPECT_EQ(summary.nodes, static_cast<int64_t>(deckOut->nodes.size()));
    EXPECT_GT(summary.frames, 0);
    return openOdb(request.output);
  }

  test::ScratchDir dir_;
};

TEST_F(ImportTest, EveryExampleDeckOpensWithTheDecksModel) {
  for (const char* name : {"beam_steps", "strip_modes", "plate_composite", "punch_contact",
                           "plate_shell", "frame_beams", "beam_forces", "dome_contact"}) {
    SCOPED_TRACE(name);
    Deck deck;
    odb_Odb& odb = import(name, &deck);
    // Everything of the model that the deck defines is in the database as the deck has it.
    EXPECT_EQ(odb.analysisTitle(), deck.title);
    const odb_Assembly& assembly = odb.rootAssembly();
    // The deck's instance, and the solver's expanded shells and beams when it wrote them.
    EXPECT_EQ(assembly.instances().size(),
              1 + assembly.instances().isMember(kExpandedInstanceName));
    const odb_Instance& part = assembly.instances()[kInstanceName];

    odb_SequenceNode nodes = part.nodes();
    ASSERT_EQ(nodes.size(), static_cast<int>(deck.nodes.size()));
    for (int i = 0; i < nodes.size(); ++i) {
      EXPECT_EQ(nodes[i].label(), deck.nodes[i].label);
      EXPECT_FLOAT_EQ(nodes[i].coordinates()[0], static_cast<float>(deck.nodes[i].x));
      EXPECT_FLOAT_EQ(nodes[i].coordinates()[2], static_cast<float>(deck.nodes[i].z));
    }
    odb_SequenceElement elements = part.elements();
    ASSERT_EQ(elements.size(), static_cast<int>(deck.elements.size()));
    for (int i = 0; i < elements.size(); ++i) {
      EXPECT_EQ(elements[i].label(), deck.elements[i].label);
      EXPECT_EQ(elements[i].type(), deck.elements[i].type);
      EXPECT_EQ(asVector(elements[i].connectivity()), deck.elements[i].nodes);
    }

    for (const LabelSet& set : deck.nodeSets) {
      ASSERT_TRUE(part.nodeSets().isMember(set.name)) << set.name;
      EXPECT_EQ(asVector(part.nodeSets()[set.name].nodes()), set.labels) << set.name;
    }
    for (const LabelSet& set : deck.elementSets) {
      ASSERT_TRUE(part.elementSets().isMember(set.name)) << set.name;
      EXPECT_EQ(asVector(part.elementSets()[set.name].elements()), set.labels) << set.name;
    }
    for (const Surface& surface : deck.surfaces) {
      if (surface.nodeBased) {
        EXPECT_EQ(asVector(part.nodeSets()[surface.name].nodes()), surface.nodes);
        continue;
      }
      const odb_Set& s = part.surfaces()[surface.name];
      ASSERT_EQ(s.elements().size(), static_cast<int>(surface.faces.size()));
      for (size_t i = 0; i < surface.faces.size(); ++i) {
        EXPECT_EQ(s.elements()[i], surface.faces[i].element);
        EXPECT_EQ(s.faces()[i], odb_Enum::FACE1 + (surface.faces[i].face[1] - '1'));
      }
    }

    auto& sections =
        static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API)).sections();
    ASSERT_EQ(sections.size(), static_cast<int>(deck.sections.size()));
    const auto& assignments = part.sectionAssignments();
    ASSERT_EQ(assignments.size(), static_cast<int>(deck.sections.size()));
    for (size_t i = 0; i < deck.sections.size(); ++i) {
      const Section& want = deck.sections[i];
      const odb_Section& got = *sections["Section-" + want.elset];
      EXPECT_EQ(assignments[i].sectionName(), got.name());
      EXPECT_EQ(asVector(assignments[i].region().elements()), deck.elementSet(want.elset)->labels);
      // Every element of the section's set refers to the section's category.
      std::set<int32_t> members(deck.elementSet(want.elset)->labels.begin(),
                                deck.elementSet(want.elset)->labels.end());
      for (int e = 0; e < elements.size(); ++e) {
        if (!members.count(elements[e].label())) continue;
        EXPECT_EQ(elements[e].sectionCategory().name(),
                  std::string(sectionKindName(want.kind)) + " < elset = " + want.elset + " >");
      }
      if (want.kind == SectionKind::Solid) {
        EXPECT_EQ(kseO_HomogeneousSolidSection::cast(got).material(), want.material);
      }
    }

    auto& materials =
        static_cast<kmaO_ApiExtension&>(odb.extendApi(odb_Enum::MATERIAL_API)).materials();
    ASSERT_EQ(materials.size(), static_cast<int>(deck.materials.size()));
    for (const Material& want : deck.materials) {
      const kmaO_Material& got = *materials[want.name];
      ASSERT_EQ(got.elastic() != nullptr, want.elastic.has_value());
      ASSERT_EQ(got.density() != nullptr, want.density.has_value());
      if (want.elastic) {
        EXPECT_FLOAT_EQ(got.elastic()->rows()[0][0], static_cast<float>(want.elastic->rows[0][0]));
      }
      if (want.density) {
        EXPECT_FLOAT_EQ(got.density()->rows()[0][0], static_cast<float>(want.density->rows[0][0]));
      }
    }
    closeOdb(odb);
  }
}

TEST_F(ImportTest, CompositeLayupWithLayerAnglesAndSectionPoints) {
  Deck deck;
  odb_Odb& odb = import("plate_composite", &deck);
  auto& ext = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  const auto& composite = kseO_CompositeShellSection::cast(*ext.sections()["Section-PLATE"]);
  kseO_SequenceSectionLayer layers = composite.layup();
  ASSERT_EQ(layers.size(), 3);
  EXPECT_EQ(layers[0].material(), "PLY");
  EXPECT_FLOAT_EQ(layers[0].thickness(), 0.5f);
  // OR2 turns the ply's 1-direction from x to y: 90 degrees about the plate's normal.
  EXPECT_EQ(layers[1].orientAngle().type(), odb_Union::FLOAT);
  EXPECT_NEAR(layers[1].orientAngle().getFloat(), 90.f, 1e-4);
  EXPECT_NEAR(layers[2].orientAngle().getFloat(), 0.f, 1e-4);
  // *SHELL SECTION, COMPOSITE, OFFSET=0. with three layers of 0.5.
  const odb::SectionPlacement& placed =
      odb.rootAssembly().instances()[kInstanceName].sectionAssignments()[0].placement();
  EXPECT_TRUE(placed.hasOffset && placed.hasThickness);
  EXPECT_EQ(placed.offset1, 0.f);
  EXPECT_EQ(placed.thickness, 1.5f);
  const odb_SectionCategory& category =
      odb.sectionCategories()["composite shell < elset = PLATE >"];
  ASSERT_EQ(category.sectionPoints().size(), 6);
  EXPECT_EQ(category.sectionPoints()[3].number(), 4);
  EXPECT_EQ(category.sectionPoints()[3].description(), "Layer = 2, top");
  closeOdb(odb);
}

TEST(ShellSectionPoint, EightPointsPerLayerBottomThenTop) {
  EXPECT_EQ(shellSectionPoint(4, 3), 1);
  EXPECT_EQ(shellSectionPoint(5, 3), 2);
  EXPECT_EQ(shellSectionPoint(24, 3), 6);
  EXPECT_EQ(shellSectionPoint(25, 3), 0);
  EXPECT_EQ(shellSectionPoint(0, 3), 0);
}

// *CONTACT PAIR and *TIE lines become region pairs in deck order: slave first, a contact
// pair named after its interaction, a tie by its name, a repeated name with "-2".
TEST_F(ImportTest, ContactPairsAndTiesBecomeRegionPairs) {
  std::string deckPath =
      dir_.write("pairs.inp",
                 "*NODE\n1,0,0,0\n*TIE, NAME=glue, POSITION TOLERANCE=0.1\nS1, M1\nS2, M2\n"
                 "*SURFACE INTERACTION, NAME=SI\n*CONTACT PAIR, INTERACTION=SI\nS3, M3\n");
  Warnings warnings;
  Deck deck = parseDeck(deckPath, warnings);
  std::string out = dir_.path() + "/pairs.odb";
  {
    odb::Writer w(out);
    addModel(deck, w, warnings);
    w.close();
  }
  odb_Odb& odb = openOdb(out);
  using Pair = std::tuple<std::string, int32_t, std::string, std::string>;
  std::vector<Pair> pairs;
  for (const odb::RegionPairData& p : odb.regionPairs())
    pairs.emplace_back(p.name, p.kind, p.first, p.second);
  EXPECT_THAT(pairs, ::testing::ElementsAre(Pair{"GLUE", odb::kTie, "S1", "M1"},
                                            Pair{"GLUE-2", odb::kTie, "S2", "M2"},
                                            Pair{"SI", odb::kContactPair, "S3", "M3"}));
  closeOdb(odb);
}

// The deck's refusals are the parser's (inp_malformed_test.cpp): one stands for them here.
TEST_F(ImportTest, FailedImportsWriteNothing) {
  struct Case {
    const char* what;
    ImportRequest request;
    const char* message;
  };
  std::string out = dir_.path() + "/out/x.odb";
  std::filesystem::create_directory(dir_.path() + "/out");
  test::ScratchDir scratch;
  std::string badDeck = scratch.write("bad.inp", "*NODE\n1, 0, 0, 0\n7, 1, 2, three\n");
  std::string whole = test::readWhole(dataFile("beam_steps.frd"));
  std::string truncated = scratch.write("cut.frd", whole.substr(0, whole.size() / 2));
  // The cantilever of section forces with a frequency step in place of its static one: the
  // same mesh, another analysis.
  std::string deck = test::readWhole(exampleFile("beam_forces.inp"));
  deck.replace(deck.find("*STATIC"), 7, "*FREQUENCY\n4");
  std::string modal = scratch.write("modal.inp", deck);
  const Case cases[] = {
      {"bad deck", {badDeck, "", "", out}, "bad.inp:3: expected a node coordinate"},
      {"truncated results", {exampleFile("beam_steps.inp"), truncated, "", out}, "cut.frd"},
      {"results of another deck",
       {exampleFile("plate_composite.inp"), dataFile("beam_steps.frd"), "", out},
       "beam_steps.frd: the result file belongs to another model: 64 of its nodes do not lie "
       "where the deck"},
      {"nodes of another deck",
       {exampleFile("plate_shell.inp"), dataFile("frame_beams.frd"), "", out},
       "the result file belongs to another model"},
      {"elements of another deck",
       {exampleFile("beam_forces.inp"), dataFile("frame_beams.frd"), "", out},
       "the result file belongs to another model: its element 1 does not lie where element 1"},
      {"static results for a frequency step",
       {modal, dataFile("beam_forces.frd"), "", out},
       "result block DISP is not an eigenmode, but step 1 of the deck is a *FREQUENCY step"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    Warnings warnings;
    try {
      importCalculix(c.request, warnings);
      ADD_FAILURE() << "no error";
    } catch (const std::exception& e) {
      EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos) << e.what();
    }
    EXPECT_TRUE(std::filesystem::is_empty(dir_.path() + "/out"));
  }
}

}  // namespace
}  // namespace odbs::ccx
