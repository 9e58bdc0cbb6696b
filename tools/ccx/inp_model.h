// The model of a CalculiX input deck as plain data: what the deck defines, in the order it
// defines it, with names upper-cased the way the solver itself treats them. Filled by
// parseDeck (inp_parser.h); read by the importer.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace odbs::ccx {

// Where a card of the deck begins, for messages about it.
struct SourceRef {
  std::string file;
  int64_t line = 0;
};

struct Node {
  int32_t label = 0;
  double x = 0, y = 0, z = 0;
};

// The node labels of one element: a view into the deck's element store.
class NodeLabels {
 public:
  using value_type = int32_t;
  using const_iterator = const int32_t*;
  using iterator = const_iterator;

  NodeLabels() = default;
  NodeLabels(const int32_t* first, size_t count) : first_(first), count_(count) {}
  const int32_t* data() const { return first_; }
  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  const int32_t* begin() const { return first_; }
  const int32_t* end() const { return first_ + count_; }
  int32_t operator[](size_t i) const { return first_[i]; }
  std::vector<int32_t> toVector() const { return {begin(), end()}; }

  friend bool operator==(NodeLabels a, const std::vector<int32_t>& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
  }
  friend bool operator==(const std::vector<int32_t>& a, NodeLabels b) { return b == a; }

 private:
  const int32_t* first_ = nullptr;
  size_t count_ = 0;
};

// One element of the deck, as a view into the deck's element store (ElementList): valid
// while the store is not changed.
struct Element {
  int32_t label;
  const std::string& type;  // as the deck names it, upper case: "C3D8", "S8R", ...
  NodeLabels nodes;
};

// The deck's elements in deck order, stored flat: a label and a type number per element,
// the type names once, and the node labels of all elements in one array with an offset
// per element (about 4 bytes per node label plus 16 per element, against a string and a
// vector of its own per element). Read through Element views: elements[i], or a range for.
class ElementList {
 public:
  class const_iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Element;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = Element;
    const_iterator(const ElementList* list, size_t at) : list_(list), at_(at) {}
    Element operator*() const { return (*list_)[at_]; }
    const_iterator& operator++() {
      ++at_;
      return *this;
    }
    bool operator==(const const_iterator& o) const { return at_ == o.at_; }
    bool operator!=(const const_iterator& o) const { return at_ != o.at_; }

   private:
    const ElementList* list_;
    size_t at_;
  };

  size_t size() const { return labels_.size(); }
  bool empty() const { return labels_.empty(); }
  Element operator[](size_t i) const {
    return Element{labels_[i], typeNames_[typeOf_[i]],
                   NodeLabels(nodes_.data() + offsets_[i],
                              static_cast<size_t>(offsets_[i + 1] - offsets_[i]))};
  }
  const_iterator begin() const { return {this, 0}; }
  const_iterator end() const { return {this, size()}; }

  // The type number of name (upper case), which is entered on first use: numbers count
  // from 0 in the order of first use.
  int32_t typeNumber(const std::string& name);
  // Appends an element of type number type (from typeNumber). The node labels are copied.
  void add(int32_t label, int32_t type, const int32_t* nodes, size_t count) {
    labels_.push_back(label);
    typeOf_.push_back(type);
    nodes_.insert(nodes_.end(), nodes, nodes + count);
    offsets_.push_back(static_cast<int64_t>(nodes_.size()));
  }
  // Keeps the elements for which keep(Element) is true, in their order.
  template <typename Keep>
  void keepIf(Keep keep);
  // Gives back what the growth of the arrays left over.
  void shrinkToFit();

  // The store itself, for bulk readers: per element its label, its type number (an index
  // into typeNames) and where its node labels start in nodeLabels (offsets has one entry
  // more than there are elements; offsets[0] is 0).
  const std::vector<std::string>& typeNames() const { return typeNames_; }
  const std::vector<int32_t>& labels() const { return labels_; }
  const std::vector<int32_t>& typeNumbers() const { return typeOf_; }
  const std::vector<int64_t>& offsets() const { return offsets_; }
  const std::vector<int32_t>& nodeLabels() const { return nodes_; }

 private:
  std::vector<std::string> typeNames_;
  std::vector<int32_t> labels_;
  std::vector<int32_t> typeOf_;
  std::vector<int64_t> offsets_{0};
  std::vector<int32_t> nodes_;
};

template <typename Keep>
void ElementList::keepIf(Keep keep) {
  // Moved down in place: an element's node labels never lie below where they go, and the
  // offsets written for the kept elements lie below the one read next.
  size_t kept = 0;
  int64_t end = 0, next = 0;
  for (size_t i = 0; i < size(); ++i) {
    const int64_t from = next;
    next = offsets_[i + 1];
    const NodeLabels nodes(nodes_.data() + from, static_cast<size_t>(next - from));
    if (!keep(Element{labels_[i], typeNames_[typeOf_[i]], nodes})) continue;
    std::copy(nodes_.begin() + from, nodes_.begin() + next, nodes_.begin() + end);
    labels_[kept] = labels_[i];
    typeOf_[kept] = typeOf_[i];
    end += next - from;
    offsets_[++kept] = end;
  }
  labels_.resize(kept);
  typeOf_.resize(kept);
  offsets_.resize(kept + 1);
  nodes_.resize(static_cast<size_t>(end));
}

// A node or element set: its members in the order the deck lists them, each once.
struct LabelSet {
  std::string name;
  std::vector<int32_t> labels;
  SourceRef where;
};

// *SURFACE: element faces (TYPE=ELEMENT, the default) or nodes (TYPE=NODE).
struct Surface {
  std::string name;
  bool nodeBased = false;
  struct Face {
    int32_t element = 0;
    std::string face;  // "S1" ... "S6", "SPOS", "SNEG", ...
  };
  std::vector<Face> faces;     // element-based surfaces
  std::vector<int32_t> nodes;  // node-based surfaces
  SourceRef where;
};

// One table of a material behaviour: rows of numbers as the deck gives them; rows that the
// solver reads across several lines (orthotropic constants) are joined into one row.
struct MaterialTable {
  std::string type;  // the TYPE= parameter, upper case, "" when absent
  std::vector<std::vector<double>> rows;
};

struct Material {
  std::string name;
  std::optional<MaterialTable> density;
  std::optional<MaterialTable> elastic;
  // Every other behaviour of the material keyed by its keyword ("EXPANSION", "PLASTIC").
  std::map<std::string, MaterialTable> others;
  SourceRef where;
};

struct Orientation {
  std::string name;
  std::string system;  // "RECTANGULAR" (default) or "CYLINDRICAL"
  std::vector<double> values;
};

enum class SectionKind {
  Solid,
  Shell,
  CompositeShell,
  Membrane,
  Beam,
  Truss,  // a *SOLID SECTION assigned to truss elements (T2D2, T3D2, T3D3)
  Fluid,
  Gap,
  Spring,
  Dashpot,
  Mass,
  User,
};
const char* sectionKindName(SectionKind kind);

struct Layer {
  double thickness = 0;
  std::string material;
  std::string orientation;  // "" when the layer has none
};

struct Section {
  SectionKind kind = SectionKind::Solid;
  std::string keyword;  // "SOLID SECTION", "SHELL SECTION", ...
  std::string elset;
  std::string material;             // "" for kinds without a material (mass, spring, ...)
  std::string orientation;          // "" when none
  std::optional<double> thickness;  // shells, membranes, plane solids
  std::vector<Layer> layers;        // composite shells, bottom to top
  std::map<std::string, std::string> parameters;  // every parameter of the keyword line
  std::vector<std::vector<std::string>> data;     // its data lines, fields as written
  SourceRef where;
};

// A *CONTACT PAIR data line, or a *TIE data line (tie true, name its NAME).
struct ContactPair {
  bool tie = false;
  std::string name;         // *TIE only
  std::string interaction;  // *CONTACT PAIR only
  std::string type;         // "NODE TO SURFACE" (default), "SURFACE TO SURFACE", ...
  std::string slave, master;
};

// A print or file output request of a step (*NODE PRINT, *EL FILE, *CONTACT PRINT, ...).
struct OutputRequest {
  std::string keyword;
  std::string set;  // NSET= or ELSET= value, "" when the request covers everything
  std::vector<std::string> variables;
  std::map<std::string, std::string> parameters;
};

enum class StepDomain { Time, Frequency, Modal };

struct Step {
  int number = 0;           // 1-based, in deck order
  std::string name;         // NAME= of *STEP, else "Step-<number>"
  std::string description;  // a data line under *STEP, else the procedure keyword
  std::string procedure;    // "STATIC", "FREQUENCY", "DYNAMIC", "STEADY STATE DYNAMICS", ...
  std::map<std::string, std::string> procedureParameters;
  std::vector<double> procedureData;  // the procedure's first data line
  bool nlgeom = false;
  // Time for static, dynamic and heat steps; frequency for eigenvalue, steady-state and
  // complex-frequency steps; buckling steps count load factors and are Modal.
  StepDomain domain = StepDomain::Time;
  double timePeriod = 1.0;  // step time of time-domain steps
  std::vector<OutputRequest> outputs;
  SourceRef where;
};

struct Deck {
  std::string path;     // the top deck file
  std::string title;    // *HEADING, its first line
  std::string heading;  // all *HEADING lines joined with '\n'
  std::vector<Node> nodes;
  ElementList elements;
  std::vector<LabelSet> nodeSets;     // in order of first definition
  std::vector<LabelSet> elementSets;  // in order of first definition
  std::vector<Surface> surfaces;
  std::vector<Material> materials;
  std::vector<Orientation> orientations;
  std::vector<Section> sections;
  std::vector<ContactPair> contactPairs;  // contact pairs and ties, in deck order
  std::vector<Step> steps;

  const LabelSet* nodeSet(const std::string& name) const;
  const LabelSet* elementSet(const std::string& name) const;
  const Material* material(const std::string& name) const;
};

}  // namespace odbs::ccx
