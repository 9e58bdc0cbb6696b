#include "context/odb_context.h"

#include <algorithm>
#include <vector>

namespace odbs {

namespace {

std::vector<OpenSetUp>& setUps() {
  static std::vector<OpenSetUp> list;
  return list;
}

}  // namespace

void registerOpenSetUp(OpenSetUp setUp) {
  auto& list = setUps();
  if (std::find(list.begin(), list.end(), setUp) == list.end()) list.push_back(setUp);
}

void runOpenSetUps(OdbContext& ctx) {
  for (OpenSetUp setUp : setUps()) setUp(ctx);
}

}  // namespace odbs
