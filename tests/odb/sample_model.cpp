#include "tests/odb/sample_model.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace odbtest {

std::string tempPath(const std::string& name) {
  const char* dir = std::getenv("TMPDIR");
  return std::string(dir ? dir : "/tmp") + "/odbtest_" + std::to_string(getpid()) + "_" + name;
}

odb::ModelData sampleModel() {
  odb::ModelData m;
  m.name = "sample";
  m.title = "Sample model";
  m.description = "every object kind";
  m.analysisCode = odb_Enum::EXPLICIT;
  m.annotations = {{"xml", "a\nb"}, {"notes", "free text"}};
  m.sectionCategories = {
      {"solid < elset = SOLID", "solid", {{1, "only point"}}},
      {"shell < elset = SKIN",
       "shell",
       {{1, "Layer = 1, bottom"}, {2, "Layer = 1, top"}, {3, "Layer = 2, middle"}}},
  };
  odb::SectionData solid{"Section-SOLID", kseO_HOMOGENEOUS_SOLID, "STEEL", 0.f, 0.f, {}};
  odb::SectionData skin{"Section-SKIN", kseO_COMPOSITE_SHELL, "", 0.f, 0.f, {}};
  skin.layers = {{"CARBON", 0.5f, odb_Union::ofFloat(45.f)},
                 {"GLASS", 0.25f, odb_Union::ofInt(90)},
                 {"CORE", 1.f, odb_Union::ofString("ORI-1")}};
  m.sections = {solid,
                skin,
                {"P7", kseO_POINT, "", 0.f, 2.5f, {}},
                {"Section-THIN", kseO_HOMOGENEOUS_SHELL, "ALU", 1.5f, 0.f, {}},
                {"CONN", kseO_CONNECTOR, "", 0.f, 0.f, {}},
                {"Section-ROD", kseO_TRUSS, "STEEL", 0.f, 0.f, {}},
                {"Section-PEG", kseO_PEG, "STEEL", 0.f, 0.f, {}},
                {"Section-MEM", kseO_MEMBRANE, "ALU", 0.f, 0.f, {}},
                {"Section-GAS", kseO_GASKET, "RUBBER", 0.f, 0.f, {}},
                {"Section-COH", kseO_COHESIVE, "GLUE", 0.f, 0.f, {}},
                {"Section-OTHER", kseO_OTHER_SECTION, "", 0.f, 0.f, {}}};
  odb::MaterialData steel;
  steel.name = "STEEL";
  steel.hasDensity = true;
  steel.density = {{7.8e-9f}};
  steel.hasElastic = true;
  steel.elasticType = "ISOTROPIC";
  steel.elastic = {{210000.f, 0.3f}, {200000.f, 0.3f, 100.f}};
  steel.hasFailStrain = true;
  steel.failStrain = {{0.1f, 0.2f}};
  steel.hasFailStress = true;
  steel.failStress = {{1, 2, 3, 4, 5, 6, 7}};
  odb::MaterialData water;
  water.name = "WATER";
  water.hasAcousticMedium = true;
  water.acousticMedium = {{2200.f}};
  odb::MaterialData empty;
  empty.name = "EMPTY";
  m.materials = {steel, water, empty};

  odb::EntityData& a = m.assembly;
  a.name = "ASSEMBLY";
  a.nodes = {{1000}, {0.f, 0.f, 5.f}, 3};
  int32_t conn[] = {1, 2};
  a.elements.add("CONN3D2", 5000, conn, 2, -1);

  odb::EntityData p1;
  p1.name = "PART-1-1";
  for (int i = 0; i < 12; ++i) {
    p1.nodes.labels.push_back(i + 1);
    p1.nodes.coordinates.insert(p1.nodes.coordinates.end(),
                                {float(i % 2), float((i / 2) % 2), float(i / 4)});
  }
  int32_t h1[] = {1, 2, 4, 3, 5, 6, 8, 7}, h2[] = {5, 6, 8, 7, 9, 10, 12, 11};
  p1.elements.add("C3D8", 1, h1, 8, 0);
  p1.elements.add("C3D8", 2, h2, 8, 0);
  odb::SetData ns{"FIX", odb_Enum::NODE_SET, {}, {}, {}, {}};
  ns.addMembers("PART-1-1", {1, 2, 3, 4});
  odb::SetData es{"SOLID", odb_Enum::ELEMENT_SET, {}, {}, {}, {}};
  es.addMembers("PART-1-1", {1, 2});
  odb::SetData sf{"TOP", odb_Enum::SURFACE_SET, {}, {}, {}, {}};
  sf.addMembers("PART-1-1", {2}, {odb_Enum::FACE2});
  odb::SetData coupling{"COUPLING_A", odb_Enum::NODE_SET, {}, {}, {}, {}};
  coupling.addMembers("PART-1-1", {9});
  p1.nodeSets = {ns, coupling};
  p1.elementSets = {es};
  p1.surfaces = {sf};
  p1.sectionAssignments = {{"Section-SOLID", es}};

  odb::EntityData p2;
  p2.name = "PART-2-1";
  p2.nodes = {{1, 2, 3, 4}, {0, 0, 1, 0, 1, 1, 0, 1}, 2};
  int32_t q[] = {1, 2, 3, 4};
  p2.elements.add("S4R", 7, q, 4, 1);
  p2.elements.add("CONN3D2", 8, q, 2, -1);
  odb::SetData skinSet{"SKIN", odb_Enum::ELEMENT_SET, {}, {}, {}, {}};
  skinSet.addMembers("PART-2-1", {7});
  p2.elementSets = {skinSet};
  p2.sectionAssignments = {{"Section-SKIN", skinSet}};
  m.instances = {p2, p1};  // stored out of key order on purpose

  odb::SetData all{" ALL NODES", odb_Enum::NODE_SET, {}, {}, {}, {}};
  all.addMembers("PART-1-1", {1, 2});
  all.addMembers("PART-2-1", {3});
  odb::SetData asmEls{"BOTH", odb_Enum::ELEMENT_SET, {}, {}, {}, {}};
  asmEls.addMembers("PART-2-1", {7});
  asmEls.addMembers("PART-1-1", {1});
  odb::SetData asmSurf{"CONTACT", odb_Enum::SURFACE_SET, {}, {}, {}, {}};
  asmSurf.addMembers("PART-1-1", {1, 2}, {odb_Enum::FACE1, odb_Enum::FACE6});
  a.nodeSets = {all};
  a.elementSets = {asmEls};
  a.surfaces = {asmSurf};
  odb::SetData connRegion{"CONN", odb_Enum::ELEMENT_SET, {}, {}, {}, {}};
  connRegion.addMembers("ASSEMBLY", {5000});
  a.sectionAssignments = {{"CONN", connRegion}};
  m.connectorOrientations = {{connRegion, true, "DATUM-1", false, ""}};
  return m;
}

}  // namespace odbtest
