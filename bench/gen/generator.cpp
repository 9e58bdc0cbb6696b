#include "bench/gen/generator.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "odb/writer.h"

namespace odbgen {
namespace {

struct Mesh {
  int n = 1;  // elements per side
  int64_t nodes = 0, elements = 0;
  int ipts = 8;  // integration points per element
};

Mesh meshFor(const Options& o) {
  Mesh m;
  if (o.shells) {
    m.n = std::max(1, int(std::lround(std::sqrt(double(o.elements)))));
    m.nodes = int64_t(m.n + 1) * (m.n + 1);
    m.elements = int64_t(m.n) * m.n;
    m.ipts = 4;
  } else {
    m.n = std::max(1, int(std::lround(std::cbrt(double(o.elements)))));
    m.nodes = int64_t(m.n + 1) * (m.n + 1) * (m.n + 1);
    m.elements = int64_t(m.n) * m.n * m.n;
  }
  return m;
}

void addMesh(odb::EntityWriter part, const Mesh& m, bool shells, int32_t category) {
  addBlockMesh(part, m.n, shells, category);
  std::vector<int32_t> all(part.data()->nodes.labels);
  part.addNodeSet("ALL", all);
}

void fill(odb::FieldBlockData& b, int64_t rows, double seed) {
  const size_t n = size_t(rows) * size_t(b.width);
  if (b.doublePrecision) {
    b.dataDouble.resize(n);
    for (size_t i = 0; i < n; ++i) b.dataDouble[i] = seed + 1e-3 * double(i % 1000);
  } else {
    b.data.resize(n);
    for (size_t i = 0; i < n; ++i) b.data[i] = float(seed + 1e-3 * double(i % 1000));
  }
}

int64_t bytesOf(const odb::FieldBlockData& b) {
  int64_t v = int64_t(b.data.size() + b.conjugateData.size()) * 4 +
              int64_t(b.dataDouble.size() + b.conjugateDataDouble.size()) * 8;
  return v + int64_t(b.elementLabels.size() + b.nodeLabels.size() + b.integrationPoints.size()) * 4;
}

// Writes U, S and E of one frame for every instance; returns the largest field's bytes.
int64_t writeFrame(odb::Writer& w, const Options& o, const Mesh& m, double seed, bool complex) {
  int64_t largest = 0;
  odb::FieldBlockData u;
  u.position = odb_Enum::NODAL;
  u.type = odb_Enum::VECTOR;
  u.width = 3;
  u.doublePrecision = o.doublePrecision;
  w.addFieldOutput(
      {"U", "spatial displacement", odb_Enum::VECTOR, {"U1", "U2", "U3"}, complex, 0, {}});
  int64_t bytes = 0;
  for (int i = 0; i < o.instances; ++i) {
    u.instance = "PART-" + std::to_string(i + 1) + "-1";
    u.nodeLabels.resize(size_t(m.nodes));
    for (int64_t k = 0; k < m.nodes; ++k) u.nodeLabels[size_t(k)] = int32_t(k + 1);
    fill(u, m.nodes, seed);
    if (complex) u.conjugateData = u.data, u.conjugateDataDouble = u.dataDouble;
    w.addFieldBlock(u);
    bytes += bytesOf(u);
  }
  largest = std::max(largest, bytes);
  const std::vector<std::string> solid = {"S11", "S22", "S33", "S12", "S13", "S23"};
  const std::vector<std::string> shell = {"S11", "S22", "S12"};
  for (const char* name : {"S", "E"}) {
    std::vector<std::string> labels = o.shells ? shell : solid;
    if (name[0] == 'E')
      for (auto& l : labels) l[0] = 'E';
    int32_t type = o.shells ? odb_Enum::TENSOR_3D_SURFACE : odb_Enum::TENSOR_3D_FULL;
    w.addFieldOutput({name, name[0] == 'S' ? "stress" : "strain", type, labels, false, 0, {}});
    bytes = 0;
    for (int i = 0; i < o.instances; ++i) {
      odb::FieldBlockData b;
      b.instance = "PART-" + std::to_string(i + 1) + "-1";
      b.elementType = o.shells ? "S4R" : "C3D8";
      b.position = odb_Enum::INTEGRATION_POINT;
      b.type = type;
      b.width = int32_t(labels.size());
      b.doublePrecision = o.doublePrecision;
      b.numberOfElements = int32_t(m.elements);
      const int64_t rows = m.elements * m.ipts;
      b.elementLabels.resize(size_t(rows));
      b.integrationPoints.resize(size_t(rows));
      for (int64_t r = 0; r < rows; ++r) {
        b.elementLabels[size_t(r)] = int32_t(r / m.ipts + 1);
        b.integrationPoints[size_t(r)] = int32_t(r % m.ipts + 1);
      }
      fill(b, rows, seed);
      for (int sp : o.shells ? std::vector<int>{1, 2, 3, 4, 5} : std::vector<int>{-1}) {
        b.sectionPoint = {sp, sp < 0 ? "" : "Layer = 1, point " + std::to_string(sp)};
        w.addFieldBlock(b);
        bytes += bytesOf(b);
      }
    }
    largest = std::max(largest, bytes);
  }
  return largest;
}

}  // namespace

void addBlockMesh(odb::EntityWriter part, int n, bool shells, int32_t category) {
  Mesh m;
  m.n = n;
  m.nodes = shells ? int64_t(n + 1) * (n + 1) : int64_t(n + 1) * (n + 1) * (n + 1);
  m.elements = shells ? int64_t(n) * n : int64_t(n) * n * n;
  odb::EntityData& d = *part.data();
  const int s = m.n + 1;
  d.nodes.labels.resize(size_t(m.nodes));
  d.nodes.coordinates.resize(size_t(m.nodes) * 3);
  for (int64_t i = 0; i < m.nodes; ++i) {
    d.nodes.labels[size_t(i)] = int32_t(i + 1);
    d.nodes.coordinates[size_t(3 * i)] = float(i % s);
    d.nodes.coordinates[size_t(3 * i + 1)] = float((i / s) % s);
    d.nodes.coordinates[size_t(3 * i + 2)] = shells ? 0.f : float(i / (int64_t(s) * s));
  }
  odb::ElementData& e = d.elements;
  const int per = shells ? 4 : 8;
  e.typeNames = {shells ? "S4R" : "C3D8"};
  e.labels.resize(size_t(m.elements));
  e.typeIndex.assign(size_t(m.elements), 0);
  e.categoryIndex.assign(size_t(m.elements), category);
  e.offsets.resize(size_t(m.elements) + 1);
  e.connectivity.resize(size_t(m.elements) * per);
  for (int64_t k = 0; k < m.elements; ++k) {
    int64_t x = k % m.n, y = (k / m.n) % m.n, z = shells ? 0 : k / (int64_t(m.n) * m.n);
    int32_t b = int32_t(1 + x + s * (y + int64_t(s) * z)), ss = s * s;
    int32_t c[8] = {b, b + 1, b + 1 + s, b + s, b + ss, b + 1 + ss, b + 1 + s + ss, b + s + ss};
    std::copy(c, c + per, e.connectivity.begin() + long(k * per));
    e.labels[size_t(k)] = int32_t(k + 1);
    e.offsets[size_t(k + 1)] = (k + 1) * per;
  }
}

Summary generate(const std::string& path, const Options& o) {
  Mesh m = meshFor(o);
  Summary sum;
  sum.nodes = m.nodes * o.instances;
  sum.elements = m.elements * o.instances;
  odb::Writer w(path);
  w.setTitle("generated: " + std::to_string(sum.elements) + (o.shells ? " shells" : " hexahedra"));
  odb::SectionCategoryData cat{o.shells ? "shell < elset = SKIN" : "solid < elset = BODY", "", {}};
  for (int sp = 1; sp <= (o.shells ? 5 : 1); ++sp)
    cat.sectionPoints.push_back({sp, "Layer = 1, point " + std::to_string(sp)});
  int32_t category = w.addSectionCategory(cat);
  for (int i = 0; i < o.instances; ++i)
    addMesh(w.addInstance("PART-" + std::to_string(i + 1) + "-1"), m, o.shells, category);

  const int totalSteps = o.steps + (o.complexStep ? 1 : 0);
  for (int s = 0; s < totalSteps; ++s) {
    bool complex = s >= o.steps;
    w.addStep({"Step-" + std::to_string(s + 1), complex ? "harmonic" : "loading",
               complex ? "*STEADY STATE DYNAMICS" : "*STATIC",
               complex ? odb_Enum::FREQUENCY : odb_Enum::TIME, double(s)});
    for (int f = 0; f < o.frames; ++f) {
      double value = complex ? 10.0 * (f + 1) : double(f + 1) / o.frames;
      w.addFrame({-1, complex ? odb_Enum::FREQUENCY : odb_Enum::TIME, 0, value,
                  complex ? value : 0.0, "Increment " + std::to_string(f + 1)});
      sum.largestFieldBytes =
          std::max(sum.largestFieldBytes, writeFrame(w, o, m, s + value, complex));
      ++sum.frames;
    }
    for (int r = 0; r < o.historyRegions; ++r) {
      int32_t label = int32_t(1 + (int64_t(r) * 7919) % m.nodes);
      odb::HistoryRegionData h{"Node PART-1-1." + std::to_string(label), "", {}, {}};
      h.point.nodeLabel = label;
      h.point.instance = "PART-1-1";
      for (const char* name : {"U1", "U2", "U3"}) {
        odb::HistoryOutputData out{name, "displacement", odb_Enum::SCALAR, 2, {}, {}};
        for (int f = 0; f < o.frames; ++f)
          out.data.insert(out.data.end(), {float(f + 1), float(label) * 1e-3f * f});
        if (complex) out.conjugateData = out.data;
        h.outputs.push_back(out);
      }
      w.addHistoryRegion(h);
    }
  }
  w.close();
  return sum;
}

}  // namespace odbgen
