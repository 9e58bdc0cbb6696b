// checkDeck: the cross references of a parsed deck.
#include <algorithm>

#include "tools/ccx/inp_parser.h"
#include "tools/ccx/label_index.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

[[noreturn]] void fail(const SourceRef& where, const std::string& what) {
  throw InputError(where.file + ":" + std::to_string(where.line) + ": " + what);
}

}  // namespace

namespace {

// Removes the labels that `defined` lacks from labels; returns how many and the first.
size_t prune(std::vector<int32_t>& labels, const LabelBits& defined, int32_t* first) {
  size_t before = labels.size();
  auto keep = std::remove_if(labels.begin(), labels.end(), [&](int32_t l) {
    if (defined.count(l)) return false;
    if (*first == 0) *first = l;
    return true;
  });
  labels.erase(keep, labels.end());
  return before - labels.size();
}

}  // namespace

void checkDeck(Deck& deck, Warnings& warnings) {
  // Network elements at an inlet or outlet name node 0 for the missing side: the solver
  // takes them, the database has no node 0 to point at.
  size_t open = 0;
  int32_t firstOpen = 0;
  const std::vector<int32_t>& all = deck.elements.nodeLabels();
  if (std::find(all.begin(), all.end(), 0) != all.end()) {
    deck.elements.keepIf([&](const Element& e) {
      bool zero = std::find(e.nodes.begin(), e.nodes.end(), 0) != e.nodes.end();
      if (zero && open++ == 0) firstOpen = e.label;
      return !zero;
    });
  }
  if (open > 0) {
    warnings.warn("network-ends", deck.path + ": " + std::to_string(open) +
                                      " network elements at an inlet or outlet (node 0, the "
                                      "first element " +
                                      std::to_string(firstOpen) + ") are not imported");
  }
  LabelBits nodes, elements;
  nodes.reserve(deck.nodes.size());
  for (const Node& n : deck.nodes) {
    if (!nodes.insert(n.label)) {
      throw InputError(deck.path + ": node " + std::to_string(n.label) + " is defined twice");
    }
  }
  const std::vector<int32_t>& labels = deck.elements.labels();
  const std::vector<int64_t>& offsets = deck.elements.offsets();
  elements.reserve(labels.size());
  // The node labels of all elements in one pass (a tight loop, faster than element by
  // element); the first fault in deck order is reported, an element defined twice before
  // the element that uses an unknown node, as element by element.
  auto unknown =
      std::find_if(all.begin(), all.end(), [&](int32_t n) { return !nodes.contains(n); });
  const size_t bad = unknown == all.end()
                         ? labels.size()
                         : std::upper_bound(offsets.begin(), offsets.end(), unknown - all.begin()) -
                               offsets.begin() - 1;
  for (size_t e = 0; e < labels.size() && e <= bad; ++e) {
    if (!elements.insert(labels[e])) {
      throw InputError(deck.path + ": element " + std::to_string(labels[e]) + " is defined twice");
    }
  }
  if (bad < labels.size()) {
    throw InputError(deck.path + ": element " + std::to_string(labels[bad]) + " uses node " +
                     std::to_string(*unknown) + ", which no *NODE line defines");
  }
  // Set members that the deck does not define: the solver passes over them, and so does
  // the import, with one warning per kind of set.
  for (bool nodal : {true, false}) {
    size_t dropped = 0;
    std::string first;
    for (LabelSet& set : nodal ? deck.nodeSets : deck.elementSets) {
      int32_t label = 0;
      size_t n = prune(set.labels, nodal ? nodes : elements, &label);
      if (n > 0 && dropped == 0) {
        first = set.where.file + ":" + std::to_string(set.where.line) + ": " +
                (nodal ? "node set " : "element set ") + set.name + " holds " +
                (nodal ? "node " : "element ") + std::to_string(label);
      }
      dropped += n;
    }
    if (dropped > 0) {
      warnings.warn(nodal ? "set-nodes" : "set-elements",
                    first + ", which the deck does not define: " + std::to_string(dropped) +
                        (nodal ? " such node set members" : " such element set members") +
                        " are left out, as the solver does");
    }
  }
  for (const Surface& surface : deck.surfaces) {
    for (const Surface::Face& face : surface.faces) {
      if (!elements.count(face.element)) {
        fail(surface.where, "surface " + surface.name + " names element " +
                                std::to_string(face.element) + ", which is not defined");
      }
    }
    for (int32_t n : surface.nodes) {
      if (!nodes.count(n)) {
        fail(surface.where, "surface " + surface.name + " names node " + std::to_string(n) +
                                ", which is not defined");
      }
    }
  }
  for (const Section& section : deck.sections) {
    if (!deck.elementSet(section.elset)) {
      fail(section.where, "*" + section.keyword + " names element set " + section.elset +
                              ", which is not defined");
    }
    if (!section.material.empty() && !deck.material(section.material)) {
      fail(section.where, "*" + section.keyword + " names material " + section.material +
                              ", which is not defined");
    }
    for (const Layer& layer : section.layers) {
      if (!deck.material(layer.material)) {
        fail(section.where, "a layer of *" + section.keyword + " names material " + layer.material +
                                ", which is not defined");
      }
    }
  }
  for (const Step& step : deck.steps) {
    for (const OutputRequest& request : step.outputs) {
      if (request.set.empty()) continue;
      bool nodal = request.parameters.count("NSET") > 0;
      if (nodal ? !deck.nodeSet(request.set) : !deck.elementSet(request.set)) {
        fail(step.where, "*" + request.keyword + " of step " + std::to_string(step.number) +
                             " names " + (nodal ? "node" : "element") + " set " + request.set +
                             ", which is not defined");
      }
    }
  }
}

}  // namespace odbs::ccx
