#include "results/contact_rows.h"

#include <cfloat>
#include <climits>
#include <stdexcept>

#include "odb/odb.h"

namespace odbs {

namespace {

// Component k of row r, in single precision.
float component(const odb_FieldBulkData& b, bool conjugate, size_t r, size_t k) {
  size_t i = r * static_cast<size_t>(b.width()) + k;
  if (b.precision() == odb_Enum::DOUBLE_PRECISION) {
    const double* v = conjugate ? b.conjugateDataDouble() : b.dataDouble();
    return static_cast<float>(v[i]);
  }
  return (conjugate ? b.conjugateData() : b.data())[i];
}

bool hasValues(const odb_FieldBulkData& b, bool conjugate) {
  if (b.precision() == odb_Enum::DOUBLE_PRECISION)
    return (conjugate ? b.conjugateDataDouble() : b.dataDouble()) != nullptr;
  return (conjugate ? b.conjugateData() : b.data()) != nullptr;
}

// Nodal blocks are labelled by node, all others by element.
const int* rowLabels(const odb_FieldBulkData& b) {
  const int* first = b.position() == odb_Enum::NODAL ? b.nodeLabels() : b.elementLabels();
  const int* second = b.position() == odb_Enum::NODAL ? b.elementLabels() : b.nodeLabels();
  return first ? first : second;
}

}  // namespace

void queueValueRows(const odb_FieldBulkData& block, bool complex, RowTypes types, bool sentinel,
                    ReplyChannel& out) {
  size_t rows = static_cast<size_t>(block.length());
  size_t width = static_cast<size_t>(block.width());
  if (rows == 0 || width == 0) return;
  size_t body = 4 + 4 * width * (complex ? 2 : 1);
  if (body >= kRecordBufferSize) throw std::runtime_error("contact output: row too wide");
  if (complex && !hasValues(block, true))
    throw std::runtime_error("contact output: complex field without conjugate values");
  const int* labels = rowLabels(block);
  for (size_t r = 0; r < rows; ++r) {
    uint8_t* p = out.queueFixed(complex ? types.complex : types.real, body);
    p = putI32(p, labels ? labels[r] : 0);
    for (size_t k = 0; k < width; ++k) {
      float v = component(block, false, r, k);
      if (sentinel && !complex && v == -FLT_MAX) v = -1e-30f;
      p = putF32(p, v);
    }
    if (complex) {
      for (size_t k = 0; k < width; ++k) p = putF32(p, component(block, true, r, k));
    }
  }
}

void queueStatusRows(const odb_FieldBulkData& block, bool connectorStatus, ReplyChannel& out) {
  const int* labels = block.elementLabels();
  size_t rows = static_cast<size_t>(block.length());
  if (!labels || rows == 0 || block.width() < 1) return;
  int32_t previous = INT_MAX;
  for (size_t r = 0; r < rows; ++r) {
    if (labels[r] == previous) continue;
    previous = labels[r];
    float v = component(block, false, r, 0);
    if (connectorStatus) v = v == 0.f ? 1.f : 0.f;
    putF32(putI32(out.queueFixed(kRecElementStatus, 8), labels[r]), v);
  }
}

}  // namespace odbs
