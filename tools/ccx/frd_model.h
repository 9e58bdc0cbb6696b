// The contents of a CalculiX result file (.frd) as plain data: its header, the mesh it was
// written for, and its result blocks. One result block holds one quantity ("DISP",
// "STRESS", "DISPI" for the imaginary part of a complex displacement) of one increment or
// mode at the nodes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/ccx/element_list.h"

namespace odbs::ccx {

struct FrdNode {
  int32_t label = 0;
  double x = 0, y = 0, z = 0;
};

// The node labels of one element of the result file, held in the element itself: the
// solver's element types have at most 20 nodes, and a mesh of a million elements then costs
// no allocation per element.
class FrdElementNodes {
 public:
  static constexpr size_t kMax = 20;
  using value_type = int32_t;
  using const_iterator = const int32_t*;

  // Makes room for n labels (new ones 0). Throws std::length_error above kMax.
  void resize(size_t n) {
    if (n > kMax) throw std::length_error("an element of more than 20 nodes");
    for (size_t i = count_; i < n; ++i) labels_[i] = 0;
    count_ = static_cast<uint8_t>(n);
  }
  size_t size() const { return count_; }
  bool empty() const { return count_ == 0; }
  int32_t* data() { return labels_.data(); }
  const int32_t* data() const { return labels_.data(); }
  int32_t& operator[](size_t i) { return labels_[i]; }
  int32_t operator[](size_t i) const { return labels_[i]; }
  const int32_t* begin() const { return labels_.data(); }
  const int32_t* end() const { return labels_.data() + count_; }
  operator NodeLabels() const { return NodeLabels(labels_.data(), count_); }

 private:
  std::array<int32_t, kMax> labels_;
  uint8_t count_ = 0;
};

struct FrdElement {
  int32_t label = 0;
  int typeCode = 0;  // 1 = 8-node brick, 4 = 20-node brick, ... (element_types.h)
  int group = 0;
  int material = 0;
  FrdElementNodes nodes;
};

struct FrdComponent {
  std::string name;  // "D1", "SXX", ...
  int type = 1;      // 1 scalar, 2 vector, 4 tensor, 12/14 amplitude and phase
  int row = 0, column = 0;
  // False for components the file announces but does not hold (the vector magnitude
  // "ALL"): readers compute those themselves.
  bool stored = true;
};

struct FrdBlock {
  std::string name;        // "DISP", "STRESS", "TOSTRAIN", "FORC", "CONTACT", "DISPI", ...
  int step = 0;            // step number of the deck (from the 1PSTEP line)
  int increment = 0;       // increment within the step (0 for steady-state points)
  int counter = 0;         // running number of the block's load case in the file
  double value = 0;        // step time, frequency or load factor
  int valueDecimals = -1;  // decimal places to which the file gives value (-1: not known)
  int analysisType = 0;    // 0 static, 1 time step, 2 frequency, 3 load step, 4 user
  int loadCase = 0;        // the solver's running number of the increment or mode
  int mode = 0;            // eigenmode number (from 1PMODE), 0 when the block is not a mode
  std::string analysis;    // "MODAL", "" otherwise
  int resultType = 1;      // 1 nodal, 2 nodal material dependent, 3 element at nodes
  int64_t line = 0;        // line of the block's "100C" header
  // Where the block begins, for messages: "<file>:<line>", or "<file> (byte offset N)"
  // once binary data has come before it (binary data has no lines).
  std::string location;
  bool binary = false;                           // the rows were stored in binary
  std::vector<FrdComponent> components;          // every announced component
  std::vector<std::string> storedNames() const;  // names of the stored components, in order
  int storedCount() const;
  std::vector<int32_t> nodes;  // one label per row
  std::vector<float> values;   // rows of storedCount() values, row-major
};

struct FrdHeader {
  std::string title;                        // the first user header line: the deck's heading
  std::map<std::string, std::string> user;  // "DATE", "VERSION", ... of the user header lines
  std::map<int, std::string> materials;     // 1UMAT lines: number -> name
};

}  // namespace odbs::ccx
