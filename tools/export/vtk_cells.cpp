#include "tools/export/vtk_cells.h"

namespace odbs::exporter {

namespace {

enum class Family { kSolid, kSurface, kLine, kPoint, kUnknown };

bool startsWith(const std::string& s, const char* prefix) {
  return s.rfind(prefix, 0) == 0;
}

Family familyOf(const std::string& t) {
  // Longer prefixes first: SPRING and SC8 before S, DCOUP and DC3D before D.
  for (const char* p : {"MASS", "ROTARYI", "DCOUP", "SPRING1"})
    if (startsWith(t, p)) return Family::kPoint;
  for (const char* p : {"SPRING", "DASHPOT", "GAP", "CONN"})
    if (startsWith(t, p)) return Family::kLine;
  for (const char* p : {"C3D", "DC3D", "SC6", "SC8", "COH3D"})
    if (startsWith(t, p)) return Family::kSolid;
  for (const char* p : {"CPS", "CPE", "CAX", "CGAX", "DC2D", "DCAX", "M3D", "R3D", "S", "DS"})
    if (startsWith(t, p)) return Family::kSurface;
  for (const char* p : {"B2", "B3", "PIPE", "T2D", "T3D", "D"})
    if (startsWith(t, p)) return Family::kLine;
  return Family::kUnknown;
}

VtkCell cell(VtkCellType type, std::vector<int> order = {}) {
  return VtkCell{type, std::move(order), true};
}

}  // namespace

VtkCell vtkCellOf(const std::string& typeName, int nodeCount) {
  switch (familyOf(typeName)) {
    case Family::kSolid:
      switch (nodeCount) {
        case 4:
          return cell(kVtkTetra);
        case 6:
          return cell(kVtkWedge, {0, 2, 1, 3, 5, 4});
        case 8:
          return cell(kVtkHexahedron);
        case 10:
          return cell(kVtkQuadraticTetra);
        case 15:
          // Corners as for the wedge, then the midside nodes of VTK's edges 0-1, 1-2, 2-0,
          // 3-4, 4-5, 5-3, 0-3, 1-4, 2-5 in the reordered corners.
          return cell(kVtkQuadraticWedge, {0, 2, 1, 3, 5, 4, 8, 7, 6, 11, 10, 9, 12, 14, 13});
        case 20:
          return cell(kVtkQuadraticHexahedron);
      }
      break;
    case Family::kSurface:
      switch (nodeCount) {
        case 3:
          return cell(kVtkTriangle);
        case 4:
          return cell(kVtkQuad);
        case 6:
          return cell(kVtkQuadraticTriangle);
        case 8:
          return cell(kVtkQuadraticQuad);
      }
      break;
    case Family::kLine:
      if (nodeCount == 2) return cell(kVtkLine);
      if (nodeCount == 3) return cell(kVtkQuadraticEdge, {0, 2, 1});
      break;
    case Family::kPoint:
      if (nodeCount == 1) return cell(kVtkVertex);
      break;
    case Family::kUnknown:
      break;
  }
  if (nodeCount == 1) return VtkCell{kVtkVertex, {}, false};
  if (nodeCount == 2) return VtkCell{kVtkLine, {}, false};
  return VtkCell{kVtkPolyVertex, {}, false};
}

}  // namespace odbs::exporter
