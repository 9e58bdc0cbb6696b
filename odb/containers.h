// Containers of the database API: sequences (by position), repositories (by name, iterated
// in byte-wise key order) with their iterators, and the small value union.
//
// Indexing a sequence or looking up a repository key that is not there throws
// std::out_of_range with the index or key in the message.
#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using odb_String = std::string;

// A sequence of values by position.
template <typename T>
class odb_Sequence {
 public:
  odb_Sequence() = default;
  explicit odb_Sequence(std::vector<T> v) : v_(std::move(v)) {}
  int size() const { return static_cast<int>(v_.size()); }
  bool empty() const { return v_.empty(); }
  const T& operator[](int i) const { return at(i); }
  T& operator[](int i) { return const_cast<T&>(static_cast<const odb_Sequence&>(*this).at(i)); }
  const T& constGet(int i) const { return at(i); }
  void append(T v) { v_.push_back(std::move(v)); }
  const std::vector<T>& values() const { return v_; }
  std::vector<T>& values() { return v_; }
  typename std::vector<T>::const_iterator begin() const { return v_.begin(); }
  typename std::vector<T>::const_iterator end() const { return v_.end(); }

 private:
  const T& at(int i) const {
    if (i < 0 || static_cast<size_t>(i) >= v_.size())
      throw std::out_of_range("odb: index " + std::to_string(i) + " out of range (size " +
                              std::to_string(v_.size()) + ")");
    return v_[static_cast<size_t>(i)];
  }
  std::vector<T> v_;
};

using odb_SequenceInt = odb_Sequence<int>;
using odb_SequenceFloat = odb_Sequence<float>;
using odb_SequenceString = odb_Sequence<std::string>;
using odb_SequenceSequenceFloat = odb_Sequence<odb_Sequence<float>>;

// Objects keyed by name, iterated in byte-wise key order.
template <typename T>
class odb_Repository {
 public:
  int size() const { return static_cast<int>(m_.size()); }
  bool isMember(const std::string& key) const { return m_.count(key) != 0; }
  const T& operator[](const std::string& key) const { return get(key); }
  T& operator[](const std::string& key) { return const_cast<T&>(std::as_const(*this).get(key)); }
  const T& get(const std::string& key) const {
    auto it = m_.find(key);
    if (it == m_.end()) throw std::out_of_range("odb: no member '" + key + "'");
    return it->second;
  }
  T& get(const std::string& key) { return const_cast<T&>(std::as_const(*this).get(key)); }
  // Returns the member or nullptr.
  const T* find(const std::string& key) const {
    auto it = m_.find(key);
    return it == m_.end() ? nullptr : &it->second;
  }
  std::vector<std::string> keys() const {
    std::vector<std::string> k;
    for (const auto& e : m_) k.push_back(e.first);
    return k;
  }
  // Adds or replaces the member under key.
  T& insert(const std::string& key, T value) {
    return m_.insert_or_assign(key, std::move(value)).first->second;
  }
  const std::map<std::string, T>& members() const { return m_; }

 private:
  std::map<std::string, T> m_;
};

// Walks a repository in key order: for (it.first(); !it.isDone(); it.next()).
// The repository must outlive the iterator and stay unchanged while it walks.
template <typename T>
class odb_RepositoryIterator {
 public:
  explicit odb_RepositoryIterator(const odb_Repository<T>& r) : r_(&r), it_(r.members().begin()) {}
  void first() { it_ = r_->members().begin(); }
  void next() {
    if (!isDone()) ++it_;
  }
  bool isDone() const { return it_ == r_->members().end(); }
  const std::string& currentKey() const { return check()->first; }
  const T& currentValue() const { return check()->second; }

 private:
  typename std::map<std::string, T>::const_iterator check() const {
    if (isDone()) throw std::out_of_range("odb: iterator is past the end");
    return it_;
  }
  const odb_Repository<T>* r_;
  typename std::map<std::string, T>::const_iterator it_;
};

// A value of one of a few kinds. Type codes: 0 none, 1 integer, 2 float, 3 text.
class odb_Union {
 public:
  enum Type { NONE = 0, INT = 1, FLOAT = 2, STRING = 3 };
  odb_Union() = default;
  static odb_Union ofInt(int v) { return odb_Union(INT, v, 0.f, {}); }
  static odb_Union ofFloat(float v) { return odb_Union(FLOAT, 0, v, {}); }
  static odb_Union ofString(std::string v) { return odb_Union(STRING, 0, 0.f, std::move(v)); }
  int type() const { return type_; }
  int getInt() const { return i_; }
  float getFloat() const { return f_; }
  const std::string& getString() const { return s_; }

 private:
  odb_Union(Type t, int i, float f, std::string s) : type_(t), i_(i), f_(f), s_(std::move(s)) {}
  Type type_ = NONE;
  int i_ = 0;
  float f_ = 0.f;
  std::string s_;
};
