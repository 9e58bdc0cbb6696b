#include "tools/ccx/element_types.h"

#include <map>

namespace odbs::ccx {

int deckNodeCount(const std::string& type) {
  static const std::map<std::string, int> counts = {
      {"C3D4", 4},     {"C3D6", 6},    {"C3D8", 8},    {"C3D8R", 8},   {"C3D8I", 8},
      {"C3D10", 10},   {"C3D10T", 10}, {"C3D15", 15},  {"C3D20", 20},  {"C3D20R", 20},
      {"CPS3", 3},     {"CPS4", 4},    {"CPS4R", 4},   {"CPS6", 6},    {"CPS8", 8},
      {"CPS8R", 8},    {"CPE3", 3},    {"CPE4", 4},    {"CPE4R", 4},   {"CPE6", 6},
      {"CPE8", 8},     {"CPE8R", 8},   {"CAX3", 3},    {"CAX4", 4},    {"CAX4R", 4},
      {"CAX6", 6},     {"CAX8", 8},    {"CAX8R", 8},   {"S3", 3},      {"S4", 4},
      {"S4R", 4},      {"S6", 6},      {"S8", 8},      {"S8R", 8},     {"M3D3", 3},
      {"M3D4", 4},     {"M3D4R", 4},   {"M3D6", 6},    {"M3D8", 8},    {"M3D8R", 8},
      {"B21", 2},      {"B31", 2},     {"B31R", 2},    {"B32", 3},     {"B32R", 3},
      {"T2D2", 2},     {"T3D2", 2},    {"T3D3", 3},    {"D", 3},       {"DCOUP3D", 1},
      {"GAPUNI", 2},   {"MASS", 1},    {"SPRINGA", 2}, {"SPRING1", 1}, {"SPRING2", 2},
      {"DASHPOTA", 2}, {"F3D4", 4},    {"F3D6", 6},    {"F3D8", 8},    {"C3D20RI", 20},
  };
  auto it = counts.find(type);
  return it == counts.end() ? -1 : it->second;
}

int frdNodeCount(int typeCode) {
  static const int counts[] = {0, 8, 6, 4, 20, 15, 10, 3, 6, 4, 8, 2, 3};
  if (typeCode < 1 || typeCode > 12) return -1;
  return counts[typeCode];
}

}  // namespace odbs::ccx
