#include "tools/ccx/expansion.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tools/ccx/element_types.h"
#include "tools/ccx/parse_error.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

// Where the expanded nodes of each deck node sit in the expanded element, as the result
// file lists its nodes (0-based). `mean` are the nodes whose mean is the deck node's value
// (the shell's bottom and top, the corners of the beam's section); `more` are further
// nodes of the same deck node that carry a share of its forces (mid-thickness, section
// mid-sides).
struct NodeSpots {
  std::vector<int> mean, more;
};
struct Layout {
  int frdType = 0;  // type code of the expanded element in the result file
  const char* solid = "";
  std::vector<NodeSpots> spots;  // one per deck node of the element
};

const Layout kQuad4 = {1, "C3D8", {{{0, 4}, {}}, {{1, 5}, {}}, {{2, 6}, {}}, {{3, 7}, {}}}};
const Layout kTri3 = {2, "C3D6", {{{0, 3}, {}}, {{1, 4}, {}}, {{2, 5}, {}}}};
const Layout kQuad8 = {4,
                       "C3D20",
                       {{{0, 4}, {12}},
                        {{1, 5}, {13}},
                        {{2, 6}, {14}},
                        {{3, 7}, {15}},
                        {{8, 16}, {}},
                        {{9, 17}, {}},
                        {{10, 18}, {}},
                        {{11, 19}, {}}}};
const Layout kTri6 = {
    5,
    "C3D15",
    {{{0, 3}, {}}, {{1, 4}, {}}, {{2, 5}, {}}, {{6, 12}, {}}, {{7, 13}, {}}, {{8, 14}, {}}}};
const Layout kLine2 = {1, "C3D8", {{{0, 3, 7, 4}, {}}, {{1, 2, 6, 5}, {}}}};
const Layout kLine3 = {
    4,
    "C3D20",
    {{{0, 3, 7, 4}, {11, 15, 19, 12}}, {{8, 10, 18, 16}, {}}, {{1, 2, 6, 5}, {9, 14, 17, 13}}}};

// The layout of a deck element type that the solver expands; nullptr for solids and for
// types it does not expand (or whose expanded form is not mapped back: axisymmetric).
const Layout* layoutOf(const std::string& type) {
  static const std::map<std::string, const Layout*> layouts = {
      {"S4", &kQuad4},   {"S4R", &kQuad4},   {"M3D4", &kQuad4}, {"M3D4R", &kQuad4},
      {"CPS4", &kQuad4}, {"CPS4R", &kQuad4}, {"CPE4", &kQuad4}, {"CPE4R", &kQuad4},
      {"S3", &kTri3},    {"M3D3", &kTri3},   {"CPS3", &kTri3},  {"CPE3", &kTri3},
      {"S8", &kQuad8},   {"S8R", &kQuad8},   {"M3D8", &kQuad8}, {"M3D8R", &kQuad8},
      {"CPS8", &kQuad8}, {"CPS8R", &kQuad8}, {"CPE8", &kQuad8}, {"CPE8R", &kQuad8},
      {"S6", &kTri6},    {"M3D6", &kTri6},   {"CPS6", &kTri6},  {"CPE6", &kTri6},
      {"B31", &kLine2},  {"B31R", &kLine2},  {"T3D2", &kLine2}, {"B32", &kLine3},
      {"B32R", &kLine3}, {"T3D3", &kLine3},
  };
  auto it = layouts.find(type);
  return it == layouts.end() ? nullptr : it->second;
}

// The solid element type of a result-file element type code.
const char* solidTypeName(int typeCode) {
  static const char* const names[] = {"",   "C3D8", "C3D6", "C3D4", "C3D20", "C3D15", "C3D10",
                                      "S3", "S6",   "S4",   "S8",   "B31",   "B32"};
  return typeCode >= 1 && typeCode <= 12 ? names[typeCode] : "";
}

// The same node labels in any order (an element of the result file and of the deck).
bool sameNodes(NodeLabels a, NodeLabels b) {
  if (a.size() != b.size()) return false;
  if (std::equal(a.begin(), a.end(), b.begin())) return true;  // the usual case
  std::vector<int32_t> x = a.toVector(), y = b.toVector();
  std::sort(x.begin(), x.end());
  std::sort(y.begin(), y.end());
  return x == y;
}

}  // namespace

Expansion::Expansion(const Deck& deck, std::string resultPath)
    : deck_(deck), path_(std::move(resultPath)) {
  deckNodeIndex_.reserve(deck.nodes.size());
  for (size_t i = 0; i < deck.nodes.size(); ++i) deckNodeIndex_.emplace(deck.nodes[i].label, i);
  for (const Node& n : deck.nodes) {
    extent_ = std::max({extent_, std::fabs(n.x), std::fabs(n.y), std::fabs(n.z)});
  }
}

void Expansion::addNodes(const std::vector<FrdNode>& nodes) {
  // The result file writes coordinates with five or six significant digits (or as single
  // precision): a shared node may differ from the deck by that much of the model's size.
  const double tolerance = 1e-4 * std::max(extent_, 1e-30);
  NodeScan& scan = nodeScan_;
  scan.pending = true;
  for (const FrdNode& n : nodes) {
    frdNodes_.insert(n.label);
    uint32_t index = deckNodeIndex_.find(n.label);
    if (index == LabelIndex::kNone) {
      extraNodes_.emplace(n.label, n);
      continue;
    }
    ++scan.shared;
    const Node& d = deck_.nodes[index];
    if (std::fabs(d.x - n.x) > tolerance || std::fabs(d.y - n.y) > tolerance ||
        std::fabs(d.z - n.z) > tolerance) {
      if (scan.moved++ == 0) scan.first = n, scan.firstDeck = index;
    }
  }
}

void Expansion::finishNodes(Warnings& warnings) {
  if (!nodeScan_.pending) return;
  const NodeScan scan = nodeScan_;
  nodeScan_ = NodeScan();
  const size_t moved = scan.moved, shared = scan.shared;
  const FrdNode* first = &scan.first;
  const Node* firstDeck = moved > 0 ? &deck_.nodes[scan.firstDeck] : nullptr;
  // The solver itself moves a few nodes (contact adjustment): a tenth of the shared nodes
  // elsewhere is another model.
  if (moved > 0 && moved * 10 <= shared) {
    warnings.warn("frd-moved-nodes",
                  path_ + ": " + std::to_string(moved) + " of the " + std::to_string(shared) +
                      " nodes that the result file shares with the deck lie elsewhere (the "
                      "first: node " +
                      std::to_string(first->label) +
                      "; the solver moves nodes for contact): the deck's coordinates are kept");
  } else if (moved > 0) {
    char text[200];
    std::snprintf(text, sizeof text,
                  "node %d lies at (%g, %g, %g) in the result file and at "
                  "(%g, %g, %g) in the deck",
                  first->label, first->x, first->y, first->z, firstDeck->x, firstDeck->y,
                  firstDeck->z);
    throw InputError(
        path_ + ": the result file belongs to another model: " + std::to_string(moved) +
        " of its nodes do not lie where the deck " + deck_.path + " puts them (" + text + ")");
  }
}

void Expansion::addToMesh(const FrdElement& f, LabelBits& meshNodes) {
  ExpandedMesh::Element element;
  element.label = f.label;
  element.type = solidTypeName(f.typeCode);
  element.nodes.assign(f.nodes.begin(), f.nodes.end());
  for (int32_t n : f.nodes) meshNodes.insert(n);
  mesh_.elements.push_back(std::move(element));
}

void Expansion::addElements(const std::vector<FrdElement>& elements) {
  ElementScan& scan = scan_;
  if (scan.deckElements.size() == 0) {
    scan.deckElements.reserve(deck_.elements.size());
    const std::vector<int32_t>& labels = deck_.elements.labels();
    for (size_t i = 0; i < labels.size(); ++i) scan.deckElements.emplace(labels[i], i);
  }
  const LabelIndex& deckElements = scan.deckElements;
  auto& sourceOf = scan.sourceOf;
  LabelBits& meshNodes = scan.meshNodes;
  size_t &unknown = scan.unknown, &unmapped = scan.unmapped, &changed = scan.changed,
         &foreign = scan.foreign, &sharedElements = scan.sharedElements;
  std::string &firstChanged = scan.firstChanged, &firstUnknown = scan.firstUnknown,
              &firstUnmapped = scan.firstUnmapped;
  for (const FrdElement& f : elements) {
    uint32_t deckIndex = deckElements.find(f.label);
    bool newNodes = true;
    for (int32_t n : f.nodes) newNodes = newNodes && extraNodes_.count(n) > 0;
    if (deckIndex == LabelIndex::kNone) {
      // The solver's own elements on new nodes (the layers of an expanded composite
      // shell) join the expanded instance; others are not imported.
      if (newNodes) {
        addToMesh(f, meshNodes);
      } else if (unknown++ == 0) {
        firstUnknown = std::to_string(f.label);
      }
      continue;
    }
    const Element& d = deck_.elements[deckIndex];
    ++sharedElements;
    if (sameNodes(f.nodes, d.nodes)) continue;
    // Not the deck's element: the expanded form of a 1D or 2D element, whose nodes are all
    // new, or the element of another model.
    if (!newNodes || startsWith(d.type, "C3D")) {
      // The solver changes some elements itself: a pre-tension section splits the mesh
      // with new nodes. Elements on other deck nodes only are another model's.
      bool ownNodes = true;
      for (int32_t n : f.nodes) ownNodes = ownNodes && deckNodeIndex_.count(n) > 0;
      if (ownNodes) ++foreign;
      if (changed++ == 0) {
        firstChanged = "its element " + std::to_string(f.label) +
                       " does not have the nodes of element " + std::to_string(d.label) + " (" +
                       d.type + ") of the deck " + deck_.path;
      }
      continue;
    }
    const Layout* layout = layoutOf(d.type);
    bool fits = layout && f.typeCode == layout->frdType && layout->spots.size() == d.nodes.size();
    std::vector<Source> found;
    for (size_t k = 0; fits && k < d.nodes.size(); ++k) {
      const NodeSpots& spots = layout->spots[k];
      Source s;
      s.deckNode = d.nodes[k];
      double mean[3] = {0, 0, 0};
      for (int p : spots.mean) {
        const FrdNode& e = extraNodes_.at(f.nodes[p]);
        s.mean.push_back(e.label);
        mean[0] += e.x / spots.mean.size();
        mean[1] += e.y / spots.mean.size();
        mean[2] += e.z / spots.mean.size();
      }
      double spread = 0;
      for (int32_t label : s.mean) {
        const FrdNode& e = extraNodes_.at(label);
        spread = std::max(spread, std::hypot(e.x - mean[0], e.y - mean[1], e.z - mean[2]));
      }
      s.all = s.mean;
      for (int p : spots.more) s.all.push_back(f.nodes[p]);
      // The deck node lies amid its expanded nodes (a shell without offset, a beam on its
      // axis); otherwise the element is not mapped back.
      const Node& dn = deck_.nodes[deckNodeIndex_.find(s.deckNode)];
      double off = std::hypot(dn.x - mean[0], dn.y - mean[1], dn.z - mean[2]);
      if (off > 1e-3 * spread + 1e-9 * std::max(1.0, spread)) fits = false;
      // Far outside the expanded element (more than a shell offset could move it): the
      // element of another model.
      if (off > 2 * spread + 1e-4 * extent_) {
        throw InputError(path_ + ": the result file belongs to another model: its element " +
                         std::to_string(f.label) + " does not lie where element " +
                         std::to_string(d.label) + " (" + d.type + ") of the deck " + deck_.path +
                         " does");
      }
      found.push_back(std::move(s));
    }
    if (!fits) {
      if (unmapped++ == 0) firstUnmapped = std::to_string(f.label) + " (" + d.type + ")";
    } else {
      for (Source& s : found) {
        auto [at, isNew] = sourceOf.emplace(s.deckNode, sources_.size());
        if (isNew) {
          sources_.push_back(std::move(s));
          continue;
        }
        Source& known = sources_[at->second];
        for (int32_t l : s.mean) {
          if (std::find(known.mean.begin(), known.mean.end(), l) == known.mean.end()) {
            known.mean.push_back(l);
          }
        }
        for (int32_t l : s.all) {
          if (std::find(known.all.begin(), known.all.end(), l) == known.all.end()) {
            known.all.push_back(l);
          }
        }
      }
    }
    addToMesh(f, meshNodes);
  }
}

void Expansion::finishElements(Warnings& warnings) {
  // The scan of this element block ends here; a later block starts afresh.
  ElementScan scan = std::move(scan_);
  scan_ = ElementScan();
  const LabelBits& meshNodes = scan.meshNodes;
  const size_t unknown = scan.unknown, unmapped = scan.unmapped, changed = scan.changed,
               foreign = scan.foreign, sharedElements = scan.sharedElements;
  const std::string &firstChanged = scan.firstChanged, &firstUnknown = scan.firstUnknown,
                    &firstUnmapped = scan.firstUnmapped;
  if (foreign * 10 > sharedElements) {
    throw InputError(path_ + ": the result file belongs to another model: " + firstChanged);
  }
  if (changed > 0) {
    warnings.warn("frd-changed-elements",
                  path_ + ": " + std::to_string(changed) + " of the " +
                      std::to_string(sharedElements) +
                      " elements that the result file shares with the deck have other nodes "
                      "there (the first: " +
                      firstChanged +
                      "; the solver splits elements at pre-tension sections): the deck's are kept");
  }
  // Deck nodes of expanded elements whose values the result file has only on the
  // expanded nodes, and which are not mapped back.
  LabelBits mapped, unmappedNodes;
  for (const Source& s : sources_) mapped.insert(s.deckNode);
  const ElementList& elements = deck_.elements;
  std::vector<bool> expands;  // by type number
  for (const std::string& type : elements.typeNames())
    expands.push_back(layoutOf(type) || startsWith(type, "CAX"));
  for (size_t i = 0; i < elements.size(); ++i) {
    if (!expands[elements.typeNumbers()[i]]) continue;
    for (int32_t n : elements[i].nodes) {
      if (!mapped.count(n) && !frdNodes_.count(n)) unmappedNodes.insert(n);
    }
  }

  std::vector<int32_t> labels;
  for (const auto& entry : extraNodes_) {
    if (meshNodes.count(entry.first)) labels.push_back(entry.first);
  }
  std::sort(labels.begin(), labels.end());
  for (int32_t label : labels) {
    const FrdNode& n = extraNodes_.at(label);
    mesh_.nodeLabels.push_back(label);
    mesh_.coordinates.push_back(static_cast<float>(n.x));
    mesh_.coordinates.push_back(static_cast<float>(n.y));
    mesh_.coordinates.push_back(static_cast<float>(n.z));
    expandedNodes_.insert(label);
  }
  size_t loose = extraNodes_.size() - expandedNodes_.size();
  if (unknown > 0) {
    warnings.warn("frd-unknown-elements",
                  path_ + ": " + std::to_string(unknown) +
                      " elements of the result file that the deck does not define (first " +
                      firstUnknown + ") are not imported");
  }
  if (loose > 0) {
    warnings.warn("frd-unknown-nodes",
                  path_ + ": " + std::to_string(loose) +
                      " nodes of the result file that the deck does not define and no expanded "
                      "element uses: their values are not imported");
  }
  if (unmapped > 0 || !unmappedNodes.empty()) {
    warnings.warn("frd-unmapped",
                  path_ + ": the values at " + std::to_string(unmappedNodes.size()) +
                      " deck nodes of shells and beams are on the expanded instance only: " +
                      (unmapped > 0 ? std::to_string(unmapped) + " expanded elements (first " +
                                          firstUnmapped +
                                          ") cannot be mapped back (shell "
                                          "offset, axisymmetric or composite expansion)"
                                    : std::string("composite shells are not mapped back")) +
                      "; ask for OUTPUT=2D on *NODE FILE to have them at the deck's nodes");
  }
}

}  // namespace odbs::ccx
