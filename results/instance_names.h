// Instances in result replies: whether a database has several part instances (only then
// are instance-name records sent), the number of each instance used in the keys of places,
// and the record that names the instance of the values that follow.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "context/reply_channel.h"

class odb_Odb;

namespace odbs {

class InstanceNumbering {
 public:
  // Numbers the instances of the root assembly 1, 2, ... in repository order; the root
  // assembly itself (an empty instance name) is 0.
  explicit InstanceNumbering(const odb_Odb& odb);
  // The same for the given instance names (in repository order).
  explicit InstanceNumbering(const std::vector<std::string>& names);
  bool multiInstance() const { return numbers_.size() > 1; }
  // 0 for a name that is not an instance.
  int32_t numberOf(const std::string& name) const;

 private:
  std::map<std::string, int32_t> numbers_;
};

// Sends an instance-name record ('H', counted text) through the pending buffer whenever
// the instance changes, for multi-instance databases only. The remembered name starts
// empty, so blocks of the root assembly before any instance send none.
class InstanceHeaders {
 public:
  explicit InstanceHeaders(bool multiInstance) : multi_(multiInstance) {}
  void enter(const std::string& name, ReplyChannel& out) { enter(name, name, out); }
  // The same, the record carrying shownAs instead of name (the contact output names a
  // block without instance after the root assembly).
  void enter(const std::string& name, const std::string& shownAs, ReplyChannel& out);

 private:
  bool multi_;
  std::string last_;
};

}  // namespace odbs
