// The bulk paths of the deck's *NODE and *ELEMENT cards: whole pieces of data lines parsed
// by the same field readers as the fast path of the line-by-line code (inp_mesh.cpp),
// stopping at the first line that code would treat otherwise.
#include "tools/ccx/inp_builder.h"
#include "tools/ccx/inp_fields.h"

namespace odbs::ccx {

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
    ++done.lines;
    done.bytes = static_cast<size_t>(lines.position() - text.data());
  }
  done.whole = true;
  return done;
}

PieceParsed DeckBuilder::parseElementLines(std::string_view text, size_t count, bool zeroAllowed,
                                           ElementLines& out) {
  PieceParsed done;
  LineCursor lines(text);
  std::string_view line;
  int64_t read = 0;
  bool open = false;  // an element's first line was read, not yet all its node labels
  int32_t label = 0;
  size_t start = 0;  // where the open element's node labels start in out.nodes
  while (lines.next(line)) {
    ++read;
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
    if (!open) {
      done.lines = read;
      done.bytes = static_cast<size_t>(lines.position() - text.data());
    }
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
