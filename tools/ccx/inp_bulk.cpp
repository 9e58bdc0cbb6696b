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
  while (lines.next(line)) {
    int32_t label = 0;
    bool endsWithComma = false;
    const size_t before = out.nodes.size();
    if (readElementLine(line, true, count, zeroAllowed, &label, out.nodes, &endsWithComma)) {
      // An element whose node list goes on in the next line is read line by line.
      if (out.nodes.size() - before != count) {
        out.nodes.resize(before);
        return done;
      }
      out.labels.push_back(label);
    } else if (!isPassedOver(line)) {
      return done;
    }
    ++done.lines;
    done.bytes = static_cast<size_t>(lines.position() - text.data());
  }
  done.whole = true;
  return done;
}

}  // namespace odbs::ccx
