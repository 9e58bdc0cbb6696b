// Loads the step and frame catalogue and, lazily, field outputs, their blocks and history.
#include <algorithm>

#include "odb/model_store.h"
#include "odb/results_store.h"

namespace odb {
namespace {

[[noreturn]] void damaged(const h5::Group& g, const std::string& what) {
  h5::fail("damaged database: " + g.path() + ": " + what);
}

void checkCount(const h5::Group& g, int64_t n, const std::string& what) {
  if (n < 0 || n > (int64_t(1) << 40)) damaged(g, "bad " + what);
}

std::vector<FieldLocationData> loadLocations(const h5::Group& g) {
  std::vector<int32_t> positions = g.read<int32_t>("location_positions");
  auto n = static_cast<int64_t>(positions.size());
  std::vector<int32_t> counts = g.read<int32_t>("location_point_counts", n);
  int64_t total = 0;
  for (int32_t c : counts) {
    checkCount(g, c, "section point count");
    total += c;
  }
  std::vector<int32_t> numbers = g.read<int32_t>("location_point_numbers", total);
  std::vector<std::string> descriptions = g.readStrings("location_point_descriptions", total);
  std::vector<FieldLocationData> out(positions.size());
  size_t at = 0;
  for (size_t i = 0; i < out.size(); ++i) {
    out[i].position = positions[i];
    for (int32_t k = 0; k < counts[i]; ++k, ++at)
      out[i].sectionPoints.push_back({numbers[at], descriptions[at]});
  }
  return out;
}

// Reads the block catalogue of a field output and the arrays of the blocks at position
// (all blocks for -1), one read per array.
std::vector<odb_FieldBulkData> loadBlocks(const SourcePtr& src, const std::string& path,
                                          bool complex, int position) {
  h5::Group g = src->group(path);
  std::vector<int32_t> pos = g.read<int32_t>("block_positions");
  auto n = static_cast<int64_t>(pos.size());
  std::vector<int32_t> type = g.read<int32_t>("block_types", n),
                       width = g.read<int32_t>("block_widths", n),
                       prec = g.read<int32_t>("block_precision", n),
                       sp = g.read<int32_t>("block_section_points", n),
                       count = g.read<int32_t>("block_element_counts", n),
                       csys = g.read<int32_t>("block_csys_widths", n),
                       arrays = g.read<int32_t>("block_arrays", n);
  std::vector<int64_t> rows = g.read<int64_t>("block_rows", n);
  std::vector<std::string> spd = g.readStrings("block_section_point_descriptions", n),
                           et = g.readStrings("block_element_types", n),
                           inst = g.readStrings("block_instances", n);
  std::vector<odb_FieldBulkData> out;
  for (int64_t i = 0; i < n; ++i) {
    if (position != -1 && pos[i] != position) continue;
    h5::Group b = g.open("blocks/" + std::to_string(i));
    checkCount(b, rows[i], "row count");
    if (width[i] < 1 || width[i] > 1 << 20 || csys[i] < 0 || csys[i] > 1 << 10)
      damaged(b, "bad width");
    if (rows[i] > (int64_t(1) << 31) - 1) damaged(b, "too many rows for one block");
    FieldBlockData d;
    d.instance = inst[i];
    d.elementType = et[i];
    d.position = pos[i];
    d.type = type[i];
    d.sectionPoint = {sp[i], spd[i]};
    d.width = width[i];
    d.doublePrecision = prec[i] != 0;
    d.numberOfElements = count[i];
    d.csysWidth = csys[i];
    const int64_t values = rows[i] * width[i];
    if (d.doublePrecision) {
      d.dataDouble = b.read<double>("data", values);
      if (complex) d.conjugateDataDouble = b.read<double>("conjugate_data", values);
    } else {
      d.data = b.read<float>("data", values);
      if (complex) d.conjugateData = b.read<float>("conjugate_data", values);
    }
    if (arrays[i] & kElementLabels) {
      d.elementLabels = b.read<int32_t>("element_labels", rows[i]);
      if (rows[i] > 0 && (count[i] < 1 || count[i] > rows[i])) damaged(b, "bad element count");
    } else if (count[i] < 0 || count[i] > rows[i]) {
      damaged(b, "bad element count");
    }
    if (arrays[i] & kNodeLabels) d.nodeLabels = b.read<int32_t>("node_labels", rows[i]);
    if (arrays[i] & kIntegrationPoints)
      d.integrationPoints = b.read<int32_t>("integration_points", rows[i]);
    if (arrays[i] & kLocalCsys)
      d.localCsys = b.read<float>("local_csys", rows[i] * csys[i]);
    else
      d.csysWidth = 0;
    out.emplace_back(std::move(d));
  }
  return out;
}

odb_FieldOutputRepository loadFieldOutputs(const SourcePtr& src, const std::string& framePath) {
  h5::Group frame = src->group(framePath);
  std::vector<std::string> names = frame.readStrings("field_names");
  odb_FieldOutputRepository repo;
  for (size_t k = 0; k < names.size(); ++k) {
    std::string path = framePath + "/" + std::to_string(k);
    h5::Group g = frame.open(std::to_string(k));
    FieldOutputData d;
    d.name = names[k];
    d.description = g.getString("description");
    d.type = static_cast<int32_t>(g.getInt("type"));
    d.isComplex = g.getInt("complex") != 0;
    d.matrixOrder = static_cast<int32_t>(g.getInt("matrix_order"));
    d.componentLabels = g.readStrings("component_labels");
    d.locations = loadLocations(g);
    bool complex = d.isComplex;
    repo.insert(names[k], odb_FieldOutput(std::move(d), [src, path, complex](int position) {
                  return loadBlocks(src, path, complex, position);
                }));
  }
  return repo;
}

HistoryOutputData loadHistoryOutput(const h5::Group& g) {
  HistoryOutputData o;
  std::vector<hsize_t> dims = g.dims("data");
  if (dims.size() != 2 || dims[1] < 1 || dims[1] > 1024) damaged(g, "history data is not n by w");
  o.width = static_cast<int32_t>(dims[1]);
  o.data = g.read<float>("data");
  o.conjugateData = g.read<float>("conjugate_data");
  if (!o.conjugateData.empty() && o.conjugateData.size() != o.data.size())
    damaged(g, "conjugate data does not match the data");
  return o;
}

odb_HistoryRegionRepository loadHistory(const SourcePtr& src, const std::string& stepPath) {
  odb_HistoryRegionRepository repo;
  if (!src->file.root().has(stepPath + "/history")) return repo;
  h5::Group h = src->group(stepPath + "/history");
  std::vector<std::string> names = h.readStrings("names");
  for (size_t i = 0; i < names.size(); ++i) {
    std::string path = stepPath + "/history/" + std::to_string(i);
    h5::Group g = h.open(std::to_string(i));
    HistoryPointData p;
    p.position = static_cast<int32_t>(g.getInt("position"));
    p.nodeLabel = static_cast<int32_t>(g.getInt("node_label"));
    p.elementLabel = static_cast<int32_t>(g.getInt("element_label"));
    p.elementType = g.getString("element_type");
    p.integrationPoint = static_cast<int32_t>(g.getInt("integration_point"));
    p.sectionPoint = {static_cast<int32_t>(g.getInt("section_point")),
                      g.getString("section_point_description")};
    p.instance = g.getString("instance");
    p.region = loadSet(g.open("region"));
    Lazy<odb_HistoryOutputRepository> outputs(std::function<odb_HistoryOutputRepository()>([src,
                                                                                            path] {
      h5::Group rg = src->group(path);
      std::vector<std::string> on = rg.readStrings("output_names");
      odb_HistoryOutputRepository r;
      for (size_t k = 0; k < on.size(); ++k) {
        std::string op = path + "/outputs/" + std::to_string(k);
        h5::Group og = rg.open("outputs/" + std::to_string(k));
        Lazy<HistoryOutputData> samples(std::function<HistoryOutputData()>(
            [src, op] { return loadHistoryOutput(src->group(op)); }));
        r.insert(on[k], odb_HistoryOutput(on[k], og.getString("description"),
                                          static_cast<int>(og.getInt("type")), std::move(samples)));
      }
      return r;
    }));
    repo.insert(names[i], odb_HistoryRegion(names[i], g.getString("description"),
                                            odb_HistoryPoint(p), std::move(outputs)));
  }
  return repo;
}

}  // namespace

odb_StepRepository loadSteps(const SourcePtr& src) {
  odb_StepRepository repo;
  h5::Group root = src->file.root();
  if (!root.has("steps")) return repo;
  h5::Group steps = root.open("steps");
  std::vector<std::string> names = steps.readStrings("names");
  for (size_t i = 0; i < names.size(); ++i) {
    std::string stepPath = "steps/" + std::to_string(i);
    h5::Group s = steps.open(std::to_string(i));
    if (repo.isMember(names[i])) damaged(steps, "duplicate step name '" + names[i] + "'");
    StepData d{names[i], s.getString("description"), s.getString("procedure"),
               static_cast<int32_t>(s.getInt("domain")), s.getDouble("total_time")};
    std::vector<int32_t> index = s.read<int32_t>("frame_index");
    auto n = static_cast<int64_t>(index.size());
    std::vector<int32_t> domain = s.read<int32_t>("frame_domain", n),
                         mode = s.read<int32_t>("frame_mode", n);
    std::vector<double> value = s.read<double>("frame_value", n),
                        frequency = s.read<double>("frame_frequency", n);
    std::vector<std::string> description = s.readStrings("frame_description", n);
    odb_SequenceFrame frames;
    frames.values().reserve(index.size());
    for (int64_t f = 0; f < n; ++f) {
      std::string framePath = stepPath + "/frames/" + std::to_string(f);
      frames.append(
          odb_Frame(FrameData{index[f], domain[f], mode[f], value[f], frequency[f], description[f]},
                    Lazy<odb_FieldOutputRepository>(std::function<odb_FieldOutputRepository()>(
                        [src, framePath] { return loadFieldOutputs(src, framePath); }))));
    }
    repo.add(std::make_unique<odb_Step>(
        std::move(d), std::move(frames),
        Lazy<odb_HistoryRegionRepository>(std::function<odb_HistoryRegionRepository()>(
            [src, stepPath] { return loadHistory(src, stepPath); }))));
  }
  return repo;
}

}  // namespace odb
