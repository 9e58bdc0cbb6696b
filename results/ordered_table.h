// Ordered table: entries kept in the order of a caller-supplied three-way comparison
// (negative, zero, positive), with an entry count and a frozen flag.
//
// The owner freezes a table while it walks it; inserting into a frozen table is a
// programming error that prints a fixed diagnostic to standard error and aborts the
// process. Lookups never change the table.
#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

namespace odbs {

// The diagnostic of an insertion into a frozen table, kept as it has always read.
constexpr const char kFrozenTableMessage[] = "Kati pige strava sto genm8\n";

// Entries the tables of the field walk are sized for at creation.
constexpr size_t kTableInitialCapacity = 100000;

[[noreturn]] inline void abortFrozenInsert() {
  std::fputs(kFrozenTableMessage, stderr);
  std::fflush(stderr);
  std::abort();
}

// Key and Payload are small value types; Compare is int(const Key&, const Key&).
template <typename Key, typename Payload, int (*Compare)(const Key&, const Key&)>
class OrderedTable {
 public:
  explicit OrderedTable(size_t capacity = kTableInitialCapacity) : capacity_(capacity) {}

  // Returns the entry's payload and true when the key was new (its payload then
  // value-initialised), or the present entry and false. Aborts on a frozen table.
  std::pair<Payload*, bool> insert(const Key& key) {
    if (frozen_) abortFrozenInsert();
    auto r = entries_.try_emplace(key);
    if (r.second && entries_.size() > capacity_) capacity_ *= 2;
    return {&r.first->second, r.second};
  }
  // The payload under key, or nullptr.
  const Payload* find(const Key& key) const {
    auto it = entries_.find(key);
    return it == entries_.end() ? nullptr : &it->second;
  }
  Payload* find(const Key& key) {
    auto it = entries_.find(key);
    return it == entries_.end() ? nullptr : &it->second;
  }
  size_t size() const { return entries_.size(); }
  size_t capacity() const { return capacity_; }
  bool frozen() const { return frozen_; }
  void setFrozen(bool frozen) { frozen_ = frozen; }

  // Visits every entry in key order; f(const Key&, Payload&).
  template <typename F>
  void forEach(F f) {
    for (auto& e : entries_) f(e.first, e.second);
  }
  // The entries in key order.
  std::vector<std::pair<Key, Payload>> flatten() const {
    return std::vector<std::pair<Key, Payload>>(entries_.begin(), entries_.end());
  }
  // Drops every entry and the frozen flag.
  void release() {
    entries_.clear();
    frozen_ = false;
  }

 private:
  struct Less {
    bool operator()(const Key& a, const Key& b) const { return Compare(a, b) < 0; }
  };
  std::map<Key, Payload, Less> entries_;
  size_t capacity_;
  bool frozen_ = false;
};

}  // namespace odbs
