// A small model that holds every kind of model object, for round-trip tests.
#pragma once

#include <string>
#include <vector>

#include "odb/model_data.h"

namespace odbtest {

// Two instances (PART-1-1 with hexahedra, PART-2-1 with a shell and a connector), assembly
// nodes and elements, instance and assembly sets and surfaces, every section class, three
// materials, section categories and a connector orientation.
odb::ModelData sampleModel();

// Writes at path the model of sampleModel() and two steps (Step-B then Step-A) with frames,
// field outputs of every kind (nodal and integration-point blocks, double precision, local
// coordinate systems, section points, a complex field, a matrix field) and history regions.
void writeSampleDatabase(const std::string& path);

// A unique path under the test temporary folder.
std::string tempPath(const std::string& name);

// The keys of a repository in the order that its iterator It walks them.
template <typename It, typename Repository>
std::vector<std::string> keysOf(const Repository& r) {
  std::vector<std::string> keys;
  for (It it(r); !it.isDone(); it.next()) keys.push_back(it.currentKey());
  return keys;
}

}  // namespace odbtest
