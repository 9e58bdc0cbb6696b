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
  // An element's first line the general way, which readElementLine left to it (its message
  // for a bad field, the warning for more node labels than count): the element's label, its
  // node labels appended to nodes; whether the line ends with a comma. line: for the fields.
  bool readFirstElementLine(std::string_view text, const std::string& type, int count, bool network,
                            int32_t* element, std::vector<int32_t>& nodes, DataLine& line);
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
  // on, or null. A run parses all the lines that the read buffer holds, past the card's end
  // too, so it pays only for a card of many lines: it is not tried on a card's first
  // kBulkAfter lines, nor where the read buffer shows a keyword line within kBulkLeast bytes
  // (the card ends there: read line by line to its end), nor after kBulkMisses misses: runs
  // that stopped within kBulkLeast bytes of where they began, and lines of the first ones
  // that the fast readers left to the general code. A card whose lines keep stopping the
  // bulk path (a rare form on many lines, a layout of elements over several lines that
  // changes) is read line by line.
  class BulkTurns {
   public:
    static constexpr int kBulkAfter = 512;
    static constexpr int kBulkMisses = 3;
    static constexpr size_t kBulkLeast = size_t(128) << 10;
    SourceReader* source(CardReader& reader) {
      if (lines_ < kBulkAfter) {
        ++lines_;
        return nullptr;
      }
      return misses_ < kBulkMisses ? sourceAhead(reader) : nullptr;
    }
    // A run on source() passed over bytes.
    void ran(int64_t bytes) {
      if (bytes < static_cast<int64_t>(kBulkLeast)) ++misses_;
    }
    // The line just read went past the fast readers.
    void offPath() {
      if (lines_ < kBulkAfter) ++misses_;
    }

   private:
    // source() past the first lines: the reader when the card goes on far enough.
    SourceReader* sourceAhead(CardReader& reader);
    int lines_ = 0;
    int misses_ = 0;
  };

  // Where a piece of an *ELEMENT card's bulk path may start: at an element's first line.
  // Learnt from the card's first elements: where each element stands on one line, at any
  // line; where elements go on over several lines, a first line is told by its count of
  // commas, which the first lines read so far share and none of their later lines has. A
  // piece cut elsewhere all the same (a card whose layout changes) follows one that ends
  // inside an element, which is not whole: the bulk path stops there.
  class ElementStarts {
   public:
    // Whether the lines of the card's first kLearn elements are still to be given.
    static constexpr int kLearn = 64;
    bool learning() const { return elements_ < kLearn; }
    // Those lines: an element's first line, and its later lines. (Out of line: the
    // line-by-line loop that calls them stays small enough for its field readers to be
    // inlined.)
    void first(std::string_view line);
    void later(std::string_view line);
    // Whether a first line can be told from the others.
    bool known() const { return !laterLines_ || !mixed_; }
    bool operator()(std::string_view line) const;

   private:
    int elements_ = 0;
    int firstCommas_ = -1;
    bool laterLines_ = false;
    bool mixed_ = false;
  };

  // A run of the bulk path on in over a *NODE card's lines, and over an *ELEMENT card's
  // (count node labels per element, of type typeNumber): the nodes or elements and their
  // set's members (set, when not null) stored; returns the bytes passed over. Kept out of
  // the line-by-line loops, which stay as small as they were.
  int64_t readNodesInBulk(SourceReader& in, LabelSet* set);
  int64_t readElementsInBulk(SourceReader& in, const ElementStarts& starts, size_t count,
                             bool network, int32_t typeNumber, LabelSet* set);

  Deck& deck_;
  CardReader& reader_;
  Warnings& warnings_;
  std::unordered_map<std::string, size_t> nodeSetIndex_, elementSetIndex_;
  int currentMaterial_ = -1;
  int currentStep_ = -1;
  bool stepHasProcedure_ = false;
  int64_t generated_ = 0;  // labels made by GENERATE so far
  // The bulk paths' runner and their arrays, kept from card to card.
  platform::PieceRunner runner_;
  PieceParse<std::vector<Node>> nodeBulk_;
  PieceParse<ElementLines> elementBulk_;
};

}  // namespace odbs::ccx
