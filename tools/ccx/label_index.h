// Look-up tables keyed by node or element label, for the import's large meshes.
//
// Labels of a deck are mostly 1..n with few gaps, so a table indexed by the label itself is
// both smaller and faster than a hash table (a 200,000-node model: 25 KB of bits against
// about 8 MB of hash nodes). Labels far beyond the count (sparse numbering, negative
// labels) go to a hash table beside it, so any label set works, only more slowly.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace odbs::ccx {

namespace label_detail {
// Labels below this bound (grown with the table's size) are kept in the dense part, so
// that it takes at most about spread entries per label held.
inline int64_t denseBound(size_t size, size_t hint, int spread) {
  return spread * static_cast<int64_t>(size > hint ? size : hint) + (int64_t(1) << 16);
}
// The size a dense table grows to so that it holds entry at: half again its size, and at
// once the expected count (labels 1..n take one allocation instead of a growth by copies).
inline size_t grownSize(size_t at, size_t size, size_t hint) {
  size_t grown = at + 1 + size / 2;
  return grown > hint + 1 ? grown : hint + 1;
}
}  // namespace label_detail

// A set of labels.
class LabelBits {
 public:
  // The number of labels expected: widens the dense range from the start, and the first
  // label sizes the table for that many.
  void reserve(size_t labels) { hint_ = labels > hint_ ? labels : hint_; }
  // Adds label; true when it was not there yet.
  bool insert(int32_t label) {
    if (label >= 0 && label < label_detail::denseBound(size_, hint_, 64)) {
      size_t word = static_cast<size_t>(label) >> 6;
      uint64_t bit = uint64_t(1) << (label & 63);
      if (word >= bits_.size())
        bits_.resize(label_detail::grownSize(word, bits_.size(), hint_ / 64), 0);
      if (bits_[word] & bit) return false;
      if (!sparse_.empty() && sparse_.count(label)) return false;  // added when out of range
      bits_[word] |= bit;
    } else if (!sparse_.insert(label).second) {
      return false;
    }
    ++size_;
    return true;
  }
  bool contains(int32_t label) const {
    if (label >= 0) {
      size_t word = static_cast<size_t>(label) >> 6;
      if (word < bits_.size() && (bits_[word] >> (label & 63) & 1)) return true;
    }
    return !sparse_.empty() && sparse_.count(label) > 0;
  }
  size_t count(int32_t label) const { return contains(label) ? 1 : 0; }
  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

 private:
  std::vector<uint64_t> bits_;
  std::unordered_set<int32_t> sparse_;
  size_t size_ = 0, hint_ = 0;
};

// A map from label to a position (an index into the caller's own table).
class LabelIndex {
 public:
  static constexpr uint32_t kNone = UINT32_MAX;

  void reserve(size_t labels) { hint_ = labels > hint_ ? labels : hint_; }
  // Maps label to index unless it is mapped already; true when it was new. index must be
  // below kNone.
  bool emplace(int32_t label, size_t index) {
    if (label >= 0 && label < label_detail::denseBound(size_, hint_, 4)) {
      size_t at = static_cast<size_t>(label);
      if (at >= dense_.size())
        dense_.resize(label_detail::grownSize(at, dense_.size(), hint_), kNone);
      if (dense_[at] != kNone || (!sparse_.empty() && sparse_.count(label))) return false;
      dense_[at] = static_cast<uint32_t>(index);
    } else if (!sparse_.emplace(label, static_cast<uint32_t>(index)).second) {
      return false;
    }
    ++size_;
    return true;
  }
  // The index of label, or kNone.
  uint32_t find(int32_t label) const {
    if (label >= 0 && static_cast<size_t>(label) < dense_.size() && dense_[label] != kNone) {
      return dense_[label];
    }
    if (sparse_.empty()) return kNone;
    auto it = sparse_.find(label);
    return it == sparse_.end() ? kNone : it->second;
  }
  size_t count(int32_t label) const { return find(label) == kNone ? 0 : 1; }
  size_t size() const { return size_; }
  bool empty() const { return size_ == 0; }

 private:
  std::vector<uint32_t> dense_;
  std::unordered_map<int32_t, uint32_t> sparse_;
  size_t size_ = 0, hint_ = 0;
};

}  // namespace odbs::ccx
