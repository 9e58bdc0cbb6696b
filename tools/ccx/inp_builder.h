// Internal to the deck parser: the state that turns a stream of cards into a Deck. The
// mesh keywords live in inp_mesh.cpp (the bulk paths of their large cards in inp_bulk.cpp),
// material and section keywords in inp_properties.cpp, steps and the dispatch in
// inp_parser.cpp.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "platform/piece_runner.h"
#include "tools/ccx/inp_cards.h"
#include "tools/ccx/inp_model.h"
#include "tools/ccx/line_pieces.h"
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

  // The bulk paths of the *NODE and *ELEMENT data lines (inp_bulk.cpp): parsers of whole
  // pieces of lines for PieceParse, which read the lines that the fast path of readNodes and
  // readElements reads (readNodeLine, readElementLine) and pass over comment and blank lines,
  // and stop at any other line: the line-by-line code reads that one, with its messages.
  struct ElementLines {  // elements of one type
    std::vector<int32_t> labels;
    std::vector<int32_t> nodes;  // count per element, in turn
    void clear() {
      labels.clear();
      nodes.clear();
    }
  };
  static PieceParsed parseNodeLines(std::string_view text, std::vector<Node>& out);
  // count: the node labels of the type (> 0), on the element's first line and the lines
  // after it. text must begin at an element's first line (or a line passed over).
  static PieceParsed parseElementLines(std::string_view text, size_t count, bool zeroAllowed,
                                       ElementLines& out);
  // Where a mesh card tries its bulk path (before reading each line): the reader to run it
  // on, or null. Not on a card's first kBulkAfter lines, so that a short card is read as
  // before (a run parses all the lines that the read buffer holds, most of them the next
  // cards' when the card is short), and no more after kBulkMisses misses: runs that stopped
  // within kBulkMissBytes of where they began, and lines of those first ones that the fast
  // readers left to the general code. A card whose lines keep stopping the bulk path (a
  // rare form on many lines, a layout of elements over several lines that changes) is read
  // line by line.
  class BulkTurns {
   public:
    static constexpr int kBulkAfter = 512;
    static constexpr int kBulkMisses = 3;
    static constexpr int64_t kBulkMissBytes = int64_t(128) << 10;
    SourceReader* source(CardReader& reader) {
      if (lines_ < kBulkAfter) {
        ++lines_;
        return nullptr;
      }
      return misses_ < kBulkMisses ? reader.dataSource() : nullptr;
    }
    // A run on source() passed over bytes.
    void ran(int64_t bytes) {
      if (bytes < kBulkMissBytes) ++misses_;
    }
    // The line just read went past the fast readers.
    void offPath() {
      if (lines_ < kBulkAfter) ++misses_;
    }

   private:
    int lines_ = 0;
    int misses_ = 0;
  };

  Deck& deck_;
  CardReader& reader_;
  Warnings& warnings_;
  std::unordered_map<std::string, size_t> nodeSetIndex_, elementSetIndex_;
  int currentMaterial_ = -1;
  int currentStep_ = -1;
  bool stepHasProcedure_ = false;
  int64_t generated_ = 0;         // labels made by GENERATE so far
  platform::PieceRunner runner_;  // for the bulk paths
};

}  // namespace odbs::ccx
