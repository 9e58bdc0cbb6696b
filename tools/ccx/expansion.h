// The solver's expanded 3D form of the deck's shells, membranes, beams and trusses.
//
// By default CalculiX writes the result file on solid elements that it makes out of each
// 1D and 2D element (a 20-node brick per eight-node shell or three-node beam, ...): the
// element keeps its label, its nodes are new ones that no deck line defines. Each deck node
// of such an element gets its own expanded nodes (bottom and top of a shell, the corners of
// a beam's section), so that its value is the mean of theirs (the sum, for forces), the
// way the solver computes the values it prints at the deck's nodes.
//
// The expansion also checks that the result file was written for this deck: a node it
// shares with the deck must lie where the deck puts it, and an element it shares with the
// deck must use the same nodes (or be that element's expanded form). Otherwise the results
// are another model's, and InputError says so.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/ccx/frd_model.h"
#include "tools/ccx/inp_model.h"
#include "tools/ccx/label_index.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

// The expanded elements as a mesh of their own, for the database's second instance.
struct ExpandedMesh {
  std::vector<int32_t> nodeLabels;
  std::vector<float> coordinates;  // x, y, z per node
  struct Element {
    int32_t label = 0;
    std::string type;  // "C3D8", "C3D20", "C3D6", "C3D15"
    std::vector<int32_t> nodes;
  };
  std::vector<Element> elements;
  bool empty() const { return elements.empty(); }
};

class Expansion {
 public:
  // resultPath names the result file in messages.
  Expansion(const Deck& deck, std::string resultPath);

  // The result file's nodes, then its elements. Throw InputError when they belong to
  // another model (more than a tenth of the shared nodes elsewhere, or of the shared
  // elements on other deck nodes: the solver itself moves a few nodes for contact and
  // splits elements with new nodes at pre-tension sections); expanded elements whose
  // layout is not the expected one are reported with one warning and their values stay on the
  // expanded instance only.
  // The nodes may come in parts (addNodes, in file order), then finishNodes; nodes() does
  // both at once. finishNodes without nodes added since the last one does nothing.
  void addNodes(const std::vector<FrdNode>& nodes);
  void finishNodes(Warnings& warnings);
  void nodes(const std::vector<FrdNode>& nodes, Warnings& warnings) {
    addNodes(nodes);
    finishNodes(warnings);
  }
  // The elements may come in parts (addElements, in file order), then finishElements;
  // elements() does both at once.
  void addElements(const std::vector<FrdElement>& elements);
  void finishElements(Warnings& warnings);
  void elements(const std::vector<FrdElement>& elements, Warnings& warnings) {
    addElements(elements);
    finishElements(warnings);
  }

  const ExpandedMesh& mesh() const { return mesh_; }
  bool isExpandedNode(int32_t label) const { return expandedNodes_.count(label) > 0; }

  // A deck node and its expanded nodes: the mean of the values at `mean` is its value; the
  // sum over `all` (mean and further nodes: a shell's mid-thickness, a beam section's
  // mid-sides) is its force.
  struct Source {
    int32_t deckNode = 0;
    std::vector<int32_t> mean, all;
  };
  const std::vector<Source>& sources() const { return sources_; }

 private:
  const Deck& deck_;
  std::string path_;
  double extent_ = 0;         // largest coordinate of the deck
  LabelIndex deckNodeIndex_;  // deck node label -> its index in deck_.nodes
  void addToMesh(const FrdElement& element, LabelBits& meshNodes);

  // What addNodes has found so far: shared nodes, those of them that lie elsewhere, and the
  // first of those with its deck node's index.
  struct NodeScan {
    bool pending = false;
    size_t moved = 0, shared = 0;
    FrdNode first;
    uint32_t firstDeck = 0;
  };
  NodeScan nodeScan_;
  std::unordered_map<int32_t, FrdNode> extraNodes_;  // result file nodes the deck lacks
  LabelBits frdNodes_;                               // every node of the result file
  LabelBits expandedNodes_;
  std::vector<Source> sources_;
  ExpandedMesh mesh_;

  // What addElements has found so far in the element block being read.
  struct ElementScan {
    LabelIndex deckElements;                       // deck element label -> index
    std::unordered_map<int32_t, size_t> sourceOf;  // deck node -> index into sources_
    LabelBits meshNodes;                           // nodes of the expanded elements
    size_t unknown = 0, unmapped = 0, changed = 0, foreign = 0, sharedElements = 0;
    std::string firstChanged, firstUnknown, firstUnmapped;
  };
  ElementScan scan_;
};

}  // namespace odbs::ccx
