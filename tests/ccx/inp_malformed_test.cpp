// Decks that the parser must refuse, each with the file, the line and what it expected.
#include <gtest/gtest.h>

#include "tests/ccx/test_files.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

struct BadDeck {
  const char* what;
  const char* text;
  int line;              // expected line of the error
  const char* expected;  // text the message must contain
};

const BadDeck kBadDecks[] = {
    {"coordinate", "*NODE\n1, 0, x1, 0\n", 2, "a node coordinate (a finite number), found 'x1'"},
    {"node label", "*NODE\n-4, 0, 0, 0\n", 2, "a node label (a positive integer)"},
    {"element type missing", "*ELEMENT, ELSET=A\n1, 1, 2\n", 1, "parameter TYPE= on *ELEMENT"},
    {"too few nodes at end", "*ELEMENT, TYPE=C3D8\n1, 1, 2, 3, 4, 5, 6,\n", 2,
     "8 node labels for element 1 of type C3D8"},
    {"node list of an element", "*ELEMENT, TYPE=C3D4\n7, 1, 2, a, 4\n", 2,
     "a node label of element 7"},
    {"reversed range", "*NSET, NSET=A, GENERATE\n10, 1\n", 2, "GENERATE range"},
    {"huge range", "*NSET, NSET=A, GENERATE\n1, 2000000000\n", 2,
     "generated set members of at most 64 per byte"},
    {"sets of sets", "*NSET, NSET=A, GENERATE\n1, 4000000\n*NSET, NSET=B\nA, A\n", 4,
     "generated set members"},
    {"unknown member set", "*NSET, NSET=A\n1, B\n", 2, "the name of a defined node set, found 'B'"},
    {"surface face", "*ELEMENT, TYPE=T3D2\n1, 1, 2\n*SURFACE, NAME=S\n1\n", 4, "a face name"},
    {"surface type", "*SURFACE, NAME=S, TYPE=CURVE\n", 1, "TYPE=ELEMENT or TYPE=NODE"},
    {"behaviour outside material", "*ELASTIC\n1, 2\n", 1, "*MATERIAL before *ELASTIC"},
    {"short orthotropic row", "*MATERIAL, NAME=M\n*ELASTIC, TYPE=ORTHO\n1, 2, 3\n", 3,
     "9 values in a row of *ELASTIC"},
    {"section material", "*SOLID SECTION, ELSET=A\n", 1, "parameter MATERIAL= on *SOLID SECTION"},
    {"layer material", "*SHELL SECTION, ELSET=A, COMPOSITE\n0.5\n", 2, "the material of a layer"},
    {"empty layup", "*SHELL SECTION, ELSET=A, COMPOSITE\n*STEP\n", 1, "at least one layer line"},
    {"procedure outside step", "*STATIC\n", 1, "*STEP before *STATIC"},
    {"two procedures", "*STEP\n*STATIC\n*FREQUENCY\n", 3, "one procedure in step 1"},
    {"no procedure", "*STEP\n*END STEP\n", 2, "a procedure (*STATIC, *FREQUENCY, ...) in step 1"},
    {"step not ended", "*STEP\n*STATIC\n*STEP\n", 3, "*END STEP before the next *STEP"},
    {"step without procedure at end", "*STEP\n*CLOAD\n1, 1, 1.\n", 1, "a procedure"},
    {"procedure data", "*STEP\n*STATIC\n0.1, one\n", 3, "a number (a finite number), found 'one'"},
    {"include without file", "*INCLUDE\n", 1, "*INCLUDE with INPUT=<file>"},
    {"missing include", "*INCLUDE, INPUT=nowhere.inp\n", 1, "an included file that can be read"},
    {"include of itself", "*INCLUDE, INPUT=deck.inp\n", 1, "nested *INCLUDE files"},
    // Junk: nothing to import, or not a deck at all.
    {"empty deck", "", 1, "*NODE lines defining the model's nodes, found 'an empty file'"},
    {"comments only", "** one\n**two\n\n", 3,
     "*NODE lines defining the model's nodes, found 'none before the end of the deck'"},
    {"bytes with line ends",
     "\x7f"
     "ELF\x02\x01\x01\n\x01\x02*\x03\n",
     1, "a keyword line (starting with '*') first, found '?ELF?\?\?'"},
    {"NaN coordinate", "*NODE\n1, 0, nan, 0\n", 2,
     "a node coordinate (a finite number), found 'nan'"},
};

TEST(InpMalformed, EachBadDeckNamesFileLineAndExpectation) {
  test::ScratchDir dir;
  for (const BadDeck& bad : kBadDecks) {
    SCOPED_TRACE(bad.what);
    std::string path = dir.write("deck.inp", bad.text);
    Warnings warnings;
    std::string message =
        test::expectParseError([&] { parseDeck(path, warnings); }, bad.line, bad.expected);
    EXPECT_NE(message.find("deck.inp:"), std::string::npos) << message;
  }
}

struct BadReference {
  const char* what;
  const char* text;
  const char* expected;
};

const BadReference kBadReferences[] = {
    {"node twice", "*NODE\n1,0,0,0\n1,1,0,0\n", "node 1 is defined twice"},
    // The first fault in deck order, whichever kind: the nodes of all elements are checked
    // in one pass, the element of the first unknown node found afterwards.
    {"element node before an element twice",
     "*NODE\n1,0,0,0\n2,1,0,0\n*ELEMENT, TYPE=T3D2\n1, 1, 2\n2, 1, 3\n1, 1, 2\n",
     "element 2 uses node 3, which no *NODE line defines"},
    {"element twice before an element node",
     "*NODE\n1,0,0,0\n2,1,0,0\n*ELEMENT, TYPE=T3D2\n1, 1, 2\n1, 1, 2\n2, 1, 3\n",
     "element 1 is defined twice"},
    {"section set", "*NODE\n1,0,0,0\n*MATERIAL, NAME=M\n*SOLID SECTION, ELSET=E, MATERIAL=M\n",
     "names element set E, which is not defined"},
    {"section material",
     "*NODE\n1,0,0,0\n2,1,0,0\n*ELEMENT, TYPE=T3D2, ELSET=E\n1, 1, 2\n"
     "*SOLID SECTION, ELSET=E, MATERIAL=M\n",
     "names material M, which is not defined"},
    {"output set", "*NODE\n1,0,0,0\n*STEP\n*STATIC\n*NODE PRINT, NSET=TIP\nU\n*END STEP\n",
     "names node set TIP, which is not defined"},
};

TEST(InpMalformed, CheckDeckRefusesDanglingReferences) {
  test::ScratchDir dir;
  for (const BadReference& bad : kBadReferences) {
    SCOPED_TRACE(bad.what);
    Warnings warnings;
    Deck deck = parseDeck(dir.write("deck.inp", bad.text), warnings);
    try {
      checkDeck(deck, warnings);
      ADD_FAILURE() << "no error";
    } catch (const InputError& e) {
      EXPECT_NE(std::string(e.what()).find(bad.expected), std::string::npos) << e.what();
    }
  }
}

// What the solver passes over, the import leaves out with one warning per kind: set members
// that no line defines, network elements whose inlet or outlet is node 0.
TEST(InpMalformed, CheckDeckLeavesOutWhatTheSolverPassesOver) {
  test::ScratchDir dir;
  Warnings warnings;
  Deck deck = parseDeck(dir.write("deck.inp",
                                  "*NODE\n1,0,0,0\n2,1,0,0\n*NSET, NSET=A\n1, 5, 2, 7\n"
                                  "*NSET, NSET=B\n9\n*ELEMENT, TYPE=D, ELSET=PIPE\n1, 0, 1, 2\n"
                                  "2, 1, 2, 0\n3, 1, 2, 1\n*ELSET, ELSET=PIPE\n4\n"),
                        warnings);
  checkDeck(deck, warnings);
  ASSERT_EQ(deck.elements.size(), 1u);
  EXPECT_EQ(deck.elements[0].label, 3);
  EXPECT_EQ(deck.elements[0].type, "D");
  EXPECT_EQ(deck.elements[0].nodes, (std::vector<int32_t>{1, 2, 1}));
  EXPECT_EQ(deck.nodeSet("A")->labels, (std::vector<int32_t>{1, 2}));
  EXPECT_TRUE(deck.nodeSet("B")->labels.empty());
  EXPECT_EQ(deck.elementSet("PIPE")->labels, (std::vector<int32_t>{3}));
  EXPECT_EQ(warnings.count("network-ends"), 1);
  ASSERT_EQ(warnings.texts().size(), 3u);
  EXPECT_NE(warnings.texts()[1].find("deck.inp:4: node set A holds node 5, which the deck does "
                                     "not define: 3 such node set members are left out"),
            std::string::npos)
      << warnings.texts()[1];
  EXPECT_NE(warnings.texts()[2].find("3 such element set members"), std::string::npos)
      << warnings.texts()[2];
}

}  // namespace
}  // namespace odbs::ccx
