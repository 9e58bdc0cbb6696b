#include "tools/ccx/element_list.h"

namespace odbs::ccx {

int32_t ElementList::typeNumber(const std::string& name) {
  auto it = std::find(typeNames_.begin(), typeNames_.end(), name);
  if (it == typeNames_.end()) it = typeNames_.insert(typeNames_.end(), name);
  return static_cast<int32_t>(it - typeNames_.begin());
}

void ElementList::shrinkToFit() {
  labels_.shrink_to_fit();
  typeOf_.shrink_to_fit();
  offsets_.shrink_to_fit();
  nodes_.shrink_to_fit();
}

}  // namespace odbs::ccx
