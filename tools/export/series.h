// A database as a time series that VTK and ParaView open: one .vtu file per frame (the mesh
// and the chosen field outputs of that frame) and a .pvd collection that lists them with
// their times.
//
// Times: a frame of a time-domain step is at the step's total time plus the frame value;
// every other frame (frequency, modal, or a time not after the previous frame's) one unit
// after the previous frame, so that the series stays strictly increasing. Each .vtu holds
// its own step number, frame index, frame value and frequency as field data
// ("step", "frame", "frame_value", "frequency") beside "TimeValue".
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tools/export/field_arrays.h"
#include "tools/export/mesh_grid.h"

class odb_Odb;

namespace odbs::exporter {

struct ExportOptions {
  std::vector<std::string> fields;  // field outputs to write; empty: all
  std::vector<std::string> steps;   // steps to write; empty: all
  bool lastFrameOnly = false;       // only the last frame of each step
  MeshOptions mesh;
  FieldOptions field;
};

struct ExportSummary {
  size_t points = 0, cells = 0, frames = 0;
  std::vector<std::string> notes;  // what was left out, for warnings
};

// Writes pvdPath and, in the folder beside it named after it without ".pvd", one file per
// frame. A database without steps gives one file with the mesh at time 0. Throws
// std::runtime_error when a file cannot be written, a named step or field does not exist,
// or the database is damaged.
ExportSummary exportSeries(const odb_Odb& odb, const std::string& pvdPath,
                           const ExportOptions& options);

}  // namespace odbs::exporter
