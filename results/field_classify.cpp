#include "results/field_classify.h"

#include "odb/odb.h"

namespace odbs {

namespace {

bool isTensor(int t) {
  return t >= odb_Enum::TENSOR_3D_FULL && t <= odb_Enum::TENSOR_2D_SURFACE;
}

// Data types that have positions and section points of their own.
bool hasLocations(int t) {
  return t == odb_Enum::SCALAR || t == odb_Enum::VECTOR || isTensor(t);
}

uint32_t positionBit(int position) {
  switch (position) {
    case odb_Enum::ELEMENT_NODAL:
      return 8;
    case odb_Enum::INTEGRATION_POINT:
      return 4;
    case odb_Enum::CENTROID:
    case odb_Enum::ELEMENT_FACE:
      return 2;
    case odb_Enum::WHOLE_ELEMENT:
      return 16;
    default:
      return 0;
  }
}

}  // namespace

bool isMatrixFieldName(std::string_view name) {
  return name == kMatrixStressName || name == kMatrixRootStressName;
}

uint32_t positionMask(const odb_FieldOutput& field) {
  int t = field.type();
  if (t == odb_Enum::MATRIX) return isMatrixFieldName(field.name()) ? 8 : 0;
  if (!hasLocations(t)) return 0;
  uint32_t mask = 0;
  for (const odb_FieldLocation& loc : field.locations()) mask |= positionBit(loc.position());
  return mask;
}

int hasSeveralSectionPoints(const odb_FieldOutput& field) {
  int t = field.type();
  if (t == odb_Enum::MATRIX) return isMatrixFieldName(field.name()) ? 1 : 0;
  if (!hasLocations(t)) return 0;
  for (const odb_FieldLocation& loc : field.locations())
    if (loc.sectionPoints().size() > 1) return 1;
  return 0;
}

uint32_t dataClassOfBlock(int type, int width) {
  switch (type) {
    case odb_Enum::SCALAR:
    case odb_Enum::MATRIX:
      return 1;
    case odb_Enum::VECTOR:
      return 16;
    case odb_Enum::TENSOR_3D_FULL:
      return 2;
    case odb_Enum::TENSOR_3D_PLANAR:
      return 4;
    case odb_Enum::TENSOR_3D_SURFACE:
    case odb_Enum::TENSOR_2D_PLANAR:
    case odb_Enum::TENSOR_2D_SURFACE:
      return width == 4 ? 4 : width == 3 ? 8 : width == 6 ? 2 : 0;
    default:
      return 0;
  }
}

uint32_t dataClassOfField(const odb_FieldOutput& field) {
  return dataClassOfBlock(field.type(), field.componentLabels().size());
}

uint32_t dataClassMask(const odb_FieldOutput& field) {
  int t = field.type();
  if (t == odb_Enum::SCALAR) return 1;
  if (t == odb_Enum::VECTOR) return 16;
  if (t == odb_Enum::MATRIX) return isMatrixFieldName(field.name()) ? 1 : 0;
  if (!isTensor(t)) return 0;
  odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
  if (blocks.size() < 2) return dataClassOfField(field);
  uint32_t mask = 0;
  for (int i = 0; i < blocks.size(); ++i) {
    const odb_FieldBulkData& b = blocks[i];
    // Scalar, vector and matrix blocks inside a tensor field add nothing.
    if (isTensor(b.type())) mask |= dataClassOfBlock(b.type(), b.width());
  }
  return mask;
}

}  // namespace odbs
