// The binary result file reader on the cantilever: its mesh against the deck, its blocks and
// frames. The values of every fixture, binary and text, are compared with the solver's
// prints on the imported databases (import_results_test.cpp).
#include "tools/ccx/frd_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ccx/test_files.h"
#include "tools/ccx/inp_parser.h"

namespace odbs::ccx {
namespace {

using test::dataFile;
using test::exampleFile;
using ::testing::ElementsAre;

FrdFile loadFrd(const std::string& name) {
  Warnings warnings;
  FrdFile file = readFrdFile(dataFile(name), warnings);
  EXPECT_TRUE(warnings.texts().empty()) << warnings.texts()[0];
  return file;
}

TEST(FrdParser, BinaryCantileverMeshEqualsDeck) {
  FrdFile frd = loadFrd("beam_steps.frd");
  Warnings warnings;
  Deck deck = parseDeck(exampleFile("beam_steps.inp"), warnings);
  EXPECT_EQ(frd.header.title, deck.title.substr(0, 66));
  EXPECT_EQ(frd.header.materials.at(1), "STEEL");
  EXPECT_EQ(frd.header.user.at("PGM"), "CalculiX");
  ASSERT_EQ(frd.nodes.size(), deck.nodes.size());
  for (size_t i = 0; i < frd.nodes.size(); ++i) {
    EXPECT_EQ(frd.nodes[i].label, deck.nodes[i].label);
    EXPECT_DOUBLE_EQ(frd.nodes[i].x, deck.nodes[i].x);
    EXPECT_DOUBLE_EQ(frd.nodes[i].z, deck.nodes[i].z);
  }
  ASSERT_EQ(frd.elements.size(), deck.elements.size());
  for (size_t i = 0; i < frd.elements.size(); ++i) {
    EXPECT_EQ(frd.elements[i].typeCode, 1);
    EXPECT_EQ(frd.elements[i].nodes, deck.elements[i].nodes);
  }
}

TEST(FrdParser, BinaryCantileverIncrementsOfThreeSteps) {
  FrdFile frd = loadFrd("beam_steps.frd");
  ASSERT_EQ(frd.blocks.size(), 60u);
  std::vector<std::string> names;
  for (int i = 0; i < 6; ++i) names.push_back(frd.blocks[i].name);
  EXPECT_THAT(names, ElementsAre("DISP", "STRESS", "TOSTRAIN", "FORC", "ENER", "ERROR"));
  std::vector<std::tuple<int, int, double>> frames;
  for (size_t i = 0; i < frd.blocks.size(); i += 6) {
    frames.emplace_back(frd.blocks[i].step, frd.blocks[i].increment, frd.blocks[i].value);
    EXPECT_TRUE(frd.blocks[i].binary);
  }
  using F = std::tuple<int, int, double>;
  EXPECT_THAT(frames, ElementsAre(F{1, 1, 0.25}, F{1, 2, 0.5}, F{1, 3, 0.75}, F{1, 4, 1.0},
                                  F{2, 1, 1.5}, F{2, 2, 2.0}, F{3, 1, 2.0001}, F{3, 2, 2.0002},
                                  F{3, 3, 2.0003}, F{3, 4, 2.0004}));
  const FrdBlock& disp = frd.blocks[0];
  EXPECT_EQ(disp.components.size(), 4u);
  EXPECT_FALSE(disp.components[3].stored);  // the magnitude "ALL" is not in the file
  EXPECT_THAT(disp.storedNames(), ElementsAre("D1", "D2", "D3"));
  EXPECT_EQ(disp.nodes.size(), 99u);
  EXPECT_THAT(frd.blocks[1].storedNames(), ElementsAre("SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"));
}

}  // namespace
}  // namespace odbs::ccx
