#include "bench/model/model_generator.h"

#include <algorithm>

#include "bench/gen/generator.h"
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
  odbgen::addBlockMesh(part, n, false, category);
  const std::vector<int32_t>& labels = part.data()->elements.labels;
  odb::SetData block;
  block.name = "BLOCK";
  block.type = odb_Enum::ELEMENT_SET;
  block.addMembers(part.name(), labels);
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
