#include "tools/odb_build/json_reader.h"

#include <cmath>
#include <limits>

namespace odb {
namespace {
std::string escapeKey(const std::string& k) {
  std::string out;
  for (char c : k) out += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
  return out;
}
}  // namespace

JsonAt JsonAt::operator[](const std::string& key) const {
  if (!v_->is_object()) fail("expected an object");
  auto it = v_->find(key);
  if (it == v_->end()) fail("missing member \"" + key + "\"");
  return JsonAt(*it, path_ + "/" + escapeKey(key));
}

JsonAt JsonAt::operator[](size_t i) const {
  if (!v_->is_array() || i >= v_->size())
    fail("expected an array of more than " + std::to_string(i) + " values");
  return JsonAt((*v_)[i], path_ + "/" + std::to_string(i));
}

size_t JsonAt::size() const {
  if (!v_->is_array()) fail("expected an array");
  return v_->size();
}

void JsonAt::allowOnly(std::initializer_list<const char*> keys) const {
  if (!v_->is_object()) fail("expected an object");
  for (auto it = v_->begin(); it != v_->end(); ++it) {
    bool known = false;
    for (const char* k : keys) known = known || it.key() == k;
    if (!known) fail("unknown member \"" + escapeKey(it.key()) + "\"");
  }
}

std::vector<std::pair<std::string, JsonAt>> JsonAt::members() const {
  if (!v_->is_object()) fail("expected an object");
  std::vector<std::pair<std::string, JsonAt>> out;
  for (auto it = v_->begin(); it != v_->end(); ++it) {
    if (it.key().find('\0') != std::string::npos) fail("a name holds a NUL character");
    out.emplace_back(it.key(), JsonAt(it.value(), path_ + "/" + escapeKey(it.key())));
  }
  return out;
}

std::string JsonAt::str() const {
  if (!v_->is_string()) fail("expected a text");
  std::string s = v_->get<std::string>();
  if (s.find('\0') != std::string::npos) fail("a text holds a NUL character");
  return s;
}

double JsonAt::num() const {
  if (!v_->is_number()) fail("expected a number");
  double d = v_->get<double>();
  if (!std::isfinite(d)) fail("expected a finite number");
  return d;
}

int32_t JsonAt::i32() const {
  if (!v_->is_number_integer()) fail("expected an integer");
  int64_t v = v_->is_number_unsigned() && v_->get<uint64_t>() > uint64_t(INT32_MAX)
                  ? int64_t(INT32_MAX) + 1
                  : v_->get<int64_t>();
  if (v < std::numeric_limits<int32_t>::min() || v > std::numeric_limits<int32_t>::max())
    fail("integer out of the 32-bit range");
  return static_cast<int32_t>(v);
}

bool JsonAt::boolean() const {
  if (!v_->is_boolean()) fail("expected true or false");
  return v_->get<bool>();
}

std::vector<int32_t> JsonAt::ints() const {
  std::vector<int32_t> out(size());
  for (size_t i = 0; i < out.size(); ++i) out[i] = (*this)[i].i32();
  return out;
}

std::vector<float> JsonAt::floats() const {
  std::vector<float> out(size());
  for (size_t i = 0; i < out.size(); ++i) out[i] = static_cast<float>((*this)[i].num());
  return out;
}

std::vector<std::vector<float>> JsonAt::table() const {
  std::vector<std::vector<float>> out(size());
  for (size_t i = 0; i < out.size(); ++i) out[i] = (*this)[i].floats();
  return out;
}

std::string JsonAt::str(const std::string& key, const std::string& fallback) const {
  return has(key) ? (*this)[key].str() : fallback;
}
double JsonAt::num(const std::string& key, double fallback) const {
  return has(key) ? (*this)[key].num() : fallback;
}
int32_t JsonAt::i32(const std::string& key, int32_t fallback) const {
  return has(key) ? (*this)[key].i32() : fallback;
}

}  // namespace odb
