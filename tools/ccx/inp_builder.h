// Internal to the deck parser: the state that turns a stream of cards into a Deck. The
// mesh keywords live in inp_mesh.cpp, material and section keywords in inp_properties.cpp,
// steps and the dispatch in inp_parser.cpp.
#pragma once

#include <string>
#include <unordered_map>

#include "tools/ccx/inp_cards.h"
#include "tools/ccx/inp_model.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

class DeckBuilder {
 public:
  DeckBuilder(Deck& deck, CardReader& reader, Warnings& warnings)
      : deck_(deck), reader_(reader), warnings_(warnings) {}

  // Reads the data of one card; returns false when the keyword is not handled here.
  bool meshCard(const Card& card);
  bool propertyCard(const Card& card);
  bool stepCard(const Card& card);
  // Ends the deck: removes repeated set members, names truss sections.
  void finish();

 private:
  void readHeading(const Card& card);
  void readNodes(const Card& card);
  void readElements(const Card& card);
  void readSet(const Card& card, bool nodes);
  void readSurface(const Card& card);
  void readMaterial(const Card& card);
  void readMaterialTable(const Card& card);
  void readOrientation(const Card& card);
  void readSection(const Card& card);
  void readContactPair(const Card& card);
  void readStep(const Card& card);
  void readProcedure(const Card& card);
  void readOutputRequest(const Card& card);
  void endStep(const Card& card);

  // Helpers that throw ParseError at the line concerned.
  std::string required(const Card& card, const std::string& parameter) const;
  // what names the field in the message of the ParseError thrown for a bad one; a plain
  // text, so that the good case builds no string.
  double number(const DataLine& line, size_t field, const char* what) const;
  int32_t label(const DataLine& line, size_t field, const char* what) const;
  // A node label of an element's data line; 0 too where zeroAllowed (network elements).
  int32_t nodeOf(const DataLine& line, size_t field, int32_t element, bool zeroAllowed) const;
  // Numbers of a data line; blank fields count as 0.
  std::vector<double> numbers(const DataLine& line) const;
  // Counts set members made from few characters (GENERATE, set names); throws past a bound.
  void countGenerated(int64_t labels, const DataLine& line);
  LabelSet& setNamed(const std::string& name, bool nodes, const SourceRef& where);
  Step& currentStep(const Card& card);

  Deck& deck_;
  CardReader& reader_;
  Warnings& warnings_;
  std::unordered_map<std::string, size_t> nodeSetIndex_, elementSetIndex_;
  int currentMaterial_ = -1;
  int currentStep_ = -1;
  bool stepHasProcedure_ = false;
  int64_t generated_ = 0;  // labels made by GENERATE so far
};

}  // namespace odbs::ccx
