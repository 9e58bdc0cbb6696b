// The deck's elements stored flat (ElementList) and read through views (Element,
// NodeLabels): a label and a type number per element, the type names once, and all node
// labels in one array, where a struct with its own string and vector per element would
// take several times the memory of a large mesh.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <vector>

namespace odbs::ccx {

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
  friend bool operator==(NodeLabels a, NodeLabels b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
  }

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

}  // namespace odbs::ccx
