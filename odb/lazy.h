// A value loaded from the database file on first use and kept until cleared. The loader
// runs at most once per load; an exception from it propagates and leaves the value
// unloaded, so a later call tries again. Copies share the loaded value.
// Not thread-safe: one thread uses a database at a time.
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace odb {

template <typename T>
class Lazy {
 public:
  Lazy() : value_(std::make_shared<T>()) {}
  explicit Lazy(T v) : value_(std::make_shared<T>(std::move(v))) {}
  explicit Lazy(std::function<T()> load) : load_(std::move(load)) {}

  const T& get() const {
    if (!value_) value_ = std::make_shared<T>(load_());
    return *value_;
  }
  T& getMutable() {
    get();
    return *value_;
  }
  bool loaded() const { return value_ != nullptr; }
  // Releases the loaded value when it can be loaded again; a value given directly stays.
  void clear() {
    if (load_) value_.reset();
  }

 private:
  std::function<T()> load_;
  mutable std::shared_ptr<T> value_;
};

}  // namespace odb
