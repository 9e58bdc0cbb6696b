// History of a step: the loader of format version 2 and older (one group per region, one
// per output; their writer is kept with the tests), and the choice between it and the
// column-wise layout of version 3 (history_columns.cpp).
#include "odb/history_columns.h"
#include "odb/model_store.h"
#include "odb/results_store.h"
#include "odb/store_util.h"

namespace odb {

namespace {

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

HistoryOutputData loadOutputSamples(const h5::Group& g) {
  HistoryOutputData o;
  std::vector<hsize_t> dims = g.dims(name::kData);
  if (dims.size() != 2 || dims[1] < 1 || dims[1] > 1024) damaged(g, "history data is not n by w");
  o.width = static_cast<int32_t>(dims[1]);
  o.data = g.read<float>(name::kData);
  o.conjugateData = g.read<float>(name::kConjugateData);
  for (size_t i = 0; i < o.data.size(); i += static_cast<size_t>(o.width))
    o.frameValues.push_back(o.data[i]);  // single precision in these versions
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

odb_HistoryRegionRepository loadHistory(const SourcePtr& src, const std::string& stepPath) {
  if (src->version >= 3) return loadHistoryColumns(src, stepPath);
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
