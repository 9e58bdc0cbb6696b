// The bulk paths of the result file's text blocks: whole pieces of node, element and value
// lines parsed record by record (frd_records.h), stopping before the first record that
// the line-by-line reading has to read (the block's end line, a damaged record).
#include "tools/ccx/frd_reader.h"

namespace odbs::ccx {

namespace {

// Parses the records of text one after the other: record(lines, first line) reads one
// (taking its further lines from lines) and returns false at the first it cannot read. How
// far the whole records reach; whole when text ended with one.
template <typename Record>
PieceParsed eachRecord(std::string_view text, Record record) {
  LineCursor lines(text);
  PieceParsed done;
  std::string_view r;
  while (lines.next(r)) {
    if (!record(lines, r)) return done;
    done = lines.parsed(text);
  }
  done.whole = true;
  return done;
}

}  // namespace

PieceParsed FrdReader::parseRows(std::string_view text, int labelWidth, int stored, Rows& out) {
  return eachRecord(text, [&](LineCursor& lines, std::string_view r) {
    const size_t before = out.values.size();
    out.values.resize(before + stored);
    int32_t label = 0;
    std::string_view at;
    if (rowRecord(r, lines, labelWidth, stored, &label, &out.values[before], &at) !=
        RecordFault::none) {
      out.values.resize(before);
      return false;
    }
    out.nodes.push_back(label);
    return true;
  });
}

PieceParsed FrdReader::parseNodes(std::string_view text, int labelWidth,
                                  std::vector<FrdNode>& out) {
  return eachRecord(text, [&](LineCursor&, std::string_view r) {
    FrdNode node;
    if (nodeRecord(r, labelWidth, &node) != RecordFault::none) return false;
    out.push_back(node);
    return true;
  });
}

PieceParsed FrdReader::parseElements(std::string_view text, int labelWidth,
                                     std::vector<FrdElement>& out) {
  return eachRecord(text, [&](LineCursor& lines, std::string_view r) {
    FrdElement e;
    std::string_view at;
    if (elementRecord(r, lines, labelWidth, &e, &at) != RecordFault::none) return false;
    out.push_back(e);
    return true;
  });
}

}  // namespace odbs::ccx
