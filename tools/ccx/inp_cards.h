// Splits a CalculiX deck into cards: a keyword line ("*ELEMENT, TYPE=C3D8, ELSET=A") and the
// data lines under it. Comment lines ("**") and blank lines are dropped, a keyword line that
// ends with a comma continues on the next line, and *INCLUDE, INPUT=<file> is followed into
// the named file (relative to the including file's folder) as if its lines stood there.
//
// Data lines are handed out one at a time so that a card of a million element lines is
// never held in memory as a whole.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tools/ccx/inp_model.h"
#include "tools/ccx/source_reader.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {

// Whether a line is passed over as a comment line ("**" after any blanks) or a blank line.
inline bool isPassedOver(std::string_view line) {
  std::string_view t = trim(line);
  return t.empty() || startsWith(t, "**");
}

struct Card {
  std::string keyword;  // upper case, single blanks: "SOLID SECTION"
  // Parameters by upper-case name; values as written (trimmed), "" for a bare flag.
  std::map<std::string, std::string> parameters;
  SourceRef where;

  bool has(const std::string& name) const { return parameters.count(name) > 0; }
  // The value of a parameter, or fallback when it is absent.
  std::string get(const std::string& name, const std::string& fallback = "") const;
};

// The fields are views into the reader's line buffer: valid until the reader's next
// nextData or nextCard.
struct DataLine {
  std::vector<std::string_view> fields;  // comma-separated fields, trimmed
  SourceRef where;
  bool endsWithComma = false;  // the line's last field was empty ("1, 2,")
};

class CardReader {
 public:
  explicit CardReader(const std::string& path);

  // Moves to the next card, skipping data lines of the current one that were not read.
  // Returns false at the end of the deck.
  bool nextCard(Card& card);
  // The next data line of the current card; false when the next line is a keyword line or
  // the deck ends.
  bool nextData(DataLine& line);
  // The same as the line's text, not split: a view valid until the reader's next call.
  // For the large mesh cards, whose lines are read field by field.
  bool nextDataText(std::string_view& text);
  // Where the last data line handed out stands.
  const SourceRef& dataWhere() const { return dataWhere_; }
  // Makes the DataLine of text, the last line that nextDataText gave.
  void split(std::string_view text, DataLine& line) const;
  // For the bulk readers of the large mesh cards: the reader of the file that the next line
  // of the current card comes from, or null when a keyword line ended the card's data or the
  // deck ended. The lines that a bulk reader passes over through it (SourceReader::
  // skipBuffered) must be data lines of the card, comment lines and blank lines: the card
  // reader reads on after them as if it had read them; dataWhere() keeps naming the last
  // line that nextDataText gave.
  SourceReader* dataSource() {
    return hasPending_ || stack_.empty() ? nullptr : stack_.back().get();
  }

  // Total bytes of the top file, and how far reading has come in it (for progress).
  int64_t topSize() const;
  int64_t topOffset() const;
  // Lines of the top file read so far.
  int64_t topLines() const;

 private:
  // Reads the next line that is neither blank nor a comment, following includes. A data
  // line that its file cuts off (no line end after it) throws ParseError: the deck was cut
  // short, and the line may have lost fields.
  // The line is a view valid until the next read.
  // whereFiles tells which file where names: where.file is set only when a file was
  // entered or left since (files_ changed), not copied for every line.
  bool nextMeaningful(std::string_view& line, SourceRef& where, int64_t& whereFiles);
  void openInclude(const Card& card);

  std::vector<std::unique_ptr<SourceReader>> stack_;
  std::string pending_;                       // a keyword line that ended the previous card's data
  int64_t files_ = 0;                         // files entered and left so far
  SourceRef where_;                           // where the line last read stands
  SourceRef dataWhere_;                       // where the last data line stands
  int64_t whereFiles_ = -1, dataFiles_ = -1;  // files_ when where_, dataWhere_ got their file
  SourceRef pendingWhere_;
  bool hasPending_ = false;
  bool seenCard_ = false;  // a keyword line came
  int64_t stray_ = 0;      // data lines before the first keyword line
  SourceRef strayWhere_;   // and the first of them
  std::string strayText_;

 public:
  // Lines before the first keyword line (passed over), and where the first stands.
  int64_t strayLines() const { return stray_; }
  const SourceRef& firstStrayLine() const { return strayWhere_; }

 private:
  int64_t topSize_ = 0;
  int64_t topLines_ = 0;  // line count of the top file, kept when it is done
};

}  // namespace odbs::ccx
