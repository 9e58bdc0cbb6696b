// The bulk paths of the result file's text blocks: whole pieces of node, element and value
// lines parsed by the same field readers as the line-by-line code (frd_mesh.cpp,
// frd_parser.cpp), stopping at the first line that code would treat otherwise.
#include "tools/ccx/element_types.h"
#include "tools/ccx/frd_reader.h"

namespace odbs::ccx {

namespace {

// The position after the lines given so far, for PieceParsed.
size_t bytesTo(const LineCursor& lines, std::string_view text) {
  return static_cast<size_t>(lines.position() - text.data());
}

}  // namespace

PieceParsed FrdReader::parseRows(std::string_view text, int labelWidth, int stored, Rows& out) {
  PieceParsed done;
  LineCursor lines(text);
  std::string_view r;
  while (lines.next(r)) {
    long long label = 0;
    if (!startsWith(r, " -1") || !labelAt(r, 3, labelWidth, &label)) return done;
    const size_t before = out.values.size();
    int64_t rowLines = 1;
    // Six values per line; more go on in -2 lines.
    for (int got = 0; got < stored;) {
      if (got > 0) {
        if (!lines.next(r) || !startsWith(r, " -2")) {
          out.values.resize(before);
          return done;
        }
        ++rowLines;
      }
      float line[6];
      const int n = std::min(6, stored - got);
      for (int i = 0; i < n; ++i) {
        if (!valueAt(r, 3 + labelWidth + kFrdValueWidth * i, &line[i])) {
          out.values.resize(before);
          return done;
        }
      }
      out.values.insert(out.values.end(), line, line + n);
      got += n;
    }
    out.nodes.push_back(static_cast<int32_t>(label));
    done.lines += rowLines;
    done.bytes = bytesTo(lines, text);
  }
  done.whole = true;
  return done;
}

PieceParsed FrdReader::parseNodes(std::string_view text, int labelWidth,
                                  std::vector<FrdNode>& out) {
  PieceParsed done;
  LineCursor lines(text);
  std::string_view r;
  while (lines.next(r)) {
    FrdNode node;
    long long label = 0;
    if (!startsWith(r, " -1") || !labelAt(r, 3, labelWidth, &label)) return done;
    node.label = static_cast<int32_t>(label);
    double* xyz[3] = {&node.x, &node.y, &node.z};
    for (int i = 0; i < 3; ++i) {
      if (!valueAt(r, 3 + labelWidth + kFrdValueWidth * i, xyz[i])) return done;
    }
    out.push_back(node);
    ++done.lines;
    done.bytes = bytesTo(lines, text);
  }
  done.whole = true;
  return done;
}

PieceParsed FrdReader::parseElements(std::string_view text, int labelWidth,
                                     std::vector<FrdElement>& out) {
  PieceParsed done;
  LineCursor lines(text);
  std::string_view r;
  const int w = labelWidth;
  while (lines.next(r)) {
    long long label = 0, type = 0, group = 0;
    if (!startsWith(r, " -1") || !labelAt(r, 3, w, &label) || !labelAt(r, 3 + w, 5, &type) ||
        !labelAt(r, 8 + w, 5, &group)) {
      return done;
    }
    const int nodes = frdNodeCount(static_cast<int>(type));
    if (nodes < 0) return done;
    FrdElement e;
    e.label = static_cast<int32_t>(label);
    e.typeCode = static_cast<int>(type);
    e.group = static_cast<int>(group);
    // Fluid models name the material here ("WATER"): no number then.
    auto material = toInteger(column(r, 13 + w, 5));
    e.material = material ? static_cast<int>(*material) : 0;
    e.nodes.resize(nodes);
    int64_t elementLines = 1;
    for (int got = 0; got < nodes;) {
      std::string_view m;
      if (!lines.next(m) || !startsWith(m, " -2")) return done;
      ++elementLines;
      for (size_t at = 3; at < m.size() && got < nodes; at += w) {
        long long node = 0;
        if (!labelAt(m, at, w, &node)) {
          if (trim(column(m, at, w)).empty()) break;  // the line's labels end early
          return done;
        }
        e.nodes[got++] = static_cast<int32_t>(node);
      }
    }
    out.push_back(std::move(e));
    done.lines += elementLines;
    done.bytes = bytesTo(lines, text);
  }
  done.whole = true;
  return done;
}

}  // namespace odbs::ccx
