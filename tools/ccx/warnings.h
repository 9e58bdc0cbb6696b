// Collects the warnings of one import. Each distinct warning key is one kind of skipped or
// changed input: the text of its first report (which names the first place) is kept, and
// later reports of the same key only count. flush() hands each kind to the sink once, with
// the count when there was more than one, so that a deck that repeats a cause a thousand
// times gives one line.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace odbs::ccx {

class Warnings {
 public:
  // sink receives each kind's text at flush(); none keeps them silently.
  explicit Warnings(std::function<void(const std::string&)> sink = nullptr);

  // Reports text under key; only the first report of a key keeps its text.
  void warn(const std::string& key, const std::string& text);

  // Hands the kinds not yet handed over to the sink, in the order they were first
  // reported: "<text>" or "<text> [<n> times in all; the first is shown]".
  void flush();

  // The first text of each kind, in order.
  const std::vector<std::string>& texts() const { return texts_; }
  // How many times key was reported (0 when never).
  int count(const std::string& key) const;

 private:
  std::function<void(const std::string&)> sink_;
  std::map<std::string, int> counts_;
  std::vector<std::string> keys_, texts_;
  size_t flushed_ = 0;
};

}  // namespace odbs::ccx
