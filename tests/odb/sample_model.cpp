#include "tests/odb/sample_model.h"

#include <unistd.h>

#include <cstdlib>
#include <string>

#include "odb/writer.h"

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
  p1.sectionAssignments = {{"Section-SOLID", es, {}}};

  odb::EntityData p2;
  p2.name = "PART-2-1";
  p2.nodes = {{1, 2, 3, 4}, {0, 0, 1, 0, 1, 1, 0, 1}, 2};
  int32_t q[] = {1, 2, 3, 4};
  p2.elements.add("S4R", 7, q, 4, 1);
  p2.elements.add("CONN3D2", 8, q, 2, -1);
  odb::SetData skinSet{"SKIN", odb_Enum::ELEMENT_SET, {}, {}, {}, {}};
  skinSet.addMembers("PART-2-1", {7});
  p2.elementSets = {skinSet};
  p2.sectionAssignments = {{"Section-SKIN", skinSet, {}}};
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
  a.sectionAssignments = {{"CONN", connRegion, {}}};
  m.connectorOrientations = {{connRegion, true, "DATUM-1", false, ""}};
  // Defined in this order, not in name order.
  m.regionPairs = {{"TIE-B", odb::kTie, "FIX", "SOLID"},
                   {"CP-A", odb::kContactPair, "TOP", "SKIN"}};
  return m;
}

namespace {

void writeSampleResults(odb::Writer& w) {
  w.addStep({"Step-B", "loading", "*STATIC", odb_Enum::TIME, 0.0});
  w.addFrame({-1, odb_Enum::TIME, 0, 0.5, 0.0, "Increment 1"});
  w.addFieldOutput({"U", "displacement", odb_Enum::VECTOR, {"U1", "U2", "U3"}, false, 0, {}});
  odb::FieldBlockData u;
  u.instance = "PART-1-1";
  u.position = odb_Enum::NODAL;
  u.type = odb_Enum::VECTOR;
  u.width = 3;
  u.data = {1, 2, 3, 4, 5, 6};
  u.nodeLabels = {1, 2};
  w.addFieldBlock(u);
  w.addFieldOutput({"S",
                    "stress",
                    odb_Enum::TENSOR_3D_FULL,
                    {"S11", "S22", "S33", "S12", "S13", "S23"},
                    false,
                    0,
                    {}});
  odb::FieldBlockData s;
  s.instance = "PART-1-1";
  s.elementType = "C3D8";
  s.position = odb_Enum::INTEGRATION_POINT;
  s.type = odb_Enum::TENSOR_3D_FULL;
  s.width = 6;
  s.doublePrecision = true;
  s.dataDouble.resize(12);
  for (int i = 0; i < 12; ++i) s.dataDouble[i] = 1.0 + i / 3.0;
  s.elementLabels = {1, 1};
  s.integrationPoints = {1, 2};
  s.numberOfElements = 1;
  s.csysWidth = 4;
  s.localCsys = {0, 0, 0, 1, 0, 0, 0.7071f, 0.7071f};
  w.addFieldBlock(s);
  odb::FieldBlockData c = s;  // the same field at the centroid
  c.position = odb_Enum::CENTROID;
  c.dataDouble.resize(6);
  c.elementLabels = {2};
  c.integrationPoints.clear();
  c.csysWidth = 0;
  c.localCsys.clear();
  w.addFieldBlock(c);
  w.addFieldOutput({"SF", "shell forces", odb_Enum::SCALAR, {}, false, 0, {}});
  for (int sp : {1, 5}) {
    odb::FieldBlockData b;
    b.instance = "PART-2-1";
    b.elementType = "S4R";
    b.position = odb_Enum::INTEGRATION_POINT;
    b.sectionPoint = {sp, "SNEG, (fraction = -1.0)"};
    b.data = {float(sp)};
    b.elementLabels = {7};
    b.integrationPoints = {1};
    w.addFieldBlock(b);
  }
  w.addFrame({-1, odb_Enum::TIME, 0, 1.0, 0.0, "Increment 2"});
  w.addFieldOutput({"U", "displacement", odb_Enum::VECTOR, {"U1", "U2", "U3"}, false, 0, {}});
  u.data = {7, 8, 9, 10, 11, 12};
  w.addFieldBlock(u);

  odb::HistoryRegionData node{"Node PART-1-1.5", "", {}, {}};
  node.point.position = odb_Enum::NODAL;
  node.point.nodeLabel = 5;
  node.point.region.name = "MONITOR";
  node.outputs = {
      {"U2", "displacement", odb_Enum::SCALAR, 2, {0.f, 0.f, 0.5f, 0.1f, 1.f, 0.3f}, {}},
      {"U1", "displacement", odb_Enum::SCALAR, 2, {}, {}}};
  w.addHistoryRegion(node);
  odb::HistoryRegionData conn{"Element ASSEMBLY.5000", "", {}, {}};
  conn.point.position = odb_Enum::WHOLE_ELEMENT;
  conn.point.elementLabel = 5000;
  conn.point.elementType = "CONN3D2";
  conn.point.integrationPoint = 1;
  conn.point.sectionPoint = {3, "middle"};
  conn.outputs = {{"CFAILST1", "", odb_Enum::SCALAR, 2, {0.f, 0.f, 0.7f, 1.f}, {}}};
  w.addHistoryRegion(conn);

  w.addStep({"Step-A", "harmonic", "*STEADY STATE DYNAMICS", odb_Enum::FREQUENCY, 1.0});
  w.addFrame({7, odb_Enum::FREQUENCY, 2, 12.5, 12.5, "Mode 2"});
  w.addFieldOutput({"U", "", odb_Enum::VECTOR, {"U1"}, true, 0, {}});
  odb::FieldBlockData cu;
  cu.instance = "PART-1-1";
  cu.position = odb_Enum::NODAL;
  cu.type = odb_Enum::VECTOR;
  cu.width = 1;
  cu.data = {1.5f};
  cu.conjugateData = {-0.5f};
  w.addFieldBlock(cu);  // no label arrays at all
  w.addFieldOutput({"MATRIX Sqq", "", odb_Enum::MATRIX, {"M"}, false, 2, {}});
  odb::FieldBlockData m;
  m.position = odb_Enum::WHOLE_MODEL;
  m.type = odb_Enum::MATRIX;
  m.data = {1, 2, 3};
  w.addFieldBlock(m);
  odb::HistoryRegionData harmonic{"Assembly ASSEMBLY", "", {}, {}};
  harmonic.point.position = odb_Enum::WHOLE_MODEL;
  harmonic.outputs = {{"ALLIE", "", odb_Enum::SCALAR, 2, {12.5f, 3.f}, {12.5f, -1.f}}};
  w.addHistoryRegion(harmonic);
}

}  // namespace

void writeSampleDatabase(const std::string& path) {
  odb::Writer w(path);
  odb::addModel(w, sampleModel());
  writeSampleResults(w);
  w.close();
}

}  // namespace odbtest
