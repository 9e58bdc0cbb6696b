#include "tools/ccx/frd_fields.h"

#include <map>

namespace odbs::ccx {
namespace {

struct Known {
  const char* name;
  const char* description;
  odb_Enum::odb_DataTypeEnum type;
  std::vector<std::string> labels;
  std::vector<int> source;
};

// The solver writes tensors as xx, yy, zz, xy, yz, zx; the database orders them
// 11, 22, 33, 12, 13, 23.
const std::vector<int> kTensorOrder = {0, 1, 2, 3, 5, 4};

const std::map<std::string, std::vector<Known>>& table() {
  using odb_Enum::SCALAR;
  using odb_Enum::TENSOR_3D_FULL;
  using odb_Enum::VECTOR;
  static const std::map<std::string, std::vector<Known>> known = {
      {"DISP", {{"U", "Spatial displacement", VECTOR, {"U1", "U2", "U3"}, {0, 1, 2}}}},
      {"VELO", {{"V", "Spatial velocity", VECTOR, {"V1", "V2", "V3"}, {0, 1, 2}}}},
      {"FORC", {{"RF", "Reaction force", VECTOR, {"RF1", "RF2", "RF3"}, {0, 1, 2}}}},
      {"STRESS",
       {{"S",
         "Stress components",
         TENSOR_3D_FULL,
         {"S11", "S22", "S33", "S12", "S13", "S23"},
         kTensorOrder}}},
      {"TOSTRAIN",
       {{"E",
         "Strain components",
         TENSOR_3D_FULL,
         {"E11", "E22", "E33", "E12", "E13", "E23"},
         kTensorOrder}}},
      {"MESTRAIN",
       {{"ME",
         "Mechanical strain components",
         TENSOR_3D_FULL,
         {"ME11", "ME22", "ME33", "ME12", "ME13", "ME23"},
         kTensorOrder}}},
      {"PE", {{"PEEQ", "Equivalent plastic strain", SCALAR, {}, {0}}}},
      {"ENER", {{"ENER", "Strain energy density", SCALAR, {}, {0}}}},
      {"NDTEMP", {{"NT", "Nodal temperature", SCALAR, {}, {0}}}},
      {"ERROR", {{"ERROR", "Stress error estimate in percent", SCALAR, {}, {0}}}},
      {"CONTACT",
       {{"COPEN", "Contact opening", SCALAR, {}, {0}},
        {"CSLIP1", "Relative tangential motion, direction 1", SCALAR, {}, {1}},
        {"CSLIP2", "Relative tangential motion, direction 2", SCALAR, {}, {2}},
        {"CPRESS", "Contact pressure", SCALAR, {}, {3}},
        {"CSHEAR1", "Frictional shear stress, direction 1", SCALAR, {}, {4}},
        {"CSHEAR2", "Frictional shear stress, direction 2", SCALAR, {}, {5}}}},
  };
  return known;
}

// Imaginary parts come under the name with an "I" behind, cut to the 8 characters of the
// file's name field ("STRESS" -> "STRESSI", "TOSTRAIN" -> "TOSTRAII").
const std::map<std::string, std::string>& imaginaryNames() {
  static const std::map<std::string, std::string> names = [] {
    std::map<std::string, std::string> m;
    for (const auto& [name, parts] : table()) m[(name + "I").substr(0, 8)] = name;
    return m;
  }();
  return names;
}

}  // namespace

std::vector<FieldPart> fieldsOfBlock(const std::string& blockName, int storedComponents) {
  std::string name = blockName;
  bool imaginary = false;
  if (!table().count(name)) {
    auto it = imaginaryNames().find(name);
    if (it == imaginaryNames().end()) return {};
    name = it->second;
    imaginary = true;
  }
  std::vector<FieldPart> parts;
  for (const Known& k : table().at(name)) {
    for (int s : k.source) {
      if (s >= storedComponents) return {};  // not the layout this table expects
    }
    parts.push_back(FieldPart{k.name, k.description, k.type, k.labels, k.source, imaginary});
  }
  return parts;
}

std::vector<FieldPart> sectionForceParts(bool imaginary) {
  // The solver writes them in the columns of the stress components xx, yy, zz, xy, yz, zx:
  // shear force in 1 and 2, normal force, torque, moment about 1, moment about 2.
  return {
      FieldPart{
          "SF", "Section forces", odb_Enum::VECTOR, {"SF1", "SF2", "SF3"}, {2, 0, 1}, imaginary},
      FieldPart{
          "SM", "Section moments", odb_Enum::VECTOR, {"SM1", "SM2", "SM3"}, {4, 5, 3}, imaginary}};
}

}  // namespace odbs::ccx
