// One field output of a frame as arrays of the VTK grid.
//
// Nodal values become point data named after the field. Element-nodal values are averaged
// over the elements that share a node and become point data as well. Integration-point,
// centroid and whole-element values become cell data: the average over the element's
// values, named after the field, and, when asked for and the field has integration points,
// every point's value in one array "NAME@ip" of (points x components) components ("ip1 S11",
// "ip1 S22", ..., then ip2), NaN where an element has fewer points. Values at a section point
// (shells, beams, layers) go to arrays of their own, "NAME@spN"; conjugate parts of a complex field
// to "NAME@imaginary". Points and cells without a value hold NaN. Values stay in their
// stored precision (Float32, or Float64 when any block is double precision).
//
// Derived values of symmetric tensor fields (derived_values.h) are added beside the point
// and cell averages as "NAME Mises (derived)" and "NAME Principal (derived)" (components
// max, mid, min), computed from the written tuples.
#pragma once

#include <string>
#include <vector>

#include "tools/export/mesh_grid.h"
#include "tools/export/vtu_file.h"

class odb_FieldOutput;

namespace odbs::exporter {

struct FieldOptions {
  bool derived = true;
  bool integrationPoints = false;  // the "NAME@ip" arrays
};

// Adds the arrays of field to grid (its point and cell counts from index). Blocks of
// positions without a place in the grid (whole model, surfaces) and blocks of unknown
// instances are left out with a note in notes.
void addFieldArrays(const odb_FieldOutput& field, const MeshIndex& index, const FieldOptions& opt,
                    VtuGrid& grid, std::vector<std::string>& notes);

}  // namespace odbs::exporter
