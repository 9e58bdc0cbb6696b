// Mesh keywords of the deck parser: *HEADING, *NODE, *ELEMENT, *NSET, *ELSET, *SURFACE.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>

#include "tools/ccx/element_types.h"
#include "tools/ccx/inp_builder.h"
#include "tools/ccx/inp_fields.h"
#include "tools/ccx/label_index.h"
#include "tools/ccx/parse_error.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {

std::string DeckBuilder::required(const Card& card, const std::string& parameter) const {
  std::string value = card.get(parameter);
  if (value.empty()) {
    throw ParseError(card.where.file, card.where.line,
                     "parameter " + parameter + "= on *" + card.keyword);
  }
  return value;
}

double DeckBuilder::number(const DataLine& line, size_t field, const char* what) const {
  if (field >= line.fields.size()) {
    throw ParseError(line.where.file, line.where.line,
                     what + (" in field " + std::to_string(field + 1)), "end of line");
  }
  auto value = toDouble(line.fields[field]);
  if (!value || !std::isfinite(*value)) {
    throw ParseError(line.where.file, line.where.line, std::string(what) + " (a finite number)",
                     std::string(line.fields[field]));
  }
  return *value;
}

int32_t DeckBuilder::label(const DataLine& line, size_t field, const char* what) const {
  if (field >= line.fields.size()) {
    throw ParseError(line.where.file, line.where.line,
                     what + (" in field " + std::to_string(field + 1)), "end of line");
  }
  auto value = toInteger(line.fields[field]);
  if (!value || *value < 1 || *value > std::numeric_limits<int32_t>::max()) {
    throw ParseError(line.where.file, line.where.line, std::string(what) + " (a positive integer)",
                     std::string(line.fields[field]));
  }
  return static_cast<int32_t>(*value);
}

std::vector<double> DeckBuilder::numbers(const DataLine& line) const {
  std::vector<double> out;
  for (size_t i = 0; i < line.fields.size(); ++i) {
    out.push_back(line.fields[i].empty() ? 0.0 : number(line, i, "a number"));
  }
  return out;
}

void DeckBuilder::countGenerated(int64_t labels, const DataLine& line) {
  // A few characters must not make billions of labels: the labels that GENERATE ranges
  // and set names make stay below a bound that grows with the size of the deck.
  generated_ += labels;
  if (generated_ > std::max<int64_t>(1 << 22, 64 * reader_.topSize())) {
    throw ParseError(line.where.file, line.where.line,
                     "generated set members of at most 64 per byte of the deck",
                     std::to_string(generated_) + " members");
  }
}

LabelSet& DeckBuilder::setNamed(const std::string& name, bool nodes, const SourceRef& where) {
  auto& index = nodes ? nodeSetIndex_ : elementSetIndex_;
  auto& sets = nodes ? deck_.nodeSets : deck_.elementSets;
  auto it = index.find(name);
  if (it != index.end()) return sets[it->second];
  index.emplace(name, sets.size());
  sets.push_back(LabelSet{name, {}, where});
  return sets.back();
}

void DeckBuilder::readHeading(const Card&) {
  DataLine line;
  while (reader_.nextData(line)) {
    // The heading is free text: put the comma-split fields back together.
    std::string text;
    for (size_t i = 0; i < line.fields.size(); ++i) {
      if (i) text += ", ";
      text += line.fields[i];
    }
    if (line.endsWithComma) text += ",";
    if (deck_.title.empty()) deck_.title = text;
    deck_.heading += (deck_.heading.empty() ? "" : "\n") + text;
  }
}

void DeckBuilder::readNodes(const Card& card) {
  LabelSet* set = nullptr;
  if (card.has("NSET")) set = &setNamed(upper(required(card, "NSET")), true, card.where);
  std::string_view text;
  DataLine line;  // a line off the fast path, read the general way
  BulkTurns turns;
  while (true) {
    // The node lines that the read buffer holds, on two threads; the line that stops them
    // is read here.
    if (SourceReader* in = turns.source(reader_)) turns.ran(readNodesInBulk(*in, set));
    if (!reader_.nextDataText(text)) break;
    Node node;
    if (!readNodeLine(text, node)) {
      turns.offPath();
      reader_.split(text, line);
      node.label = label(line, 0, "a node label");
      double* coords[3] = {&node.x, &node.y, &node.z};
      for (size_t i = 1; i < line.fields.size() && i <= 3; ++i) {
        if (!line.fields[i].empty()) *coords[i - 1] = number(line, i, "a node coordinate");
      }
    }
    deck_.nodes.push_back(node);
    if (set) set->labels.push_back(node.label);
  }
}

int32_t DeckBuilder::nodeOf(const DataLine& line, size_t field, int32_t element,
                            bool zeroAllowed) const {
  if (field < line.fields.size()) {
    auto v = toInteger(line.fields[field]);
    if (v && *v >= 1 && *v <= std::numeric_limits<int32_t>::max()) return static_cast<int32_t>(*v);
    if (zeroAllowed && v && *v == 0) return 0;
  }
  // A bad label: the message names the element.
  return label(line, field, ("a node label of element " + std::to_string(element)).c_str());
}

bool DeckBuilder::readFirstElementLine(std::string_view text, const std::string& type, int count,
                                       bool network, int32_t* element, std::vector<int32_t>& nodes,
                                       DataLine& line) {
  reader_.split(text, line);
  *element = label(line, 0, "an element label");
  size_t listed = line.fields.size() - 1;
  for (size_t i = 1; i < line.fields.size(); ++i) {
    // The solver reads as many labels as the type has and passes over the rest of the
    // line.
    if (count >= 0 && static_cast<int>(nodes.size()) == count) {
      warnings_.warn("element-extra-labels:" + type,
                     line.where.file + ":" + std::to_string(line.where.line) + ": element " +
                         std::to_string(*element) + " of type " + type + " lists " +
                         std::to_string(listed) + " node labels; the first " +
                         std::to_string(count) +
                         " are its nodes, the rest are ignored as "
                         "the solver does");
      break;
    }
    nodes.push_back(nodeOf(line, i, *element, network));
  }
  return line.endsWithComma;
}

void DeckBuilder::readElements(const Card& card) {
  std::string type = upper(required(card, "TYPE"));
  int count = deckNodeCount(type);
  // User elements (U...) have any number of nodes; any other type must be one the solver
  // knows.
  if (count < 0 && type[0] != 'U') {
    throw ParseError(card.where.file, card.where.line,
                     "an element type of the solver (C3D8, C3D20R, S8R, B32, ...) in TYPE=", type);
  }
  LabelSet* set = nullptr;
  if (card.has("ELSET")) set = &setNamed(upper(required(card, "ELSET")), false, card.where);
  const int32_t typeNumber = deck_.elements.typeNumber(type);
  // Network elements name node 0 where they have no inlet or outlet node.
  const bool network = type == "D";
  const size_t most = count >= 0 ? static_cast<size_t>(count) : SIZE_MAX;
  std::vector<int32_t> nodes;  // of the element being read
  std::string_view text;
  DataLine line;  // a line off the fast path, read the general way
  BulkTurns turns;
  ElementStarts starts;
  while (true) {
    // The element lines that the read buffer holds, on two threads, for types of a known
    // node count; the line that stops them is read here.
    if (SourceReader* in = count > 0 && starts.known() ? turns.source(reader_) : nullptr) {
      turns.ran(readElementsInBulk(*in, starts, most, network, typeNumber, set));
    }
    if (!reader_.nextDataText(text)) break;
    if (starts.learning()) starts.first(text);
    int32_t element = 0;
    bool endsWithComma = false;
    nodes.clear();
    if (!readElementLine(text, true, most, network, &element, nodes, &endsWithComma)) {
      turns.offPath();
      endsWithComma = readFirstElementLine(text, type, count, network, &element, nodes, line);
    }
    // An element whose node list is longer than one line goes on in the next lines: as many
    // as the type needs, or while lines end with a comma for types not in the table.
    while ((count >= 0 && static_cast<int>(nodes.size()) < count) || (count < 0 && endsWithComma)) {
      if (!reader_.nextDataText(text)) {
        const SourceRef& where = reader_.dataWhere();
        throw ParseError(where.file, where.line,
                         std::to_string(count) + " node labels for element " +
                             std::to_string(element) + " of type " + type,
                         std::to_string(nodes.size()));
      }
      if (starts.learning()) starts.later(text);
      if (!readElementLine(text, false, SIZE_MAX, network, nullptr, nodes, &endsWithComma)) {
        reader_.split(text, line);
        for (size_t i = 0; i < line.fields.size(); ++i) {
          nodes.push_back(nodeOf(line, i, element, network));
        }
        endsWithComma = line.endsWithComma;
      }
    }
    const SourceRef& where = reader_.dataWhere();
    if (count >= 0 && static_cast<int>(nodes.size()) != count) {
      throw ParseError(where.file, where.line,
                       std::to_string(count) + " node labels for element " +
                           std::to_string(element) + " of type " + type,
                       std::to_string(nodes.size()) + " labels");
    }
    if (nodes.empty()) {
      throw ParseError(where.file, where.line,
                       "node labels after element label " + std::to_string(element));
    }
    if (set) set->labels.push_back(element);
    deck_.elements.add(element, typeNumber, nodes.data(), nodes.size());
  }
}

void DeckBuilder::readSet(const Card& card, bool nodes) {
  const char* parameter = nodes ? "NSET" : "ELSET";
  std::string name = upper(required(card, parameter));
  setNamed(name, nodes, card.where);
  // Sets are addressed by index: the vector of sets does not move while this card is read,
  // but references into it would not survive a later change of this code.
  auto& index = nodes ? nodeSetIndex_ : elementSetIndex_;
  auto& sets = nodes ? deck_.nodeSets : deck_.elementSets;
  size_t self = index.at(name);
  bool generate = card.has("GENERATE");
  DataLine line;
  while (reader_.nextData(line)) {
    if (generate) {
      int32_t first = label(line, 0, "the first label of a GENERATE range");
      int32_t last = label(line, 1, "the last label of a GENERATE range");
      int32_t step = line.fields.size() > 2 && !line.fields[2].empty()
                         ? label(line, 2, "the increment of a GENERATE range")
                         : 1;
      if (last < first) {
        throw ParseError(line.where.file, line.where.line,
                         "a GENERATE range whose last label is not below its first",
                         std::string(line.fields[0]) + ", " + std::string(line.fields[1]));
      }
      countGenerated((static_cast<int64_t>(last) - first) / step + 1, line);
      for (int64_t l = first; l <= last; l += step)
        sets[self].labels.push_back(static_cast<int32_t>(l));
      continue;
    }
    for (size_t i = 0; i < line.fields.size(); ++i) {
      std::string_view field = line.fields[i];
      if (field.empty()) continue;
      if (toInteger(field)) {
        sets[self].labels.push_back(label(line, i, "a label"));
        continue;
      }
      auto member = index.find(upper(field));
      if (member == index.end()) {
        throw ParseError(
            line.where.file, line.where.line,
            std::string("a label or the name of a defined ") + (nodes ? "node set" : "element set"),
            std::string(field));
      }
      if (member->second == self) continue;
      std::vector<int32_t> labels = sets[member->second].labels;
      countGenerated(static_cast<int64_t>(labels.size()), line);
      sets[self].labels.insert(sets[self].labels.end(), labels.begin(), labels.end());
    }
  }
}

void DeckBuilder::readSurface(const Card& card) {
  Surface surface;
  surface.name = upper(required(card, "NAME"));
  std::string type = upper(card.get("TYPE", "ELEMENT"));
  if (type != "ELEMENT" && type != "NODE") {
    throw ParseError(card.where.file, card.where.line, "TYPE=ELEMENT or TYPE=NODE on *SURFACE",
                     type);
  }
  surface.nodeBased = type == "NODE";
  surface.where = card.where;
  DataLine line;
  while (reader_.nextData(line)) {
    if (line.fields.empty() || line.fields[0].empty()) {
      throw ParseError(line.where.file, line.where.line, "a label or set name");
    }
    std::string_view first = line.fields[0];
    std::vector<int32_t> labels;
    if (toInteger(first)) {
      labels.push_back(label(line, 0, "a label"));
    } else {
      auto& index = surface.nodeBased ? nodeSetIndex_ : elementSetIndex_;
      auto it = index.find(upper(first));
      if (it == index.end()) {
        throw ParseError(
            line.where.file, line.where.line,
            surface.nodeBased ? "a node label or node set" : "an element label or element set",
            std::string(first));
      }
      labels = (surface.nodeBased ? deck_.nodeSets : deck_.elementSets)[it->second].labels;
    }
    if (surface.nodeBased) {
      surface.nodes.insert(surface.nodes.end(), labels.begin(), labels.end());
      continue;
    }
    if (line.fields.size() < 2 || line.fields[1].empty()) {
      throw ParseError(line.where.file, line.where.line,
                       "a face name (S1, S2, ...) after " + std::string(first));
    }
    std::string face = upper(line.fields[1]);
    for (int32_t l : labels) surface.faces.push_back(Surface::Face{l, face});
  }
  // A name defined again extends the surface, as the solver does.
  for (Surface& known : deck_.surfaces) {
    if (known.name == surface.name && known.nodeBased == surface.nodeBased) {
      known.faces.insert(known.faces.end(), surface.faces.begin(), surface.faces.end());
      known.nodes.insert(known.nodes.end(), surface.nodes.begin(), surface.nodes.end());
      return;
    }
  }
  deck_.surfaces.push_back(std::move(surface));
}

bool DeckBuilder::meshCard(const Card& card) {
  const std::string& k = card.keyword;
  if (k == "HEADING") {
    readHeading(card);
  } else if (k == "NODE") {
    readNodes(card);
  } else if (k == "ELEMENT") {
    readElements(card);
  } else if (k == "NSET") {
    readSet(card, true);
  } else if (k == "ELSET") {
    readSet(card, false);
  } else if (k == "SURFACE") {
    readSurface(card);
  } else {
    return false;
  }
  return true;
}

void DeckBuilder::finish() {
  // The mesh stays for the whole import: give back what the vectors' growth left over.
  deck_.nodes.shrink_to_fit();
  deck_.elements.shrinkToFit();
  // Repeated members go, the first of each stays: compacted in place. Rising labels (the
  // sets of *NODE, NSET= and *ELEMENT, ELSET=, mostly) repeat none.
  for (auto* sets : {&deck_.nodeSets, &deck_.elementSets}) {
    for (LabelSet& set : *sets) {
      const std::vector<int32_t>& l = set.labels;
      if (std::adjacent_find(l.begin(), l.end(), std::greater_equal<int32_t>()) == l.end()) {
        continue;
      }
      LabelBits seen;
      seen.reserve(set.labels.size());
      size_t kept = 0;
      for (int32_t l : set.labels) {
        if (seen.insert(l)) set.labels[kept++] = l;
      }
      set.labels.resize(kept);
    }
  }
  // A solid section on truss elements is a truss section: looked up only when the deck has
  // truss elements.
  const std::vector<std::string>& types = deck_.elements.typeNames();
  if (std::none_of(types.begin(), types.end(), [](const std::string& t) {
        return startsWith(t, "T2D") || startsWith(t, "T3D");
      })) {
    return;
  }
  LabelIndex byLabel;  // element label -> index in deck_.elements
  byLabel.reserve(deck_.elements.size());
  const std::vector<int32_t>& labels = deck_.elements.labels();
  for (size_t i = 0; i < labels.size(); ++i) byLabel.emplace(labels[i], i);
  for (Section& section : deck_.sections) {
    if (section.kind != SectionKind::Solid) continue;
    const LabelSet* set = deck_.elementSet(section.elset);
    if (!set || set->labels.empty()) continue;
    uint32_t index = byLabel.find(set->labels.front());
    if (index != LabelIndex::kNone && (startsWith(deck_.elements[index].type, "T2D") ||
                                       startsWith(deck_.elements[index].type, "T3D"))) {
      section.kind = SectionKind::Truss;
    }
  }
}

}  // namespace odbs::ccx
