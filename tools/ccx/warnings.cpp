#include "tools/ccx/warnings.h"

namespace odbs::ccx {

Warnings::Warnings(std::function<void(const std::string&)> sink) : sink_(std::move(sink)) {}

void Warnings::warn(const std::string& key, const std::string& text) {
  if (counts_[key]++ > 0) return;
  texts_.push_back(text);
  if (sink_) sink_(text);
}

int Warnings::count(const std::string& key) const {
  auto it = counts_.find(key);
  return it == counts_.end() ? 0 : it->second;
}

}  // namespace odbs::ccx
