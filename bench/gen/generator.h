// Generator of large synthetic databases for benchmarks: a structured mesh of hexahedra
// (C3D8, 8 integration points) or shells (S4R, 4 integration points, 5 section points) in
// one or several instances; static steps of frames with U at the nodes and S and E at the
// integration points (per section point for shells); optionally a frequency step with a
// complex U; node history regions. Values are cheap deterministic functions of label and
// frame. Frames are written one at a time, so memory stays near one field output.
#pragma once

#include <cstdint>
#include <string>

#include "odb/writer.h"

namespace odbgen {

struct Options {
  int64_t elements = 1000;  // per instance; the mesh is the nearest cube (or square for shells)
  int instances = 1;
  bool shells = false;
  int steps = 1;
  int frames = 2;            // per step
  bool complexStep = false;  // adds a frequency step with a complex U in every frame
  int historyRegions = 0;    // node history regions per step (U1, U2, U3 over the frames)
  bool doublePrecision = false;
};

struct Summary {
  int64_t nodes = 0, elements = 0, frames = 0;
  int64_t largestFieldBytes = 0;  // bytes of the largest single field output's arrays
};

// Adds the nodes and elements of a structured block to part: n x n x n eight-node
// hexahedra (C3D8) on (n+1)^3 nodes at unit spacing, or for shells n x n four-node shells
// (S4R) in the plane z = 0. Labels count from 1, x fastest; every element gets the section
// category `category` (-1: none).
void addBlockMesh(odb::EntityWriter part, int n, bool shells, int32_t category);

// Writes the database to path and returns what it holds. Throws on failure.
Summary generate(const std::string& path, const Options& options);

}  // namespace odbgen
