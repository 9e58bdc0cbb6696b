#include "tools/ccx/warnings.h"

namespace odbs::ccx {

Warnings::Warnings(std::function<void(const std::string&)> sink) : sink_(std::move(sink)) {}

void Warnings::warn(const std::string& key, const std::string& text) {
  if (counts_[key]++ > 0) return;
  keys_.push_back(key);
  texts_.push_back(text);
}

void Warnings::flush() {
  for (; flushed_ < texts_.size(); ++flushed_) {
    int n = counts_[keys_[flushed_]];
    std::string text = texts_[flushed_];
    if (n > 1) text += " [" + std::to_string(n) + " times in all; the first is shown]";
    if (sink_) sink_(text);
  }
}

int Warnings::count(const std::string& key) const {
  auto it = counts_.find(key);
  return it == counts_.end() ? 0 : it->second;
}

}  // namespace odbs::ccx
