// Collects the warnings of one import. Each distinct warning key is reported once, however
// often the input repeats the cause (an unknown keyword used in every step gives one
// warning), and the count of repeats is kept so that the summary can mention it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace odbs::ccx {

class Warnings {
 public:
  // sink receives each warning text when it is first reported; none keeps them silently.
  explicit Warnings(std::function<void(const std::string&)> sink = nullptr);

  // Reports text under key; only the first report of a key reaches the sink and the list.
  void warn(const std::string& key, const std::string& text);

  const std::vector<std::string>& texts() const { return texts_; }
  // How many times key was reported (0 when never).
  int count(const std::string& key) const;

 private:
  std::function<void(const std::string&)> sink_;
  std::map<std::string, int> counts_;
  std::vector<std::string> texts_;
};

}  // namespace odbs::ccx
