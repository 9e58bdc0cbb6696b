// The step list, each step's attributes and its frame catalogue: store and load side by
// side. Field outputs and history load lazily (store_fields.cpp, store_history.cpp).
#include "odb/results_store.h"
#include "odb/store_util.h"

namespace odb {

void storeStepHeader(const h5::Group& step, const StepData& s) {
  step.setString(name::kName, s.name);
  step.setString(name::kDescription, s.description);
  step.setString(name::kProcedure, s.procedure);
  step.setInt(name::kDomain, s.domain);
  step.setDouble(name::kTotalTime, s.totalTime);
}

StepData loadStepHeader(const h5::Group& step, const std::string& stepName) {
  return {stepName, step.getString(name::kDescription), step.getString(name::kProcedure),
          static_cast<int32_t>(step.getInt(name::kDomain)), step.getDouble(name::kTotalTime)};
}

namespace {

// The columns of the frame catalogue after the frame indices, in the order they are stored.
const auto kFrameColumns = [](auto column) {
  column(name::kFrameDomain, &FrameData::domain);
  column(name::kFrameMode, &FrameData::mode);
  column(name::kFrameValue, &FrameData::frameValue);
  column(name::kFrameFrequency, &FrameData::frequency);
  column(name::kFrameDescription, &FrameData::description);
};

}  // namespace

void storeFrameCatalogue(const h5::Group& step, const std::vector<FrameData>& frames) {
  storeTable(step, frames, name::kFrameIndex, &FrameData::frameIndex, kFrameColumns);
}

std::vector<FrameData> loadFrameCatalogue(const h5::Group& step) {
  return loadTable(step, name::kFrameIndex, &FrameData::frameIndex, kFrameColumns);
}

odb_StepRepository loadSteps(const SourcePtr& src) {
  odb_StepRepository repo;
  h5::Group root = src->file.root();
  if (!root.has(name::kSteps)) return repo;
  h5::Group steps = root.open(name::kSteps);
  std::vector<std::string> names = steps.readStrings(name::kNames);
  for (size_t i = 0; i < names.size(); ++i) {
    std::string stepPath = std::string(name::kSteps) + "/" + std::to_string(i);
    h5::Group s = steps.open(std::to_string(i));
    if (repo.isMember(names[i])) damaged(steps, "duplicate step name '" + names[i] + "'");
    std::vector<FrameData> catalogue = loadFrameCatalogue(s);
    odb_SequenceFrame frames;
    frames.values().reserve(catalogue.size());
    for (size_t f = 0; f < catalogue.size(); ++f) {
      std::string framePath = stepPath + "/" + name::kFrames + "/" + std::to_string(f);
      frames.append(
          odb_Frame(std::move(catalogue[f]),
                    Lazy<odb_FieldOutputRepository>(std::function<odb_FieldOutputRepository()>(
                        [src, framePath] { return loadFieldOutputs(src, framePath); }))));
    }
    repo.add(std::make_unique<odb_Step>(
        loadStepHeader(s, names[i]), std::move(frames),
        Lazy<odb_HistoryRegionRepository>(std::function<odb_HistoryRegionRepository()>(
            [src, stepPath] { return loadHistory(src, stepPath); }))));
  }
  return repo;
}

}  // namespace odb
