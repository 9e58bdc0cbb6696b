#include "odb/results.h"

#include <stdexcept>

const odb_Step& odb_StepRepository::get(const std::string& name) const {
  auto it = index_.find(name);
  if (it == index_.end()) throw std::out_of_range("odb: no step '" + name + "'");
  return *steps_[it->second];
}

void odb_StepRepository::add(std::unique_ptr<odb_Step> s) {
  if (isMember(s->name())) throw std::invalid_argument("odb: duplicate step '" + s->name() + "'");
  index_[s->name()] = steps_.size();
  names_.append(s->name());
  steps_.push_back(std::move(s));
}
