// The mesh of a database as one VTK grid: the nodes and elements of every part instance and
// of the root assembly itself, with arrays that say where each point and cell came from,
// and the maps from (instance, label) to point and cell that the field arrays use.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/export/vtu_file.h"

class odb_Odb;

namespace odbs::exporter {

struct MeshIndex {
  // The entities in grid order: part instances in name order, then the root assembly
  // when it has nodes of its own. Their index is the "instance" array's value.
  std::vector<std::string> entities;
  std::string assemblyName;
  std::vector<std::unordered_map<int32_t, int64_t>> points;  // per entity: label -> point
  std::vector<std::unordered_map<int32_t, int64_t>> cells;   // per entity: label -> cell

  // The entity of an instance name as blocks and sets give it ("" and the assembly's name
  // for the root assembly), or -1.
  int entityOf(const std::string& instance) const;
  int64_t point(int entity, int32_t label) const;  // -1 when absent
  int64_t cell(int entity, int32_t label) const;   // -1 when absent
};

struct MeshOptions {
  bool sets = true;  // node and element sets as 0/1 arrays
};

struct Mesh {
  VtuGrid grid;  // points, cells and the mesh arrays; no field values
  MeshIndex index;
  // Element types not in the cell table (exported as points), for a warning.
  std::vector<std::string> unknownTypes;
};

// Reads the model of odb. Point arrays: "instance", "node_label", one UInt8 "nset NAME" per
// node set; cell arrays: "instance", "element_label", one "elset NAME" per element set.
// Throws std::runtime_error when an element names a node its instance does not have.
Mesh buildMesh(const odb_Odb& odb, const MeshOptions& options);

}  // namespace odbs::exporter
