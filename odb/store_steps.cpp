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

void storeFrameCatalogue(const h5::Group& step, const std::vector<FrameData>& frames) {
  std::vector<int32_t> index, domain, mode;
  std::vector<double> value, frequency;
  std::vector<std::string> description;
  for (const auto& f : frames) {
    index.push_back(f.frameIndex), domain.push_back(f.domain), mode.push_back(f.mode);
    value.push_back(f.frameValue), frequency.push_back(f.frequency),
        description.push_back(f.description);
  }
  step.write(name::kFrameIndex, index);
  step.write(name::kFrameDomain, domain);
  step.write(name::kFrameMode, mode);
  step.write(name::kFrameValue, value);
  step.write(name::kFrameFrequency, frequency);
  step.writeStrings(name::kFrameDescription, description);
}

std::vector<FrameData> loadFrameCatalogue(const h5::Group& step) {
  std::vector<int32_t> index = step.read<int32_t>(name::kFrameIndex);
  auto n = static_cast<int64_t>(index.size());
  std::vector<int32_t> domain = step.read<int32_t>(name::kFrameDomain, n),
                       mode = step.read<int32_t>(name::kFrameMode, n);
  std::vector<double> value = step.read<double>(name::kFrameValue, n),
                      frequency = step.read<double>(name::kFrameFrequency, n);
  std::vector<std::string> description = step.readStrings(name::kFrameDescription, n);
  std::vector<FrameData> out;
  out.reserve(index.size());
  for (int64_t f = 0; f < n; ++f)
    out.push_back({index[f], domain[f], mode[f], value[f], frequency[f], description[f]});
  return out;
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
