// Element types of a database as cells of the VTK file formats: the cell type number and
// the order in which VTK wants the element's nodes.
//
// Databases keep the node order of the solver's decks: corners first (the bottom face
// counterclockwise seen from the top face, then the top face), then the midside nodes
// edge by edge, for beams and trusses end, middle, end. VTK's documented orders
// (vtkCellType.h and the cell classes) agree for tetrahedra, hexahedra, triangles and
// quadrilaterals, linear and quadratic. They differ for wedges, whose first triangle VTK
// orders so that its normal points away from the second one, and for 3-node lines, whose
// middle node VTK puts last.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace odbs::exporter {

// VTK cell type numbers used here (vtkCellType.h).
enum VtkCellType : uint8_t {
  kVtkVertex = 1,
  kVtkPolyVertex = 2,
  kVtkLine = 3,
  kVtkTriangle = 5,
  kVtkQuad = 9,
  kVtkTetra = 10,
  kVtkHexahedron = 12,
  kVtkWedge = 13,
  kVtkQuadraticEdge = 21,
  kVtkQuadraticTriangle = 22,
  kVtkQuadraticQuad = 23,
  kVtkQuadraticTetra = 24,
  kVtkQuadraticHexahedron = 25,
  kVtkQuadraticWedge = 26,
};

struct VtkCell {
  VtkCellType type = kVtkPolyVertex;
  // order[k]: the element node (0-based, database order) that is VTK's node k; empty when
  // the orders agree.
  std::vector<int> order;
  bool known = false;  // false: an element type not in the table, exported as points
};

// The VTK cell of an element of type typeName with nodeCount nodes. The family (solid,
// plane or shell, line, point) comes from the name's leading letters (C3D..., CPS...,
// S..., B..., MASS ...), the shape from the node count. A type not in the table is a poly
// vertex (known = false); a 1-node or 2-node element of unknown type a vertex or a line.
VtkCell vtkCellOf(const std::string& typeName, int nodeCount);

}  // namespace odbs::exporter
