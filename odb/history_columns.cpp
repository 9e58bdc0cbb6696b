#include "odb/history_columns.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "odb/model_store.h"
#include "odb/store_util.h"

namespace odb {

namespace {

uint64_t hashTimes(const double* t, size_t n) {
  uint64_t h = 1469598103934665603ull;
  const auto* p = reinterpret_cast<const unsigned char*>(t);
  for (size_t i = 0; i < n * sizeof(double); ++i) h = (h ^ p[i]) * 1099511628211ull;
  return h;
}

}  // namespace

// The start of the sample times of o in times_, adding them unless the same series of
// times is there already (the outputs of a region, and regions printed together, share).
int64_t HistoryColumns::timesOf(const HistoryOutputData& o) {
  const size_t n = o.samples(), w = static_cast<size_t>(o.width);
  std::vector<double> t(n);
  for (size_t i = 0; i < n; ++i)
    t[i] = o.frameValues.size() == n ? o.frameValues[i] : static_cast<double>(o.data[i * w]);
  uint64_t h = hashTimes(t.data(), n);
  std::vector<int64_t>& starts = timeIndex_[h];
  for (int64_t s : starts)
    if (std::equal(t.begin(), t.end(), times_.begin() + s)) return s;
  auto start = static_cast<int64_t>(times_.size());
  times_.insert(times_.end(), t.begin(), t.end());
  starts.push_back(start);
  return start;
}

void HistoryColumns::add(const HistoryRegionData& r) {
  const HistoryPointData& p = r.point;
  names_.push_back(r.name);
  descriptions_.push_back(r.description);
  positions_.push_back(p.position);
  nodes_.push_back(p.nodeLabel);
  elements_.push_back(p.elementLabel);
  elementTypes_.push_back(p.elementType);
  points_.push_back(p.integrationPoint);
  sectionPoints_.push_back(p.sectionPoint.number);
  spDescriptions_.push_back(p.sectionPoint.description);
  instances_.push_back(p.instance);
  bool hasSet = !p.region.name.empty() || !p.region.instanceNames.empty();
  regionSets_.push_back(hasSet ? static_cast<int32_t>(sets_.size()) : -1);
  if (hasSet) sets_.push_back(p.region);
  for (const HistoryOutputData& o : r.outputs) {
    bool complex = !o.conjugateData.empty();
    auto key = std::make_tuple(o.name, o.description, o.type, o.width, complex);
    auto it = columnIndex_.find(key);
    if (it == columnIndex_.end()) {
      it = columnIndex_.emplace(key, static_cast<int32_t>(columns_.size())).first;
      columns_.push_back({o.name, o.description, o.type, o.width, complex, {}, {}});
    }
    Column& c = columns_[static_cast<size_t>(it->second)];
    const size_t n = o.samples(), w = static_cast<size_t>(o.width);
    outputColumns_.push_back(it->second);
    outputSamples_.push_back(static_cast<int64_t>(n));
    outputFirst_.push_back(static_cast<int64_t>(c.values.size() / std::max<size_t>(w - 1, 1)));
    outputTimes_.push_back(timesOf(o));
    for (size_t i = 0; i < n; ++i) {
      c.values.insert(c.values.end(), o.data.begin() + long(i * w + 1),
                      o.data.begin() + long(i * w + w));
      if (complex)
        c.conjugates.insert(c.conjugates.end(), o.conjugateData.begin() + long(i * w + 1),
                            o.conjugateData.begin() + long(i * w + w));
    }
  }
  outputOffsets_.push_back(static_cast<int64_t>(outputColumns_.size()));
}

void HistoryColumns::store(const h5::Group& step) const {
  h5::Group g = step.create(name::kHistory);
  g.writeStrings(name::kNames, names_);
  g.writeStrings(name::kDescriptionsList, descriptions_);
  g.write(name::kPositions, positions_);
  g.write(name::kNodeLabels, nodes_);
  g.write(name::kElementLabels, elements_);
  g.writeStrings(name::kElementTypes, elementTypes_);
  g.write(name::kIntegrationPoints, points_);
  g.write(name::kPointSectionPoints, sectionPoints_);
  g.writeStrings(name::kPointSectionPointDescriptions, spDescriptions_);
  g.writeStrings(name::kPointInstances, instances_);
  g.write(name::kRegionSets, regionSets_);
  storeSetList(g, name::kSets, sets_);
  g.write(name::kOutputOffsets, outputOffsets_);
  g.write(name::kOutputColumns, outputColumns_);
  g.write(name::kOutputSamples, outputSamples_);
  g.write(name::kOutputFirst, outputFirst_);
  g.write(name::kOutputTimes, outputTimes_);
  std::vector<std::string> names, descriptions;
  std::vector<int32_t> types, widths, complex;
  h5::Group cg = g.create(name::kColumns);
  for (size_t i = 0; i < columns_.size(); ++i) {
    const Column& c = columns_[i];
    names.push_back(c.name);
    descriptions.push_back(c.description);
    types.push_back(c.type);
    widths.push_back(c.width);
    complex.push_back(c.complex ? 1 : 0);
    h5::Group col = cg.create(std::to_string(i));
    col.write(name::kValues, c.values);
    if (c.complex) col.write(name::kConjugates, c.conjugates);
  }
  g.writeStrings(name::kColumnNames, names);
  g.writeStrings(name::kColumnDescriptions, descriptions);
  g.write(name::kColumnTypes, types);
  g.write(name::kColumnWidths, widths);
  g.write(name::kColumnComplex, complex);
  g.write(name::kTimes, times_);
}

namespace {

// The catalogue of a step's history, shared by the lazy loaders of its outputs.
struct Catalogue {
  std::string path;
  std::vector<int32_t> columns;
  std::vector<int64_t> samples, first, times;
  std::vector<int32_t> widths, complex;
};

HistoryOutputData loadSeries(const SourcePtr& src, const Catalogue& c, size_t k) {
  h5::Group g = src->group(c.path);
  const size_t col = static_cast<size_t>(c.columns[k]);
  const int64_t n = c.samples[k], w = c.widths[col];
  HistoryOutputData o;
  o.width = static_cast<int32_t>(w);
  if (n == 0) return o;
  h5::Group cg = g.open(std::string(name::kColumns) + "/" + std::to_string(col));
  const uint64_t per = static_cast<uint64_t>(w - 1);
  std::vector<float> values = cg.readRows<float>(
      name::kValues, {static_cast<uint64_t>(c.first[k]) * per, static_cast<uint64_t>(n) * per});
  o.frameValues = g.readRows<double>(name::kTimes,
                                     {static_cast<uint64_t>(c.times[k]), static_cast<uint64_t>(n)});
  std::vector<float> conj;
  if (c.complex[col])
    conj = cg.readRows<float>(name::kConjugates, {static_cast<uint64_t>(c.first[k]) * per,
                                                  static_cast<uint64_t>(n) * per});
  for (int64_t i = 0; i < n; ++i) {
    float t = static_cast<float>(o.frameValues[i]);
    o.data.push_back(t);
    o.data.insert(o.data.end(), values.begin() + long(i * per),
                  values.begin() + long((i + 1) * per));
    if (!conj.empty()) {
      o.conjugateData.push_back(t);
      o.conjugateData.insert(o.conjugateData.end(), conj.begin() + long(i * per),
                             conj.begin() + long((i + 1) * per));
    }
  }
  return o;
}

}  // namespace

odb_HistoryRegionRepository loadHistoryColumns(const SourcePtr& src, const std::string& stepPath) {
  odb_HistoryRegionRepository repo;
  std::string path = stepPath + "/" + name::kHistory;
  h5::Group g = src->group(path);
  std::vector<std::string> names = g.readStrings(name::kNames);
  auto r = static_cast<int64_t>(names.size());
  std::vector<std::string> descriptions = g.readStrings(name::kDescriptionsList, r),
                           elementTypes = g.readStrings(name::kElementTypes, r),
                           spDescriptions = g.readStrings(name::kPointSectionPointDescriptions, r),
                           instances = g.readStrings(name::kPointInstances, r);
  std::vector<int32_t> positions = g.read<int32_t>(name::kPositions, r),
                       nodes = g.read<int32_t>(name::kNodeLabels, r),
                       elements = g.read<int32_t>(name::kElementLabels, r),
                       points = g.read<int32_t>(name::kIntegrationPoints, r),
                       sectionPoints = g.read<int32_t>(name::kPointSectionPoints, r),
                       regionSets = g.read<int32_t>(name::kRegionSets, r);
  std::vector<SetData> sets = loadSetList(g.open(name::kSets));
  std::vector<int64_t> offsets = g.read<int64_t>(name::kOutputOffsets, r + 1);
  auto cat = std::make_shared<Catalogue>();
  cat->path = path;
  cat->columns = g.read<int32_t>(name::kOutputColumns);
  auto s = static_cast<int64_t>(cat->columns.size());
  cat->samples = g.read<int64_t>(name::kOutputSamples, s);
  cat->first = g.read<int64_t>(name::kOutputFirst, s);
  cat->times = g.read<int64_t>(name::kOutputTimes, s);
  std::vector<std::string> columnNames = g.readStrings(name::kColumnNames);
  auto c = static_cast<int64_t>(columnNames.size());
  std::vector<std::string> columnDescriptions = g.readStrings(name::kColumnDescriptions, c);
  std::vector<int32_t> columnTypes = g.read<int32_t>(name::kColumnTypes, c);
  cat->widths = g.read<int32_t>(name::kColumnWidths, c);
  cat->complex = g.read<int32_t>(name::kColumnComplex, c);
  for (int32_t w : cat->widths)
    if (w < 2 || w > 1024) damaged(g, "bad history output width");
  for (int64_t k = 0; k < s; ++k)
    if (cat->columns[k] < 0 || cat->columns[k] >= c || cat->samples[k] < 0 || cat->first[k] < 0 ||
        cat->times[k] < 0)
      damaged(g, "bad history output index");
  if (offsets[0] != 0 || offsets[r] != s) damaged(g, "bad history output offsets");
  for (int64_t i = 0; i < r; ++i) {
    if (offsets[i + 1] < offsets[i]) damaged(g, "history output offsets decrease");
    if (regionSets[i] < -1 || regionSets[i] >= static_cast<int64_t>(sets.size()))
      damaged(g, "region set index out of range");
    HistoryPointData p{positions[i],    nodes[i],  elements[i],
                       elementTypes[i], points[i], {sectionPoints[i], spDescriptions[i]},
                       instances[i],    {}};
    if (regionSets[i] >= 0) p.region = sets[static_cast<size_t>(regionSets[i])];
    odb_HistoryOutputRepository outputs;
    for (int64_t k = offsets[i]; k < offsets[i + 1]; ++k) {
      const size_t col = static_cast<size_t>(cat->columns[k]);
      Lazy<HistoryOutputData> samples(std::function<HistoryOutputData()>(
          [src, cat, k] { return loadSeries(src, *cat, static_cast<size_t>(k)); }));
      if (outputs.isMember(columnNames[col])) damaged(g, "duplicate history output");
      outputs.insert(columnNames[col], odb_HistoryOutput(columnNames[col], columnDescriptions[col],
                                                         columnTypes[col], std::move(samples)));
    }
    if (repo.isMember(names[i])) damaged(g, "duplicate history region");
    repo.insert(names[i], odb_HistoryRegion(names[i], descriptions[i], odb_HistoryPoint(p),
                                            Lazy<odb_HistoryOutputRepository>(std::move(outputs))));
  }
  return repo;
}

}  // namespace odb
