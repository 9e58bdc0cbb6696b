// Read API of the results: steps (in the order written) and their catalogue.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "odb/containers.h"
#include "odb/enums.h"

class odb_Step {
 public:
  odb_Step(std::string name, std::string description, std::string procedure, int domain,
           double totalTime)
      : name_(std::move(name)),
        description_(std::move(description)),
        procedure_(std::move(procedure)),
        domain_(domain),
        totalTime_(totalTime) {}
  const std::string& name() const { return name_; }
  const std::string& description() const { return description_; }
  const std::string& procedure() const { return procedure_; }
  odb_Enum::odb_DomainEnum domain() const { return static_cast<odb_Enum::odb_DomainEnum>(domain_); }
  double totalTime() const { return totalTime_; }

 private:
  std::string name_, description_, procedure_;
  int domain_;
  double totalTime_;
};

// Steps by name, iterated in the order they were added.
class odb_StepRepository {
 public:
  int size() const { return static_cast<int>(steps_.size()); }
  bool isMember(const std::string& name) const { return index_.count(name) != 0; }
  const odb_Step& operator[](const std::string& name) const { return get(name); }
  const odb_Step& get(const std::string& name) const;
  // Step names in insertion order.
  const odb_SequenceString& stepNames() const { return names_; }
  const odb_Step& at(int i) const { return *steps_.at(static_cast<size_t>(i)); }
  void add(std::unique_ptr<odb_Step> s);

 private:
  std::vector<std::unique_ptr<odb_Step>> steps_;
  std::map<std::string, size_t> index_;
  odb_SequenceString names_;
};

class odb_StepRepositoryIT {
 public:
  explicit odb_StepRepositoryIT(const odb_StepRepository& r) : r_(&r) {}
  void first() { i_ = 0; }
  void next() {
    if (!isDone()) ++i_;
  }
  bool isDone() const { return i_ >= r_->size(); }
  const std::string& currentKey() const { return r_->stepNames()[i_]; }
  const odb_Step& currentValue() const { return r_->at(i_); }

 private:
  const odb_StepRepository* r_;
  int i_ = 0;
};
