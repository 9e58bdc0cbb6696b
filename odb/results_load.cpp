// Loads the step catalogue and, lazily, frames, field outputs and history.
#include "odb/results_store.h"

namespace odb {

odb_StepRepository loadSteps(const SourcePtr& src) {
  odb_StepRepository repo;
  h5::Group root = src->file.root();
  if (!root.has("steps")) return repo;
  h5::Group g = root.open("steps");
  std::vector<std::string> names = g.readStrings("names");
  for (size_t i = 0; i < names.size(); ++i) {
    h5::Group s = g.open(std::to_string(i));
    repo.add(std::make_unique<odb_Step>(
        names[i], s.getString("description"), s.getString("procedure"),
        static_cast<int>(s.getInt("domain")), s.getDouble("total_time")));
  }
  return repo;
}

}  // namespace odb
