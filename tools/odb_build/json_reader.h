// Typed access to a parsed JSON value that knows where it is: every failure throws
// odb::JsonError naming the JSON pointer of the offending value.
#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tools/odb_build/odb_json.h"

namespace odb {

class JsonAt {
 public:
  JsonAt(const nlohmann::json& v, std::string path) : v_(&v), path_(std::move(path)) {}
  const nlohmann::json& value() const { return *v_; }
  const std::string& path() const { return path_; }

  [[noreturn]] void fail(const std::string& what) const {
    throw JsonError("at " + (path_.empty() ? std::string("/") : path_) + ": " + what);
  }
  bool has(const std::string& key) const { return v_->is_object() && v_->contains(key); }
  // Fails unless this is an object whose members all have one of the given names: a
  // misspelt member is an error, not a default.
  void allowOnly(std::initializer_list<const char*> keys) const;
  JsonAt operator[](const std::string& key) const;  // a missing key fails
  JsonAt operator[](size_t i) const;
  size_t size() const;  // of an array (fails for anything else)
  // Members of an object, in the document's key order (sorted by nlohmann); a key with a
  // NUL character fails.
  std::vector<std::pair<std::string, JsonAt>> members() const;

  std::string str() const;  // a text without NUL characters
  int32_t i32() const;
  double num() const;
  bool boolean() const;
  std::vector<int32_t> ints() const;
  std::vector<float> floats() const;
  std::vector<std::vector<float>> table() const;  // array of arrays of numbers

  // Optional members with a fallback.
  std::string str(const std::string& key, const std::string& fallback) const;
  double num(const std::string& key, double fallback) const;
  int32_t i32(const std::string& key, int32_t fallback) const;

 private:
  const nlohmann::json* v_;
  std::string path_;
};

}  // namespace odb
