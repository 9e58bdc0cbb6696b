// The mesh blocks of the result file: nodes ("2C") and elements ("3C"), text or binary.
#include <cstring>

#include "tools/ccx/element_types.h"
#include "tools/ccx/frd_reader.h"

namespace odbs::ccx {

void FrdReader::readNodes(std::string_view line) {
  sendHeader();
  std::vector<std::string_view> tokens = splitBlanks(line);
  if (tokens.size() < 2) fail("a node count and a format after 2C", std::string(line));
  // The solver leaves the count blank for some fluid models: the block then ends at -3.
  long long count =
      tokens.size() < 3 ? 0 : tokenInteger(tokens, tokens.size() - 2, "a node count", line);
  int format = static_cast<int>(tokenInteger(tokens, tokens.size() - 1, "a format code", line));
  std::vector<FrdNode> nodes;
  // Hands a full part to the visitor and starts the next.
  auto pass = [&](bool last) {
    if (nodes.size() >= kFrdNodeChunk || (last && !nodes.empty())) {
      visitor_.nodes(std::move(nodes));
      nodes.clear();
    }
  };
  if (format == 2 || format == 3) {
    binarySeen_ = true;
    bool doubles = format == 3;
    size_t valueBytes = doubles ? 8 : 4;
    int64_t n = checkedCount(count, 4 + 3 * valueBytes, "nodes");
    nodes.reserve(std::min<size_t>(n, kFrdNodeChunk));
    for (int64_t k = 0; k < n; ++k) {
      pass(false);
      FrdNode& node = nodes.emplace_back();
      unsigned char record[28];
      if (!in_.readBytes(record, 4 + 3 * valueBytes))
        failBinary(std::to_string(n) + " binary node records");
      std::memcpy(&node.label, record, 4);
      double* xyz[3] = {&node.x, &node.y, &node.z};
      for (int i = 0; i < 3; ++i) {
        if (doubles) {
          std::memcpy(xyz[i], record + 4 + 8 * i, 8);
        } else {
          float f;
          std::memcpy(&f, record + 4 + 4 * i, 4);
          *xyz[i] = f;
        }
      }
    }
  } else if (format == 0 || format == 1) {
    int w = format == 0 ? 5 : 10;
    nodes.reserve(
        std::min<size_t>(static_cast<size_t>(checkedCount(count, 10, "nodes")), kFrdNodeChunk));
    PieceParse<std::vector<FrdNode>> bulk;
    while (true) {
      // The node lines that the read buffer holds, on two threads; the line that stops them
      // is read here.
      bulk.run(
          in_, runner_, startsRecord,
          [&](std::string_view text, std::vector<FrdNode>& out) {
            return parseNodes(text, w, out);
          },
          [&](std::vector<FrdNode>& out) {
            nodes.insert(nodes.end(), out.begin(), out.end());
            pass(false);
          });
      pass(false);
      std::string_view r = nextRow("a node line or -3 ending the node block");
      if (startsWith(trim(r), "-3")) break;
      FrdNode node;
      switch (nodeRecord(r, w, &node)) {
        case RecordFault::none:
          break;
        case RecordFault::start:
          fail("a node line starting with -1", std::string(r));
        case RecordFault::label:
          fail("a node label", std::string(r));
        default:
          fail("three node coordinates", std::string(r));
      }
      nodes.push_back(node);
    }
  } else {
    fail("node block format 0, 1, 2 or 3", std::to_string(format));
  }
  pass(true);
  visitor_.nodesEnd();
}

void FrdReader::readElements(std::string_view line) {
  sendHeader();
  std::vector<std::string_view> tokens = splitBlanks(line);
  if (tokens.size() < 2) fail("an element count and a format after 3C", std::string(line));
  long long count =
      tokens.size() < 3 ? 0 : tokenInteger(tokens, tokens.size() - 2, "an element count", line);
  int format = static_cast<int>(tokenInteger(tokens, tokens.size() - 1, "a format code", line));
  std::vector<FrdElement> elements;
  // Hands a full part to the visitor and starts the next.
  auto pass = [&](bool last) {
    if (elements.size() >= kFrdElementChunk || (last && !elements.empty())) {
      visitor_.elements(std::move(elements));
      elements.clear();
    }
  };
  if (format == 2) {
    binarySeen_ = true;
    int64_t n = checkedCount(count, 16, "elements");
    elements.reserve(std::min<size_t>(n, kFrdElementChunk));
    for (int64_t i = 0; i < n; ++i) {
      pass(false);
      FrdElement& e = elements.emplace_back();
      int32_t head[4];
      if (!in_.readBytes(head, sizeof head))
        failBinary(std::to_string(n) + " binary element records");
      e.label = head[0];
      e.typeCode = head[1];
      e.group = head[2];
      e.material = head[3];
      int nodes = frdNodeCount(e.typeCode);
      if (nodes < 0) {
        fail("a known element type code (1 to 12) for element " + std::to_string(e.label),
             std::to_string(e.typeCode));
      }
      e.nodes.resize(nodes);
      if (!in_.readBytes(e.nodes.data(), 4 * nodes))
        failBinary("the nodes of element " + std::to_string(e.label));
    }
  } else if (format == 0 || format == 1) {
    int w = format == 0 ? 5 : 10;
    elements.reserve(std::min<size_t>(static_cast<size_t>(checkedCount(count, 20, "elements")),
                                      kFrdElementChunk));
    PieceParse<std::vector<FrdElement>> bulk;
    while (true) {
      // The element lines that the read buffer holds, on two threads; the line that stops
      // them is read here.
      bulk.run(
          in_, runner_, startsRecord,
          [&](std::string_view text, std::vector<FrdElement>& out) {
            return parseElements(text, w, out);
          },
          [&](std::vector<FrdElement>& out) {
            for (FrdElement& e : out) elements.push_back(std::move(e));
            pass(false);
          });
      pass(false);
      std::string_view r = nextRow("an element line or -3 ending the element block");
      if (!startsWith(r, " -1")) {
        if (startsWith(trim(r), "-3")) break;
        fail("an element line starting with -1", std::string(r));
      }
      FrdElement& e = elements.emplace_back();
      FileLines lines{in_};
      std::string_view at;
      switch (elementRecord(r, lines, w, &e, &at)) {
        case RecordFault::none:
          break;
        case RecordFault::label:
          fail("an element label", std::string(at));
        case RecordFault::type:
          fail("an element type code", std::string(at));
        case RecordFault::group:
          fail("an element group", std::string(at));
        case RecordFault::unknownType:
          fail("a known element type code (1 to 12)", std::string(at));
        case RecordFault::nextLine:
          if (at.empty()) fail("a -2 line with the nodes of an element", "end of file");
          fail("a -2 line with the nodes of element " + std::to_string(e.label), std::string(at));
        default:
          fail("a node label", std::string(at));
      }
    }
  } else {
    fail("element block format 0, 1 or 2", std::to_string(format));
  }
  pass(true);
  visitor_.elementsEnd();
}

}  // namespace odbs::ccx
