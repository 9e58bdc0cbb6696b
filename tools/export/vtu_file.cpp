#include "tools/export/vtu_file.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace odbs::exporter {

namespace {

const char* typeName(DataArray::Kind k) {
  switch (k) {
    case DataArray::Kind::kFloat32:
      return "Float32";
    case DataArray::Kind::kFloat64:
      return "Float64";
    case DataArray::Kind::kInt32:
      return "Int32";
    case DataArray::Kind::kInt64:
      return "Int64";
    case DataArray::Kind::kUInt8:
      return "UInt8";
  }
  return "";
}

// The bytes of an array's values.
std::pair<const void*, size_t> bytesOf(const DataArray& a) {
  switch (a.kind) {
    case DataArray::Kind::kFloat32:
      return {a.f32.data(), a.f32.size() * sizeof(float)};
    case DataArray::Kind::kFloat64:
      return {a.f64.data(), a.f64.size() * sizeof(double)};
    case DataArray::Kind::kInt32:
      return {a.i32.data(), a.i32.size() * sizeof(int32_t)};
    case DataArray::Kind::kInt64:
      return {a.i64.data(), a.i64.size() * sizeof(int64_t)};
    case DataArray::Kind::kUInt8:
      return {a.u8.data(), a.u8.size()};
  }
  return {nullptr, 0};
}

// Writes the XML of arrays and queues their bytes for the appended block.
class Appender {
 public:
  void array(std::ostream& xml, const DataArray& a, size_t tuples, const char* where) {
    if (a.valueCount() != tuples * size_t(a.components)) {
      throw std::runtime_error("array " + a.name + " has " + std::to_string(a.valueCount()) +
                               " values for " + std::to_string(tuples) + " " + where);
    }
    xml << "        <DataArray type=\"" << typeName(a.kind) << "\" Name=\"" << xmlEscape(a.name)
        << "\" NumberOfComponents=\"" << a.components << "\"";
    if (a.componentNames.size() == size_t(a.components)) {
      for (size_t c = 0; c < a.componentNames.size(); ++c)
        xml << " ComponentName" << c << "=\"" << xmlEscape(a.componentNames[c]) << "\"";
    }
    if (where[0] == 'f') xml << " NumberOfTuples=\"" << tuples << "\"";
    xml << " format=\"appended\" offset=\"" << offset_ << "\"/>\n";
    blocks_.push_back(bytesOf(a));
    offset_ += sizeof(uint64_t) + blocks_.back().second;
  }

  void writeBlocks(std::ostream& out) const {
    for (const auto& [data, size] : blocks_) {
      uint64_t n = size;  // the hosts we build for are little-endian, as the header says
      out.write(reinterpret_cast<const char*>(&n), sizeof n);
      out.write(static_cast<const char*>(data), std::streamsize(size));
    }
  }

 private:
  std::vector<std::pair<const void*, size_t>> blocks_;
  uint64_t offset_ = 0;
};

}  // namespace

size_t DataArray::valueCount() const {
  switch (kind) {
    case Kind::kFloat32:
      return f32.size();
    case Kind::kFloat64:
      return f64.size();
    case Kind::kInt32:
      return i32.size();
    case Kind::kInt64:
      return i64.size();
    case Kind::kUInt8:
      return u8.size();
  }
  return 0;
}

void writeVtu(const VtuGrid& g, const std::string& path) {
  std::ostringstream xml;
  Appender data;
  xml << "<?xml version=\"1.0\"?>\n";
  for (const auto& c : g.comments) xml << "<!-- " << xmlEscape(c) << " -->\n";
  xml << "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
         "header_type=\"UInt64\">\n  <UnstructuredGrid>\n";
  if (!g.fieldData.empty()) {
    xml << "    <FieldData>\n";
    for (const auto& a : g.fieldData) data.array(xml, a, a.valueCount() / a.components, "f");
    xml << "    </FieldData>\n";
  }
  xml << "    <Piece NumberOfPoints=\"" << g.pointCount() << "\" NumberOfCells=\"" << g.cellCount()
      << "\">\n      <PointData>\n";
  for (const auto& a : g.pointData) data.array(xml, a, g.pointCount(), "points");
  xml << "      </PointData>\n      <CellData>\n";
  for (const auto& a : g.cellData) data.array(xml, a, g.cellCount(), "cells");
  xml << "      </CellData>\n      <Points>\n";
  data.array(xml, g.points, g.pointCount(), "points");
  xml << "      </Points>\n      <Cells>\n";
  data.array(xml, g.connectivity, g.connectivity.valueCount(), "connectivity entries");
  data.array(xml, g.offsets, g.cellCount(), "cells");
  data.array(xml, g.types, g.cellCount(), "cells");
  xml << "      </Cells>\n    </Piece>\n  </UnstructuredGrid>\n"
      << "  <AppendedData encoding=\"raw\">\n   _";

  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  if (!out) throw std::runtime_error("cannot write " + path);
  out << xml.str();
  data.writeBlocks(out);
  out << "\n  </AppendedData>\n</VTKFile>\n";
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
}

}  // namespace odbs::exporter
