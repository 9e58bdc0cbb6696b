#include "odb/model_data.h"

#include <algorithm>

namespace odb {

void ElementData::add(const std::string& typeName, int32_t label, const int32_t* nodes, int count,
                      int32_t category) {
  // Runs of one type are the rule: the previous element's type is tried first.
  int32_t type = -1;
  if (!typeIndex.empty() && typeIndex.back() >= 0 &&
      static_cast<size_t>(typeIndex.back()) < typeNames.size() &&
      typeNames[typeIndex.back()] == typeName) {
    type = typeIndex.back();
  } else {
    auto it = std::find(typeNames.begin(), typeNames.end(), typeName);
    if (it == typeNames.end()) it = typeNames.insert(typeNames.end(), typeName);
    type = static_cast<int32_t>(it - typeNames.begin());
  }
  if (offsets.empty()) offsets.push_back(0);
  labels.push_back(label);
  typeIndex.push_back(type);
  connectivity.insert(connectivity.end(), nodes, nodes + count);
  offsets.push_back(static_cast<int64_t>(connectivity.size()));
  categoryIndex.push_back(category);
}

void SetData::addMembers(const std::string& instance, const std::vector<int32_t>& memberLabels,
                         const std::vector<int32_t>& memberFaces) {
  instanceNames.push_back(instance);
  counts.push_back(static_cast<int64_t>(memberLabels.size()));
  labels.insert(labels.end(), memberLabels.begin(), memberLabels.end());
  faces.insert(faces.end(), memberFaces.begin(), memberFaces.end());
}

}  // namespace odb
