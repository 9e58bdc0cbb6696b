#include "results/instance_names.h"

#include "odb/odb.h"

namespace odbs {

InstanceNumbering::InstanceNumbering(const odb_Odb& odb) {
  int32_t n = 0;
  for (const auto& entry : odb.rootAssembly().instances().members()) numbers_[entry.first] = ++n;
}

InstanceNumbering::InstanceNumbering(const std::vector<std::string>& names) {
  int32_t n = 0;
  for (const std::string& name : names) numbers_[name] = ++n;
}

int32_t InstanceNumbering::numberOf(const std::string& name) const {
  auto it = numbers_.find(name);
  return it == numbers_.end() ? 0 : it->second;
}

void InstanceHeaders::enter(const std::string& name, const std::string& shownAs,
                            ReplyChannel& out) {
  if (!multi_ || name == last_) return;
  out.queueText(shownAs, kRecInstanceHeader);
  last_ = name;
}

}  // namespace odbs
