// The bulk paths of the deck's *NODE and *ELEMENT cards: whole pieces of data lines parsed
// by the same field readers as the fast path of the line-by-line code (inp_mesh.cpp),
// stopping at the first line that code would treat otherwise.
#include <algorithm>

#include "tools/ccx/inp_builder.h"
#include "tools/ccx/inp_fields.h"

namespace odbs::ccx {

namespace {

// Whether lines holds at least least bytes before its first keyword line (a line starting
// with '*' and not "**"; one after blanks is not looked for: the bulk path stops there).
bool dataAhead(std::string_view lines, size_t least) {
  if (lines.size() < least) return false;
  for (size_t at = 0; (at = lines.find('*', at)) < least; ++at) {
    const bool lineStart = at == 0 || lines[at - 1] == '\n';
    if (lineStart && (at + 1 == lines.size() || lines[at + 1] != '*')) return false;
    if (lineStart) ++at;  // past the comment's second '*'
  }
  return true;
}

int commas(std::string_view line) {
  return static_cast<int>(std::count(line.begin(), line.end(), ','));
}

}  // namespace

void DeckBuilder::ElementStarts::first(std::string_view line) {
  ++elements_;
  const int n = commas(line);
  if (firstCommas_ >= 0 && n != firstCommas_) mixed_ = true;
  firstCommas_ = n;
}

void DeckBuilder::ElementStarts::later(std::string_view line) {
  laterLines_ = true;
  if (commas(line) == firstCommas_) mixed_ = true;
}

bool DeckBuilder::ElementStarts::operator()(std::string_view line) const {
  return !laterLines_ || commas(line) == firstCommas_;
}

int64_t DeckBuilder::readNodesInBulk(SourceReader& in, LabelSet* set) {
  const int64_t from = in.offset();
  // Each node stands on one line: a piece may start at any.
  nodeBulk_.run(
      in, runner_, [](std::string_view) { return true; }, parseNodeLines,
      [&](std::vector<Node>& out) {
        deck_.nodes.insert(deck_.nodes.end(), out.begin(), out.end());
        if (set) {
          for (const Node& node : out) set->labels.push_back(node.label);
        }
      });
  return in.offset() - from;
}

int64_t DeckBuilder::readElementsInBulk(SourceReader& in, const ElementStarts& starts, size_t count,
                                        bool network, int32_t typeNumber, LabelSet* set) {
  const int64_t from = in.offset();
  elementBulk_.run(
      in, runner_, [&starts](std::string_view line) { return starts(line); },
      [&](std::string_view piece, ElementLines& out) {
        return parseElementLines(piece, count, network, out);
      },
      [&](ElementLines& out) {
        for (size_t i = 0; i < out.labels.size(); ++i) {
          deck_.elements.add(out.labels[i], typeNumber, out.nodes.data() + i * count, count);
        }
        if (set) set->labels.insert(set->labels.end(), out.labels.begin(), out.labels.end());
      });
  return in.offset() - from;
}

SourceReader* DeckBuilder::BulkTurns::sourceAhead(CardReader& reader) {
  SourceReader* in = reader.dataSource();
  if (in && !dataAhead(in->bufferedLines(), kBulkLeast)) {
    misses_ = kBulkMisses;  // the card ends soon: read line by line
    return nullptr;
  }
  return in;
}

PieceParsed DeckBuilder::parseNodeLines(std::string_view text, std::vector<Node>& out) {
  PieceParsed done;
  LineCursor lines(text);
  std::string_view line;
  while (lines.next(line)) {
    Node node;
    if (readNodeLine(line, node)) {
      out.push_back(node);
    } else if (!isPassedOver(line)) {
      return done;
    }
    done = lines.parsed(text);
  }
  done.whole = true;
  return done;
}

PieceParsed DeckBuilder::parseElementLines(std::string_view text, size_t count, bool zeroAllowed,
                                           ElementLines& out) {
  PieceParsed done;
  LineCursor lines(text);
  std::string_view line;
  bool open = false;  // an element's first line was read, not yet all its node labels
  int32_t label = 0;
  size_t start = 0;  // where the open element's node labels start in out.nodes
  while (lines.next(line)) {
    bool endsWithComma = false;
    if (!open) {
      start = out.nodes.size();
      open = readElementLine(line, true, count, zeroAllowed, &label, out.nodes, &endsWithComma);
      if (!open && !isPassedOver(line)) return done;
    } else if (!readElementLine(line, false, SIZE_MAX, zeroAllowed, nullptr, out.nodes,
                                &endsWithComma) &&
               !isPassedOver(line)) {
      out.nodes.resize(start);
      return done;
    }
    // The node labels go on in the next lines until the type's count is reached; more on
    // the last of them are for the general code's message.
    if (open && out.nodes.size() - start >= count) {
      if (out.nodes.size() - start > count) {
        out.nodes.resize(start);
        return done;
      }
      out.labels.push_back(label);
      open = false;
    }
    if (!open) done = lines.parsed(text);
  }
  // A piece that ends inside an element (cut at a line that only looked like a first one)
  // is not whole: the element is left to the line-by-line code.
  if (open) {
    out.nodes.resize(start);
  } else {
    done.whole = true;
  }
  return done;
}

}  // namespace odbs::ccx
