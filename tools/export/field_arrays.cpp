#include "tools/export/field_arrays.h"

#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <tuple>

#include "odb/odb.h"
#include "tools/common/derived_values.h"

namespace odbs::exporter {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
// Integration point numbers beyond this are not elements' points (a damaged block): left
// out of the NAME@ip arrays rather than allocated for.
constexpr int kMaxIntegrationPoints = 1000;

// Sums and counts per tuple of one output array.
struct Accumulator {
  int width = 0;
  bool pointTarget = true;
  std::vector<double> sum;
  std::vector<uint32_t> count;
  // Integration-point values: per ip number (1-based), the value of each cell.
  std::map<int, std::vector<double>> perPoint;

  void init(size_t tuples) {
    sum.assign(tuples * width, 0.0);
    count.assign(tuples, 0);
  }
  void add(int64_t tuple, const double* v) {
    for (int c = 0; c < width; ++c) sum[tuple * width + c] += v[c];
    ++count[tuple];
  }
  void addPoint(size_t tuples, int ip, int64_t tuple, const double* v) {
    std::vector<double>& p = perPoint[ip];
    if (p.empty()) p.assign(tuples * width, kNaN);
    for (int c = 0; c < width; ++c) p[tuple * width + c] = v[c];
  }
};

bool elementPosition(int position) {
  return position == odb_Enum::INTEGRATION_POINT || position == odb_Enum::CENTROID ||
         position == odb_Enum::WHOLE_ELEMENT;
}

DataArray makeArray(const std::string& name, int components, bool doublePrecision,
                    const std::vector<double>& values, std::vector<std::string> componentNames) {
  DataArray a(name, doublePrecision ? DataArray::Kind::kFloat64 : DataArray::Kind::kFloat32,
              components, std::move(componentNames));
  if (doublePrecision)
    a.f64 = values;
  else
    a.f32.assign(values.begin(), values.end());
  return a;
}

// Mises (or equivalent strain) and principal values of every tuple of a tensor array.
void addDerived(const std::string& name, const std::string& fieldName,
                const tools::TensorLayout& layout, const std::vector<double>& tuples, int width,
                bool doublePrecision, std::vector<DataArray>& target) {
  size_t n = tuples.size() / width;
  std::vector<double> mises(n, kNaN), principal(n * 3, kNaN);
  tools::TensorKind kind = tools::tensorKindOfField(fieldName);
  for (size_t i = 0; i < n; ++i) {
    const double* v = &tuples[i * width];
    if (std::isnan(v[0])) continue;
    tools::Tensor6 t = layout.tensor(v);
    mises[i] = tools::equivalent(t, kind);
    auto p = tools::principalValues(t);
    for (int k = 0; k < 3; ++k) principal[i * 3 + k] = p[k];
  }
  target.push_back(makeArray(name + " Mises (derived)", 1, doublePrecision, mises, {}));
  target.push_back(makeArray(name + " Principal (derived)", 3, doublePrecision, principal,
                             {"max", "mid", "min"}));
}

}  // namespace

void addFieldArrays(const odb_FieldOutput& field, const MeshIndex& index, const FieldOptions& opt,
                    VtuGrid& grid, std::vector<std::string>& notes) {
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  std::vector<std::string> labels;
  for (int c = 0; c < field.componentLabels().size(); ++c)
    labels.push_back(field.componentLabels()[c]);
  const size_t points = grid.pointCount(), cells = grid.cellCount();

  // Arrays by (point target, section point, imaginary part).
  std::map<std::tuple<bool, int, bool>, Accumulator> arrays;
  bool doublePrecision = false;
  std::vector<double> value;
  for (int b = 0; b < blocks.size(); ++b) {
    const odb_FieldBulkData& block = blocks[b];
    int position = block.position();
    bool toPoints = position == odb_Enum::NODAL || position == odb_Enum::ELEMENT_NODAL;
    if (!toPoints && !elementPosition(position)) {
      notes.push_back(field.name() + ": values at position " + std::to_string(position) +
                      " have no place in the grid and are left out");
      continue;
    }
    int entity = index.entityOf(block.instance().name());
    if (entity < 0) {
      notes.push_back(field.name() + ": block of unknown instance '" + block.instance().name() +
                      "' left out");
      continue;
    }
    const int* labelsOf = toPoints ? block.nodeLabels() : block.elementLabels();
    if (labelsOf == nullptr) continue;
    const int width = block.width();
    if (width <= 0) continue;
    doublePrecision = doublePrecision || block.precision() == odb_Enum::DOUBLE_PRECISION;
    value.resize(width);
    for (bool imaginary : {false, true}) {
      const float* f = imaginary ? block.conjugateData() : block.data();
      const double* d = imaginary ? block.conjugateDataDouble() : block.dataDouble();
      if (f == nullptr && d == nullptr) continue;
      Accumulator& acc = arrays[{toPoints, block.sectionPoint().number(), imaginary}];
      if (acc.width == 0) {
        acc.width = width;
        acc.pointTarget = toPoints;
        acc.init(toPoints ? points : cells);
      } else if (acc.width != width) {
        notes.push_back(field.name() + ": a block of another width left out");
        continue;
      }
      for (int row = 0; row < block.length(); ++row) {
        for (int c = 0; c < width; ++c) value[c] = d ? d[row * width + c] : f[row * width + c];
        int64_t t =
            toPoints ? index.point(entity, labelsOf[row]) : index.cell(entity, labelsOf[row]);
        if (t < 0) continue;
        acc.add(t, value.data());
        const int* ip = block.integrationPoints();
        if (!toPoints && opt.integrationPoints && ip != nullptr && ip[row] >= 1 &&
            ip[row] <= kMaxIntegrationPoints)
          acc.addPoint(cells, ip[row], t, value.data());
      }
    }
  }

  std::optional<tools::TensorLayout> layout;
  int type = field.type();
  if (opt.derived && type >= odb_Enum::TENSOR_3D_FULL && type <= odb_Enum::TENSOR_2D_SURFACE)
    layout = tools::TensorLayout::fromLabels(labels);
  for (auto& [key, acc] : arrays) {
    auto [toPoints, sectionPoint, imaginary] = key;
    std::string name = field.name();
    if (sectionPoint >= 0) name += "@sp" + std::to_string(sectionPoint);
    if (imaginary) name += "@imaginary";
    std::vector<double> mean(acc.sum.size(), kNaN);
    for (size_t t = 0; t < acc.count.size(); ++t) {
      if (acc.count[t] == 0) continue;
      for (int c = 0; c < acc.width; ++c)
        mean[t * acc.width + c] = acc.sum[t * acc.width + c] / acc.count[t];
    }
    std::vector<std::string> names =
        labels.size() == size_t(acc.width) ? labels : std::vector<std::string>{};
    std::vector<DataArray>& target = toPoints ? grid.pointData : grid.cellData;
    target.push_back(makeArray(name, acc.width, doublePrecision, mean, names));
    if (layout && !imaginary && labels.size() == size_t(acc.width))
      addDerived(name, field.name(), *layout, mean, acc.width, doublePrecision, target);
    if (acc.perPoint.empty()) continue;
    // All integration points side by side: ip numbers 1..max, NaN where a cell has none.
    int maxIp = acc.perPoint.rbegin()->first;
    size_t comps = size_t(maxIp) * acc.width;
    std::vector<double> all(cells * comps, kNaN);
    std::vector<std::string> ipNames;
    for (int ip = 1; ip <= maxIp; ++ip) {
      for (int c = 0; c < acc.width; ++c)
        ipNames.push_back("ip" + std::to_string(ip) + " " +
                          (names.empty() ? std::to_string(c + 1) : names[c]));
      auto it = acc.perPoint.find(ip);
      if (it == acc.perPoint.end()) continue;
      for (size_t t = 0; t < cells; ++t)
        for (int c = 0; c < acc.width; ++c)
          all[t * comps + (ip - 1) * acc.width + c] = it->second[t * acc.width + c];
    }
    grid.cellData.push_back(
        makeArray(name + "@ip", static_cast<int>(comps), doublePrecision, all, ipNames));
  }
}

}  // namespace odbs::exporter
