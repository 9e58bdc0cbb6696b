#include "bench/model/model_generator.h"

#include <algorithm>

#include "odb/writer.h"

namespace odbs::bench {

void writeHexModel(const std::string& path, int n) {
  odb::Writer w(path);
  w.setTitle("hexahedron block");
  int32_t category = w.addSectionCategory({"solid < elset = BLOCK", "", {{1, "only"}}});
  w.addSection({"Section-BLOCK", kseO_HOMOGENEOUS_SOLID, "STEEL", 0, 0, {}});
  odb::MaterialData steel;
  steel.name = "STEEL";
  steel.hasDensity = true;
  steel.density = {{7.8e-9f}};
  w.addMaterial(steel);

  odb::EntityWriter part = w.addInstance("PART-1-1");
  odb::EntityData& d = *part.data();
  const int m = n + 1;
  const size_t nodes = size_t(m) * m * m, elems = size_t(n) * n * n;
  d.nodes.labels.resize(nodes);
  d.nodes.coordinates.resize(nodes * 3);
  for (size_t i = 0; i < nodes; ++i) {
    d.nodes.labels[i] = int32_t(i + 1);
    d.nodes.coordinates[3 * i] = float(i % m);
    d.nodes.coordinates[3 * i + 1] = float((i / m) % m);
    d.nodes.coordinates[3 * i + 2] = float(i / (size_t(m) * m));
  }
  odb::ElementData& e = d.elements;
  e.typeNames = {"C3D8"};
  e.labels.resize(elems);
  e.typeIndex.assign(elems, 0);
  e.categoryIndex.assign(elems, category);
  e.offsets.resize(elems + 1);
  e.connectivity.resize(elems * 8);
  size_t k = 0;
  const int32_t mm = m * m;
  for (int z = 0; z < n; ++z) {
    for (int y = 0; y < n; ++y) {
      for (int x = 0; x < n; ++x, ++k) {
        int32_t b = int32_t(1 + x + m * (y + m * z));
        int32_t c[8] = {b, b + 1, b + 1 + m, b + m, b + mm, b + 1 + mm, b + 1 + m + mm, b + m + mm};
        std::copy(c, c + 8, e.connectivity.begin() + long(8 * k));
        e.labels[k] = int32_t(k + 1);
        e.offsets[k + 1] = int64_t(8 * (k + 1));
      }
    }
  }
  odb::SetData block;
  block.name = "BLOCK";
  block.type = odb_Enum::ELEMENT_SET;
  block.addMembers(part.name(), e.labels);
  part.addSet(block);
  part.addSectionAssignment("Section-BLOCK", block);
  w.close();
}

void writeSetModel(const std::string& path, int nodes, int sets) {
  odb::Writer w(path);
  w.setTitle("many sets");
  odb::EntityWriter part = w.addInstance("PART-1-1");
  odb::EntityData& d = *part.data();
  for (int i = 1; i <= nodes; ++i) {
    d.nodes.labels.push_back(i);
    d.nodes.coordinates.insert(d.nodes.coordinates.end(), {float(i), 0.f, 0.f});
    int32_t ends[2] = {i, i % nodes + 1};
    d.elements.add("T3D2", i, ends, 2, -1);
  }
  std::vector<int32_t> members;
  for (int s = 0; s < sets; ++s) {
    members.clear();
    int count = 1 + s % 61;
    for (int k = 0; k < count; ++k) members.push_back(1 + (s * 7 + k) % nodes);
    std::string name = "SET-" + std::to_string(s);
    if (s % 2 == 0) {
      part.addNodeSet(name, members);
    } else {
      part.addElementSet(name, members);
    }
  }
  w.close();
}

}  // namespace odbs::bench
