// The bulk paths of the result file's text blocks: whole pieces of node, element and value
// lines parsed record by record (frd_records.h), stopping before the first record that
// the line-by-line reading has to read (the block's end line, a damaged record).
#include "tools/ccx/frd_reader.h"

namespace odbs::ccx {

PieceParsed FrdReader::parseRows(std::string_view text, int labelWidth, int stored, Rows& out) {
  LineCursor lines(text);
  PieceParsed done;
  std::string_view r, at;
  while (lines.next(r)) {
    const size_t before = out.values.size();
    out.values.resize(before + stored);
    int32_t label = 0;
    if (rowRecord(r, lines, labelWidth, stored, &label, &out.values[before], &at) !=
        RecordFault::none) {
      out.values.resize(before);
      return done;
    }
    out.nodes.push_back(label);
    done = lines.parsed(text);
  }
  done.whole = true;
  return done;
}

PieceParsed FrdReader::parseNodes(std::string_view text, int labelWidth,
                                  std::vector<FrdNode>& out) {
  LineCursor lines(text);
  PieceParsed done;
  std::string_view r;
  while (lines.next(r)) {
    FrdNode node;
    if (nodeRecord(r, labelWidth, &node) != RecordFault::none) return done;
    out.push_back(node);
    done = lines.parsed(text);
  }
  done.whole = true;
  return done;
}

PieceParsed FrdReader::parseElements(std::string_view text, int labelWidth,
                                     std::vector<FrdElement>& out) {
  LineCursor lines(text);
  PieceParsed done;
  std::string_view r, at;
  FrdElement e;
  while (lines.next(r)) {
    if (elementRecord(r, lines, labelWidth, &e, &at) != RecordFault::none) return done;
    out.push_back(std::move(e));
    done = lines.parsed(text);
  }
  done.whole = true;
  return done;
}

}  // namespace odbs::ccx
