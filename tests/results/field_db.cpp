#include "tests/results/field_db.h"

namespace odbs::test {

odb::FieldBlockData elementBlock(const std::string& type, std::vector<int32_t> elements,
                                 std::vector<int32_t> points, std::vector<int32_t> nodes, int width,
                                 std::vector<float> data, const std::string& instance) {
  odb::FieldBlockData b;
  b.instance = instance;
  b.elementType = type;
  b.position = points.empty() ? odb_Enum::CENTROID : odb_Enum::INTEGRATION_POINT;
  b.type = width == 1 ? odb_Enum::SCALAR : odb_Enum::TENSOR_3D_FULL;
  b.width = width;
  b.data = std::move(data);
  b.elementLabels = std::move(elements);
  b.integrationPoints = std::move(points);
  b.nodeLabels = std::move(nodes);
  return b;
}

void addStepFrame(odb::Writer& w, const std::string& name, const std::string& procedure, int mode) {
  odb::StepData s;
  s.name = name;
  s.procedure = procedure;
  w.addStep(s);
  odb::FrameData f;
  f.mode = mode;
  w.addFrame(f);
}

odb::FieldOutputData fieldOf(const std::string& name, int type, std::vector<std::string> labels,
                             bool complex) {
  odb::FieldOutputData f;
  f.name = name;
  f.type = type;
  f.componentLabels = std::move(labels);
  f.isComplex = complex;
  return f;
}

odb::FieldBlockData shellAt(int sp, std::vector<int32_t> elements, const std::string& instance) {
  std::vector<float> v;
  for (int32_t e : elements) v.push_back(float(10 * sp + e));
  odb::FieldBlockData b =
      elementBlock("S4R", elements, std::vector<int32_t>(elements.size(), 1), {}, 1, v, instance);
  b.sectionPoint = {sp, ""};
  return b;
}

WrittenDatabase shellRegions() {
  return WrittenDatabase([](odb::Writer& w) {
    w.setTitle("regions");
    odb::EntityWriter part = w.addInstance("PART-1-1");
    part.addNodes({10, 11, 12, 13}, {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0});
    part.addElement("S4R", 1, {10, 11, 12, 13});
    part.addElement("S4R", 2, {11, 12});
    part.addElement("C3D8", 9, {12, 13});
    part.addElementSet("TOP", {1});
    part.addSurface("SURF", {2}, {odb_Enum::FACE1});
    part.addElementSet("SOLID", {9});
    part.addNodeSet("NS", {10});
    w.addRegionPair({"CP", odb::kContactPair, "SURF", "TOP"});
    w.addRegionPair({"TIE1", odb::kTie, "NS", "SOLID"});
    addStepFrame(w, "Step-1");
    w.addFieldOutput(fieldOf("T", odb_Enum::SCALAR, {"T"}));
    for (int sp = 1; sp <= 5; ++sp)
      w.addFieldBlock(sp <= 3 ? shellAt(sp, {1, 2}) : shellAt(sp, {1}));
    w.addFieldBlock(elementBlock("C3D8", {9}, {1}, {}, 1, {100}));
    w.addFieldOutput(fieldOf("U", odb_Enum::SCALAR, {"U"}));
    w.addFieldBlock(elementBlock("", {}, {}, {10, 11, 12, 13}, 1, {1, 2, 3, 4}));
    w.addFieldOutput(fieldOf("MATRIX Sqqx", odb_Enum::SCALAR, {"M"}));
    w.addFieldBlock(elementBlock("C3D8", {9}, {1}, {}, 1, {4}));
  });
}

}  // namespace odbs::test
