// The deck parser on the example decks (against what the decks define) and on small decks
// for the keywords the examples do not use.
#include "tools/ccx/inp_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "tests/ccx/test_files.h"

namespace odbs::ccx {
namespace {

using test::exampleFile;
using ::testing::ElementsAre;

Deck parseExample(const std::string& name, Warnings* warnings = nullptr) {
  Warnings local;
  Deck deck = parseDeck(exampleFile(name), warnings ? *warnings : local);
  checkDeck(deck, warnings ? *warnings : local);
  return deck;
}

TEST(InpParser, CantileverMeshSetsAndSurfacesThroughInclude) {
  Deck deck = parseExample("beam_steps.inp");
  EXPECT_EQ(deck.title, "Cantilever beam: tip load, then pressure, then a short dynamic step");
  ASSERT_EQ(deck.nodes.size(), 99u);
  EXPECT_DOUBLE_EQ(deck.nodes[10].x, 100.0);  // node 11
  ASSERT_EQ(deck.elements.size(), 40u);
  EXPECT_THAT(deck.elements[0].nodes, ElementsAre(1, 2, 13, 12, 34, 35, 46, 45));

  // GENERATE with a stride, and sets made by *NODE, NSET= and *ELEMENT, ELSET=.
  EXPECT_THAT(deck.nodeSet("FIX")->labels, ElementsAre(1, 12, 23, 34, 45, 56, 67, 78, 89));
  EXPECT_THAT(deck.elementSet("ROOT")->labels, ElementsAre(1, 11, 21, 31));
  EXPECT_EQ(deck.elementSet("BEAM")->labels.size(), 40u);
  EXPECT_EQ(deck.elementSet("BEAM")->where.file, exampleFile("beam_steps_mesh.inp"));

  ASSERT_EQ(deck.surfaces.size(), 2u);
  ASSERT_EQ(deck.surfaces[0].faces.size(), 20u);
  EXPECT_EQ(deck.surfaces[0].faces[0].element, 21);
  EXPECT_EQ(deck.surfaces[0].faces[0].face, "S2");
  EXPECT_TRUE(deck.surfaces[1].nodeBased);
  EXPECT_EQ(deck.surfaces[1].nodes, deck.nodeSet("TIP")->labels);
}

TEST(InpParser, CantileverMaterialSectionAndSteps) {
  Deck deck = parseExample("beam_steps.inp");
  const Material& steel = *deck.material("STEEL");
  ASSERT_TRUE(steel.density && steel.elastic);
  EXPECT_THAT(steel.density->rows, ElementsAre(ElementsAre(7.85e-9)));
  EXPECT_THAT(steel.elastic->rows, ElementsAre(ElementsAre(210000.0, 0.3)));
  ASSERT_EQ(deck.sections.size(), 1u);
  EXPECT_EQ(deck.sections[0].kind, SectionKind::Solid);
  EXPECT_EQ(deck.sections[0].material, "STEEL");

  ASSERT_EQ(deck.steps.size(), 3u);
  EXPECT_EQ(deck.steps[0].name, "Step-1");
  EXPECT_EQ(deck.steps[0].description, "*STATIC");
  EXPECT_THAT(deck.steps[0].procedureData, ElementsAre(0.25, 1.0));
  EXPECT_TRUE(deck.steps[0].procedureParameters.count("DIRECT"));
  // NLGEOM of the first step holds for the later ones.
  EXPECT_TRUE(deck.steps[0].nlgeom && deck.steps[1].nlgeom && deck.steps[2].nlgeom);
  EXPECT_EQ(deck.steps[2].procedure, "DYNAMIC");
  EXPECT_EQ(deck.steps[2].domain, StepDomain::Time);
  EXPECT_DOUBLE_EQ(deck.steps[2].timePeriod, 4e-4);

  const auto& outputs = deck.steps[0].outputs;
  ASSERT_EQ(outputs.size(), 5u);
  EXPECT_THAT(outputs[0].variables, ElementsAre("U", "RF"));
  EXPECT_EQ(outputs[2].keyword, "NODE PRINT");
  EXPECT_EQ(outputs[2].set, "TIP");
  EXPECT_EQ(outputs[4].keyword, "EL PRINT");
  EXPECT_TRUE(deck.steps[1].outputs.empty());
}

TEST(InpParser, QuadraticBricksFrequencyAndSteadyState) {
  Deck deck = parseExample("strip_modes.inp");
  ASSERT_EQ(deck.elements.size(), 8u);
  // 20 node labels spread over two lines.
  EXPECT_EQ(deck.elements[0].nodes.size(), 20u);
  ASSERT_EQ(deck.steps.size(), 2u);
  EXPECT_EQ(deck.steps[0].domain, StepDomain::Frequency);
  EXPECT_THAT(deck.steps[0].procedureData, ElementsAre(6.0));
  EXPECT_EQ(deck.steps[0].procedureParameters.at("STORAGE"), "YES");
  EXPECT_EQ(deck.steps[1].procedure, "STEADY STATE DYNAMICS");
  EXPECT_EQ(deck.steps[1].domain, StepDomain::Frequency);
  EXPECT_THAT(deck.steps[1].procedureData, ElementsAre(10.0, 400.0, 4.0));
}

TEST(InpParser, CompositeShellLayupAndOrthotropicPly) {
  Deck deck = parseExample("plate_composite.inp");
  ASSERT_EQ(deck.sections.size(), 1u);
  const Section& s = deck.sections[0];
  EXPECT_EQ(s.kind, SectionKind::CompositeShell);
  EXPECT_EQ(s.orientation, "OR1");
  ASSERT_EQ(s.layers.size(), 3u);
  EXPECT_EQ(s.layers[1].material, "PLY");
  EXPECT_EQ(s.layers[1].orientation, "OR2");
  EXPECT_DOUBLE_EQ(s.layers[1].thickness, 0.5);
  EXPECT_DOUBLE_EQ(*s.thickness, 1.5);
  // Nine engineering constants over two lines make one row.
  const MaterialTable& elastic = *deck.material("PLY")->elastic;
  EXPECT_EQ(elastic.type, "ENGINEERING CONSTANTS");
  ASSERT_EQ(elastic.rows.size(), 1u);
  EXPECT_EQ(elastic.rows[0].size(), 9u);
  EXPECT_DOUBLE_EQ(elastic.rows[0][8], 3500.0);
  ASSERT_EQ(deck.orientations.size(), 2u);
  EXPECT_EQ(deck.orientations[1].name, "OR2");
  EXPECT_EQ(deck.orientations[1].values.size(), 6u);
}

TEST(InpParser, ContactPairTwoMaterialsTwoSections) {
  Warnings warnings;
  Deck deck = parseExample("punch_contact.inp", &warnings);
  // The contact definitions that the database cannot hold are named in one warning.
  ASSERT_EQ(warnings.texts().size(), 2u) << warnings.texts()[1];
  EXPECT_NE(warnings.texts()[0].find("punch_contact.inp:121: contact and gap definitions "
                                     "have no place in the database: *SURFACE BEHAVIOR, "
                                     "*SURFACE INTERACTION not imported"),
            std::string::npos)
      << warnings.texts()[0];
  ASSERT_EQ(deck.contactPairs.size(), 1u);
  const ContactPair& pair = deck.contactPairs[0];
  EXPECT_THAT((std::vector<std::string>{pair.slave, pair.master, pair.type}),
              ElementsAre("SPUNCH", "SBLOCK", "SURFACE TO SURFACE"));
  ASSERT_EQ(deck.sections.size(), 2u);
  EXPECT_EQ(deck.sections[1].material, "HARD");
  EXPECT_EQ(deck.steps[0].outputs.back().keyword, "CONTACT PRINT");
  EXPECT_THAT(deck.steps[0].outputs.back().variables, ElementsAre("CDIS", "CSTR"));
}

TEST(InpParser, OtherSectionKindsAndSetsOfSets) {
  test::ScratchDir dir;
  std::string path = dir.write("other.inp", R"(*Heading
  Other sections
*NODE
1, 0, 0, 0
2, 1., 0., 0.
3, 2.
*ELEMENT, TYPE=T3D2, ELSET=BARS
1, 1, 2
*ELEMENT, TYPE=B31, ELSET=BEAMS
2, 2, 3
*ELEMENT, TYPE=MASS, ELSET=POINT
3, 3
*ELEMENT, TYPE=SPRINGA, ELSET=SPR
4, 1, 3
*NSET, NSET=ENDS
1, 3
*NSET, NSET=ALL
ENDS, 2, 1
*ELSET, ELSET=LINES
bars, BEAMS
*MATERIAL, NAME=Alu
*ELASTIC
70000, 0.3
*EXPANSION
2.3e-5
*SOLID SECTION, ELSET=BARS, MATERIAL=ALU
3.5
*BEAM SECTION, ELSET=BEAMS, MATERIAL=ALU, SECTION=RECT
2., 1.
0., 0., 1.
*MASS, ELSET=POINT
0.01
*SPRING, ELSET=SPR
1000.
)");
  Warnings warnings;
  Deck deck = parseDeck(path, warnings);
  checkDeck(deck, warnings);
  EXPECT_TRUE(warnings.texts().empty());
  EXPECT_EQ(deck.title, "Other sections");
  EXPECT_DOUBLE_EQ(deck.nodes[2].x, 2.0);  // "3, 2.": the missing coordinates are 0
  EXPECT_THAT(deck.nodeSet("ALL")->labels, ElementsAre(1, 3, 2));
  EXPECT_THAT(deck.elementSet("LINES")->labels, ElementsAre(1, 2));
  ASSERT_EQ(deck.sections.size(), 4u);
  EXPECT_EQ(deck.sections[0].kind, SectionKind::Truss);
  EXPECT_DOUBLE_EQ(*deck.sections[0].thickness, 3.5);
  EXPECT_EQ(deck.sections[1].kind, SectionKind::Beam);
  EXPECT_EQ(deck.sections[1].parameters.at("SECTION"), "RECT");
  EXPECT_EQ(deck.sections[1].data.size(), 2u);
  EXPECT_EQ(deck.sections[2].kind, SectionKind::Mass);
  EXPECT_EQ(deck.sections[2].material, "");
  EXPECT_EQ(deck.sections[3].kind, SectionKind::Spring);
  EXPECT_EQ(deck.material("ALU")->others.at("EXPANSION").rows[0][0], 2.3e-5);
}

TEST(InpParser, UnknownKeywordsWarnOnceAndKeywordLinesContinue) {
  test::ScratchDir dir;
  std::string path = dir.write("unknown.inp",
                               "** comment\n\n*NODE,\n  NSET=N\n1,0,0,0\n*WIDGET, A=1\n1, 2\n"
                               "*STEP\n*WIDGET\n*static\n*BOUNDARY\n1,1,3\n*END STEP\n"
                               "*STEP, NAME=Second\nPull harder\n*STATIC\n*WIDGET\n*END STEP\r\n");
  Warnings warnings;
  Deck deck = parseDeck(path, warnings);
  EXPECT_THAT(deck.nodeSet("N")->labels, ElementsAre(1));
  ASSERT_EQ(warnings.texts().size(), 2u);
  EXPECT_EQ(warnings.count("keyword:WIDGET"), 3);
  EXPECT_NE(warnings.texts()[0].find("unknown.inp:6"), std::string::npos) << warnings.texts()[0];
  EXPECT_NE(warnings.texts()[1].find("unknown.inp:11: loads, boundary conditions and initial "
                                     "conditions have no place in the database: *BOUNDARY not "
                                     "imported"),
            std::string::npos)
      << warnings.texts()[1];
  // One line per kind, with the count.
  std::vector<std::string> lines;
  Warnings printed([&](const std::string& t) { lines.push_back(t); });
  parseDeck(path, printed);
  printed.flush();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_NE(lines[0].find("[3 times in all; the first is shown]"), std::string::npos) << lines[0];
  ASSERT_EQ(deck.steps.size(), 2u);
  EXPECT_EQ(deck.steps[1].name, "Second");
  EXPECT_EQ(deck.steps[1].description, "Pull harder");
}

// A step without a procedure goes on with the one of the step before (the solver accepts
// it so); a name defined twice extends the set.
TEST(InpParser, StepWithoutProcedureAndSetDefinedTwice) {
  test::ScratchDir dir;
  std::string path = dir.write("steps.inp",
                               "*NODE\n1,0,0,0\n2,1,0,0\n*NSET, NSET=A\n1\n*NSET, NSET=A\n2\n"
                               "*STEP\n*DYNAMIC\n0.1, 2.5\n*END STEP\n*STEP\n*CLOAD\n1, 1, 2.\n"
                               "*END STEP\n");
  Warnings warnings;
  Deck deck = parseDeck(path, warnings);
  ASSERT_EQ(deck.steps.size(), 2u);
  EXPECT_EQ(deck.steps[1].procedure, "DYNAMIC");
  EXPECT_DOUBLE_EQ(deck.steps[1].timePeriod, 2.5);
  EXPECT_THAT(deck.nodeSet("A")->labels, ElementsAre(1, 2));
}

// *NODE and *ELEMENT lines in their rarer forms: signs, D exponents, a decimal of more
// digits than a double holds, blank fields, tabs, a zero-padded label, lines ending with a
// comma, an element continued on the next line, and one listing more labels than its type
// has (the solver takes the first ones and passes over the rest).
TEST(InpParser, MeshLinesInTheirRarerForms) {
  test::ScratchDir dir;
  std::string path = dir.write("forms.inp",
                               "*NODE\n"
                               "1, 1.5, -2.25E+03, 0.1\n"
                               "2,\t+3 , 1.0D+01,\n"
                               "00000000003, 0.1000000000000000055511151231257827, , 1e-3\n"
                               "4 ,.5,5.,-0, 7\n"
                               "*ELEMENT, TYPE=C3D4\n"
                               "1, 1, 2,\n"
                               " 3,\t4\n"
                               "2, +4, 3, 2, 1,\n"
                               "3, 1, 2, 3, 4, 9, 10,\n");
  Warnings warnings;
  Deck deck = parseDeck(path, warnings);
  ASSERT_EQ(deck.nodes.size(), 4u);
  const double want[4][3] = {{1.5, -2250, 0.1}, {3, 10, 0}, {0.1, 0, 1e-3}, {0.5, 5, -0.0}};
  for (int i = 0; i < 4; ++i) {
    const Node& n = deck.nodes[i];
    EXPECT_THAT((std::vector<double>{n.x, n.y, n.z}),
                ElementsAre(want[i][0], want[i][1], want[i][2]))
        << "node " << n.label;
  }
  EXPECT_EQ(deck.nodes[2].label, 3);
  EXPECT_TRUE(std::signbit(deck.nodes[3].z));
  ASSERT_EQ(deck.elements.size(), 3u);
  EXPECT_THAT(deck.elements[0].nodes, ElementsAre(1, 2, 3, 4));
  EXPECT_EQ(deck.elements[1].label, 2);
  EXPECT_THAT(deck.elements[1].nodes, ElementsAre(4, 3, 2, 1));
  EXPECT_THAT(deck.elements[2].nodes, ElementsAre(1, 2, 3, 4));
  ASSERT_EQ(warnings.texts().size(), 1u);
  EXPECT_NE(warnings.texts()[0].find("forms.inp:10: element 3 of type C3D4 lists 6 node labels"),
            std::string::npos)
      << warnings.texts()[0];
}

// *NODE and *ELEMENT cards longer than several read buffers, with comment and blank lines,
// a keyword line between two *NODE cards, elements over two lines, and deep in the cards
// two lines in forms that the fast reading leaves to the general one, with LF and with CRLF
// line ends. First a damaged line deep in the cards, and decks that end inside a line
// there: the error names that line.
TEST(InpParser, LargeMeshCardsAcrossReadBuffers) {
  const int kNodes = 40000, kBricks = 20000, kQuads = 8000;
  test::LargeMesh mesh = test::largeMesh(kNodes, kBricks, kQuads);
  test::ScratchDir dir;
  struct Damage {
    const char* what;
    int line;          // the damaged line; the deck ends inside it when cut is given
    std::string text;  // what it holds
    const char* cut;
    const char* lineEnd;
    std::string expected;
    int errorLine = 0;  // when not the damaged line
  };
  const Damage damages[] = {
      {"coordinate", mesh.nodeLine[33333], "33333, 8333.25, x2, 5.5", nullptr, "\r\n",
       "a node coordinate (a finite number), found 'x2'"},
      {"node of a brick", mesh.brickLine[17777],
       "17777, 17777, 17778, -3, 17780, 17781, 17782, 17783, 17784", nullptr, "\n",
       "a node label of element 17777 (a positive integer), found '-3'"},
      {"cut in the nodes", mesh.nodeLine[25001], "", "25001, 62", "\r\n",
       "a line end after this data line (the file ends inside it: cut short?), found '25001, "
       "62'"},
      {"cut in the bricks", mesh.brickLine[18001], "", "18001, 18001, 180", "\n",
       "(the file ends inside it: cut short?), found '18001, 18001, 180'"},
      // The deck ends after the first of a quad's two lines.
      {"cut between a quad's lines", mesh.quadLine[6001] + 1, "", "", "\n",
       "20 node labels for element 106001 of type C3D20, found '15'", mesh.quadLine[6001]},
  };
  for (const Damage& damage : damages) {
    SCOPED_TRACE(damage.what);
    test::LargeMesh damaged = mesh;
    const size_t at = static_cast<size_t>(damage.line - 1);
    if (damage.cut) {
      damaged.lines.resize(at);
    } else {
      damaged.lines[at] = damage.text;
    }
    const std::string path =
        dir.write("damaged.inp", damaged.text(damage.lineEnd) + (damage.cut ? damage.cut : ""));
    Warnings warnings;
    test::expectParseError([&] { parseDeck(path, warnings); },
                           damage.errorLine ? damage.errorLine : damage.line, damage.expected);
  }
  // Node 30001 with an 11-digit label; brick 15000 with two node labels more than it has.
  mesh.lines[mesh.nodeLine[30001] - 1] = "00000030001, 7500.25, -30001., 6.5";
  mesh.lines[mesh.brickLine[15000] - 1] += ", 1, 2";
  // Quads 5001 to 5400 over three lines (2, 16 and 2 node labels): their middle lines look
  // like first lines, which elements of this card have 16 commas on.
  for (int q = 5400; q > 5000; --q) {
    auto first = mesh.lines.begin() + mesh.quadLine[q] - 1;
    std::string middle;
    for (int k = 2; k < 18; ++k) middle += std::to_string(q + k) + ",";
    *first =
        std::to_string(100000 + q) + ", " + std::to_string(q) + ", " + std::to_string(q + 1) + ",";
    first[1] = std::to_string(q + 18) + ", " + std::to_string(q + 19);
    mesh.lines.insert(first + 1, middle);
  }
  for (const char* lineEnd : {"\n", "\r\n"}) {
    SCOPED_TRACE(lineEnd[0] == '\r' ? "CRLF" : "LF");
    Warnings warnings;
    Deck deck = parseDeck(dir.write("large.inp", mesh.text(lineEnd)), warnings);
    ASSERT_EQ(deck.nodes.size(), static_cast<size_t>(kNodes));
    ASSERT_EQ(deck.elements.size(), static_cast<size_t>(kBricks + kQuads));
    // How many nodes and elements differ from what was written.
    int badNodes = 0, badElements = 0;
    for (int n = 1; n <= kNodes; ++n) {
      const Node& node = deck.nodes[n - 1];
      badNodes += node.label != n || node.x != n * 0.25 || node.y != -n || node.z != n % 7 + 0.5;
    }
    for (int e = 1; e <= kBricks + kQuads; ++e) {
      const bool brick = e <= kBricks;
      const int first = brick ? e : e - kBricks;
      std::vector<int32_t> nodes(brick ? 8 : 20);
      std::iota(nodes.begin(), nodes.end(), first);
      const Element& element = deck.elements[e - 1];
      badElements += element.label != (brick ? e : 100000 + first) || !(element.nodes == nodes);
    }
    EXPECT_EQ(badNodes, 0);
    EXPECT_EQ(badElements, 0);
    std::vector<int32_t> all(kNodes), bricks(kBricks);
    for (int n = 1; n <= kNodes; ++n) all[n - 1] = n;
    for (int e = 1; e <= kBricks; ++e) bricks[e - 1] = e;
    EXPECT_EQ(deck.nodeSet("ALL")->labels, all);
    EXPECT_THAT(deck.nodeSet("MID")->labels, ElementsAre(1, 2));
    EXPECT_EQ(deck.elementSet("BRICKS")->labels, bricks);
    ASSERT_EQ(warnings.texts().size(), 1u);
    EXPECT_NE(warnings.texts()[0].find("large.inp:" + std::to_string(mesh.brickLine[15000]) +
                                       ": element 15000 of type C3D8 lists 10 node labels"),
              std::string::npos)
        << warnings.texts()[0];
  }
}

}  // namespace
}  // namespace odbs::ccx
