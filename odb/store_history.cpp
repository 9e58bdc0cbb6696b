// History regions of a step with their points and outputs: store and load side by side.
#include "odb/model_store.h"
#include "odb/results_store.h"
#include "odb/store_util.h"

namespace odb {

namespace {

void storePoint(const h5::Group& g, const HistoryPointData& p) {
  g.setInt(name::kPosition, p.position);
  g.setInt(name::kNodeLabel, p.nodeLabel);
  g.setInt(name::kElementLabel, p.elementLabel);
  g.setString(name::kElementType, p.elementType);
  g.setInt(name::kIntegrationPoint, p.integrationPoint);
  g.setInt(name::kSectionPoint, p.sectionPoint.number);
  g.setString(name::kSectionPointDescription, p.sectionPoint.description);
  g.setString(name::kInstance, p.instance);
  storeSet(g.create(name::kRegion), p.region);
}

HistoryPointData loadPoint(const h5::Group& g) {
  HistoryPointData p;
  p.position = static_cast<int32_t>(g.getInt(name::kPosition));
  p.nodeLabel = static_cast<int32_t>(g.getInt(name::kNodeLabel));
  p.elementLabel = static_cast<int32_t>(g.getInt(name::kElementLabel));
  p.elementType = g.getString(name::kElementType);
  p.integrationPoint = static_cast<int32_t>(g.getInt(name::kIntegrationPoint));
  p.sectionPoint = {static_cast<int32_t>(g.getInt(name::kSectionPoint)),
                    g.getString(name::kSectionPointDescription)};
  p.instance = g.getString(name::kInstance);
  p.region = loadSet(g.open(name::kRegion));
  return p;
}

void storeOutput(const h5::Group& g, const HistoryOutputData& o) {
  g.setString(name::kDescription, o.description);
  g.setInt(name::kType, o.type);
  const hsize_t w = static_cast<hsize_t>(o.width);
  g.write(name::kData, o.data.data(), {o.data.size() / w, w});
  g.write(name::kConjugateData, o.conjugateData.data(), {o.conjugateData.size() / w, w});
}

HistoryOutputData loadOutputSamples(const h5::Group& g) {
  HistoryOutputData o;
  std::vector<hsize_t> dims = g.dims(name::kData);
  if (dims.size() != 2 || dims[1] < 1 || dims[1] > 1024) damaged(g, "history data is not n by w");
  o.width = static_cast<int32_t>(dims[1]);
  o.data = g.read<float>(name::kData);
  o.conjugateData = g.read<float>(name::kConjugateData);
  if (!o.conjugateData.empty() && o.conjugateData.size() != o.data.size())
    damaged(g, "conjugate data does not match the data");
  return o;
}

odb_HistoryOutputRepository loadOutputs(const SourcePtr& src, const std::string& regionPath) {
  h5::Group rg = src->group(regionPath);
  std::vector<std::string> names = rg.readStrings(name::kOutputNames);
  odb_HistoryOutputRepository r;
  for (size_t k = 0; k < names.size(); ++k) {
    std::string outputPath = regionPath + "/" + name::kOutputs + "/" + std::to_string(k);
    h5::Group og = src->group(outputPath);
    Lazy<HistoryOutputData> samples(std::function<HistoryOutputData()>(
        [src, outputPath] { return loadOutputSamples(src->group(outputPath)); }));
    r.insert(names[k],
             odb_HistoryOutput(names[k], og.getString(name::kDescription),
                               static_cast<int>(og.getInt(name::kType)), std::move(samples)));
  }
  return r;
}

}  // namespace

void storeHistoryRegion(const h5::Group& region, const HistoryRegionData& r) {
  region.setString(name::kName, r.name);
  region.setString(name::kDescription, r.description);
  storePoint(region, r.point);
  std::vector<std::string> names;
  h5::Group outputs = region.create(name::kOutputs);
  for (size_t i = 0; i < r.outputs.size(); ++i) {
    names.push_back(r.outputs[i].name);
    storeOutput(outputs.create(std::to_string(i)), r.outputs[i]);
  }
  region.writeStrings(name::kOutputNames, names);
}

odb_HistoryRegionRepository loadHistory(const SourcePtr& src, const std::string& stepPath) {
  odb_HistoryRegionRepository repo;
  std::string historyPath = stepPath + "/" + name::kHistory;
  if (!src->file.root().has(historyPath)) return repo;
  h5::Group h = src->group(historyPath);
  std::vector<std::string> names = h.readStrings(name::kNames);
  for (size_t i = 0; i < names.size(); ++i) {
    std::string path = historyPath + "/" + std::to_string(i);
    h5::Group g = h.open(std::to_string(i));
    Lazy<odb_HistoryOutputRepository> outputs(std::function<odb_HistoryOutputRepository()>(
        [src, path] { return loadOutputs(src, path); }));
    repo.insert(names[i], odb_HistoryRegion(names[i], g.getString(name::kDescription),
                                            odb_HistoryPoint(loadPoint(g)), std::move(outputs)));
  }
  return repo;
}

}  // namespace odb
