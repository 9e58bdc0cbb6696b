// One VTK XML unstructured grid file (.vtu): points, cells, and named arrays on the points,
// the cells and the whole grid. Arrays are stored binary in one appended block (raw, 64-bit
// length headers, little-endian), the form VTK and ParaView read fastest.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "tools/common/xml_text.h"

namespace odbs::exporter {

// A named array of tuples. Exactly one of the value vectors is used, by `kind`.
struct DataArray {
  enum class Kind { kFloat32, kFloat64, kInt32, kInt64, kUInt8 };
  explicit DataArray(std::string name = "", Kind kind = Kind::kFloat32, int components = 1,
                     std::vector<std::string> componentNames = {})
      : name(std::move(name)),
        kind(kind),
        components(components),
        componentNames(std::move(componentNames)) {}

  std::string name;
  Kind kind = Kind::kFloat32;
  int components = 1;
  std::vector<std::string> componentNames;  // empty, or one per component
  std::vector<float> f32;
  std::vector<double> f64;
  std::vector<int32_t> i32;
  std::vector<int64_t> i64;
  std::vector<uint8_t> u8;

  size_t valueCount() const;
};

struct VtuGrid {
  DataArray points{"Points", DataArray::Kind::kFloat32, 3};            // f32: x y z per point
  DataArray connectivity{"connectivity", DataArray::Kind::kInt64, 1};  // i64: point indexes
  DataArray offsets{"offsets", DataArray::Kind::kInt64, 1};  // i64: end of each cell's nodes
  DataArray types{"types", DataArray::Kind::kUInt8, 1};      // u8: VTK cell type per cell
  std::vector<DataArray> pointData, cellData, fieldData;
  std::vector<std::string> comments;  // written as XML comments at the top

  size_t pointCount() const { return points.f32.size() / 3; }
  size_t cellCount() const { return types.u8.size(); }
};

// Writes grid to path. Throws std::runtime_error when the file cannot be written or an
// array's length does not match its point or cell count.
void writeVtu(const VtuGrid& grid, const std::string& path);

// Text with the characters XML reserves in attributes and comments made harmless.
inline std::string xmlEscape(const std::string& text) {
  return tools::xmlEscape(text, tools::XmlDashes::kCommentSafe);
}

}  // namespace odbs::exporter
