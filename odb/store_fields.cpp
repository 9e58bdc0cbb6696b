// A field output: its description with its locations, its block catalogue and the arrays
// of each block; store and load side by side.
#include <set>

#include "odb/results_store.h"
#include "odb/store_util.h"

namespace odb {

namespace {

void storeLocations(const h5::Group& field, const std::vector<FieldLocationData>& locations) {
  std::vector<int32_t> positions;
  for (const auto& l : locations) positions.push_back(l.position);
  field.write(name::kLocationPositions, positions);
  storeSectionPointLists(
      field, name::kLocationPoint, locations,
      [](const FieldLocationData& l) -> auto& { return l.sectionPoints; });
}

std::vector<FieldLocationData> loadLocations(const h5::Group& field) {
  std::vector<int32_t> positions = field.read<int32_t>(name::kLocationPositions);
  std::vector<std::vector<SectionPointData>> points =
      loadSectionPointLists(field, name::kLocationPoint, static_cast<int64_t>(positions.size()));
  std::vector<FieldLocationData> out(positions.size());
  for (size_t i = 0; i < out.size(); ++i) out[i] = {positions[i], std::move(points[i])};
  return out;
}

void checkCount(const h5::Group& g, int64_t n, const std::string& what) {
  if (n < 0 || n > (int64_t(1) << 40)) damaged(g, "bad " + what);
}

}  // namespace

void storeFieldHeader(const h5::Group& field, const FieldOutputData& f,
                      const std::vector<FieldLocationData>& locations) {
  field.setString(name::kName, f.name);
  field.setString(name::kDescription, f.description);
  field.setInt(name::kType, f.type);
  field.setInt(name::kComplex, f.isComplex ? 1 : 0);
  field.setInt(name::kMatrixOrder, f.matrixOrder);
  field.writeStrings(name::kComponentLabels, f.componentLabels);
  storeLocations(field, locations);
}

FieldOutputData loadFieldHeader(const h5::Group& field, const std::string& fieldName) {
  FieldOutputData d;
  d.name = fieldName;
  d.description = field.getString(name::kDescription);
  d.type = static_cast<int32_t>(field.getInt(name::kType));
  d.isComplex = field.getInt(name::kComplex) != 0;
  d.matrixOrder = static_cast<int32_t>(field.getInt(name::kMatrixOrder));
  d.componentLabels = field.readStrings(name::kComponentLabels);
  d.locations = loadLocations(field);
  return d;
}

namespace {

// The columns of the block catalogue after the positions, in the order they are stored.
const auto kBlockColumns = [](auto column) {
  column(name::kBlockTypes, &BlockRow::type);
  column(name::kBlockWidths, &BlockRow::width);
  column(name::kBlockPrecision, &BlockRow::precision);
  column(name::kBlockSectionPoints, &BlockRow::sectionPoint);
  column(name::kBlockSectionPointDescriptions, &BlockRow::sectionPointDescription);
  column(name::kBlockElementCounts, &BlockRow::elementCount);
  column(name::kBlockCsysWidths, &BlockRow::csysWidth);
  column(name::kBlockArrays, &BlockRow::arrays);
  column(name::kBlockRows, &BlockRow::rows);
  column(name::kBlockElementTypes, &BlockRow::elementType);
  column(name::kBlockInstances, &BlockRow::instance);
};

}  // namespace

void storeBlockCatalogue(const h5::Group& field, const std::vector<BlockRow>& blocks) {
  storeTable(field, blocks, name::kBlockPositions, &BlockRow::position, kBlockColumns);
}

std::vector<BlockRow> loadBlockCatalogue(const h5::Group& field) {
  return loadTable(field, name::kBlockPositions, &BlockRow::position, kBlockColumns);
}

BlockRow storeBlock(const h5::Group& block, const FieldBlockData& b, bool complex) {
  const hsize_t rows = static_cast<hsize_t>(b.rows()), w = static_cast<hsize_t>(b.width);
  int32_t arrays = 0;
  if (b.doublePrecision) {
    block.write(name::kData, b.dataDouble.data(), {rows, w});
    if (complex) block.write(name::kConjugateData, b.conjugateDataDouble.data(), {rows, w});
  } else {
    block.write(name::kData, b.data.data(), {rows, w});
    if (complex) block.write(name::kConjugateData, b.conjugateData.data(), {rows, w});
  }
  if (complex) arrays |= kConjugate;
  if (!b.elementLabels.empty())
    block.write(name::kElementLabels, b.elementLabels), arrays |= kElementLabels;
  if (!b.nodeLabels.empty()) block.write(name::kNodeLabels, b.nodeLabels), arrays |= kNodeLabels;
  if (!b.integrationPoints.empty())
    block.write(name::kIntegrationPoints, b.integrationPoints), arrays |= kIntegrationPoints;
  if (b.csysWidth > 0) {
    block.write(name::kLocalCsys, b.localCsys.data(), {rows, static_cast<hsize_t>(b.csysWidth)});
    arrays |= kLocalCsys;
  }
  // Readers step through element labels with a stride of rows / numberOfElements, so a
  // block with element labels always gets a count (the distinct labels when not given).
  int32_t elementCount = b.numberOfElements;
  if (elementCount == 0 && !b.elementLabels.empty())
    elementCount = static_cast<int32_t>(
        std::set<int32_t>(b.elementLabels.begin(), b.elementLabels.end()).size());
  return {b.position,
          b.type,
          b.width,
          b.doublePrecision ? 1 : 0,
          b.sectionPoint.number,
          elementCount,
          b.csysWidth,
          arrays,
          b.rows(),
          b.sectionPoint.description,
          b.elementType,
          b.instance};
}

FieldBlockData loadBlock(const h5::Group& block, const BlockRow& r, bool complex) {
  checkCount(block, r.rows, "row count");
  if (r.width < 1 || r.width > 1 << 20 || r.csysWidth < 0 || r.csysWidth > 1 << 10)
    damaged(block, "bad width");
  if (r.rows > (int64_t(1) << 31) - 1) damaged(block, "too many rows for one block");
  FieldBlockData d;
  d.instance = r.instance;
  d.elementType = r.elementType;
  d.position = r.position;
  d.type = r.type;
  d.sectionPoint = {r.sectionPoint, r.sectionPointDescription};
  d.width = r.width;
  d.doublePrecision = r.precision != 0;
  d.numberOfElements = r.elementCount;
  d.csysWidth = r.csysWidth;
  const int64_t values = r.rows * r.width;
  if (d.doublePrecision) {
    d.dataDouble = block.read<double>(name::kData, values);
    if (complex) d.conjugateDataDouble = block.read<double>(name::kConjugateData, values);
  } else {
    d.data = block.read<float>(name::kData, values);
    if (complex) d.conjugateData = block.read<float>(name::kConjugateData, values);
  }
  if (r.arrays & kElementLabels) {
    d.elementLabels = block.read<int32_t>(name::kElementLabels, r.rows);
    if (r.rows > 0 && (r.elementCount < 1 || r.elementCount > r.rows))
      damaged(block, "bad element count");
  } else if (r.elementCount < 0 || r.elementCount > r.rows) {
    damaged(block, "bad element count");
  }
  if (r.arrays & kNodeLabels) d.nodeLabels = block.read<int32_t>(name::kNodeLabels, r.rows);
  if (r.arrays & kIntegrationPoints)
    d.integrationPoints = block.read<int32_t>(name::kIntegrationPoints, r.rows);
  if (r.arrays & kLocalCsys)
    d.localCsys = block.read<float>(name::kLocalCsys, r.rows * r.csysWidth);
  else
    d.csysWidth = 0;
  return d;
}

namespace {

// Reads the block catalogue of a field output and the arrays of the blocks at position
// (all blocks for -1), one read per array.
std::vector<odb_FieldBulkData> loadBlocks(const SourcePtr& src, const std::string& path,
                                          bool complex, int position) {
  h5::Group g = src->group(path);
  std::vector<BlockRow> rows = loadBlockCatalogue(g);
  std::vector<odb_FieldBulkData> out;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (position != -1 && rows[i].position != position) continue;
    h5::Group b = g.open(std::string(name::kBlocks) + "/" + std::to_string(i));
    out.emplace_back(loadBlock(b, rows[i], complex));
  }
  return out;
}

}  // namespace

odb_FieldOutputRepository loadFieldOutputs(const SourcePtr& src, const std::string& framePath) {
  h5::Group frame = src->group(framePath);
  std::vector<std::string> names = frame.readStrings(name::kFieldNames);
  odb_FieldOutputRepository repo;
  for (size_t k = 0; k < names.size(); ++k) {
    std::string path = framePath + "/" + std::to_string(k);
    FieldOutputData d = loadFieldHeader(frame.open(std::to_string(k)), names[k]);
    bool complex = d.isComplex;
    repo.insert(names[k], odb_FieldOutput(std::move(d), [src, path, complex](int position) {
                  return loadBlocks(src, path, complex, position);
                }));
  }
  return repo;
}

}  // namespace odb
