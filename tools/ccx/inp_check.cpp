// checkDeck: the cross references of a parsed deck.
#include <unordered_set>

#include "tools/ccx/inp_parser.h"
#include "tools/ccx/parse_error.h"

namespace odbs::ccx {
namespace {

[[noreturn]] void fail(const SourceRef& where, const std::string& what) {
  throw InputError(where.file + ":" + std::to_string(where.line) + ": " + what);
}

}  // namespace

void checkDeck(const Deck& deck) {
  std::unordered_set<int32_t> nodes, elements;
  nodes.reserve(deck.nodes.size());
  for (const Node& n : deck.nodes) {
    if (!nodes.insert(n.label).second) {
      throw InputError(deck.path + ": node " + std::to_string(n.label) + " is defined twice");
    }
  }
  elements.reserve(deck.elements.size());
  for (const Element& e : deck.elements) {
    if (!elements.insert(e.label).second) {
      throw InputError(deck.path + ": element " + std::to_string(e.label) + " is defined twice");
    }
    for (int32_t n : e.nodes) {
      if (!nodes.count(n)) {
        throw InputError(deck.path + ": element " + std::to_string(e.label) + " uses node " +
                         std::to_string(n) + ", which no *NODE line defines");
      }
    }
  }
  for (const LabelSet& set : deck.nodeSets) {
    for (int32_t l : set.labels) {
      if (!nodes.count(l)) {
        fail(set.where, "node set " + set.name + " holds node " + std::to_string(l) +
                            ", which no *NODE line defines");
      }
    }
  }
  for (const LabelSet& set : deck.elementSets) {
    for (int32_t l : set.labels) {
      if (!elements.count(l)) {
        fail(set.where, "element set " + set.name + " holds element " + std::to_string(l) +
                            ", which no *ELEMENT line defines");
      }
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
