#include "results/modal_stress.h"

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "odb/odb.h"
#include "results/block_arrays.h"
#include "results/field_classify.h"
#include "results/modal_mises.h"
#include "results/value_stream.h"

namespace odbs {

namespace {

// The position code that reads a field whole.
constexpr int32_t kWholeField = 3;

// The n by n symmetric matrix from the lower triangle stored row by row.
std::vector<float> unpackMatrix(const odb_FieldBulkData& block, int n) {
  const odb::FieldBlockData& d = block.blockData();
  size_t need = size_t(n) * size_t(n + 1) / 2;
  size_t have = d.doublePrecision ? d.dataDouble.size() : d.data.size();
  if (have < need) throw std::runtime_error("matrix field holds fewer values than its order");
  std::vector<float> m(size_t(n) * size_t(n));
  size_t k = 0;
  for (int i = 0; i < n; ++i)
    for (int j = 0; j <= i; ++j, ++k) {
      float v = d.doublePrecision ? static_cast<float>(d.dataDouble[k]) : d.data[k];
      m[size_t(i) * n + j] = m[size_t(j) * n + i] = v;
    }
  return m;
}

odb_FieldOutput stressOf(const odb_Frame& frame, int32_t positionCode) {
  const odb_FieldOutput& s = frame.fieldOutputs().get("S");
  return positionCode == kWholeField ? s : s.getSubset(positionCode);
}

// The nearest frequency step at or before stepNumber and its first mode frame with "S".
const odb_Step* findModes(const odb_Odb& odb, int32_t stepNumber, int* firstFrame) {
  const odb_StepRepository& steps = odb.steps();
  for (int s = std::min(stepNumber, steps.size()) - 1; s >= 0; --s) {
    const odb_Step& step = steps.at(s);
    if (step.procedure() != "*FREQUENCY") continue;
    const odb_SequenceFrame& frames = step.frames();
    for (int f = 0; f < frames.size(); ++f)
      if (frames[f].mode() != 0 && frames[f].fieldOutputs().isMember("S")) {
        *firstFrame = f;
        return &step;
      }
    return nullptr;
  }
  return nullptr;
}

size_t sliceSize(const odb_FieldBulkData& b) {
  return size_t(b.length()) * size_t(std::max(b.width(), 0));
}

// Fills the cache entry of every block of "S" that has none (or one of another shape):
// slice k of an entry holds the block's values in mode k, as floats.
void fillCache(const odb_Step& step, int first, int n, int32_t positionCode,
               const odb_SequenceFieldBulkData& blocks, ResultCache& cache) {
  if (cache.size() < size_t(blocks.size())) cache.resize(size_t(blocks.size()));
  std::vector<int> missing;
  for (int b = 0; b < blocks.size(); ++b)
    if (cache[size_t(b)].size() != size_t(n) * sliceSize(blocks[b])) missing.push_back(b);
  if (missing.empty()) return;
  for (int b : missing) cache[size_t(b)].assign(size_t(n) * sliceSize(blocks[b]), 0.f);
  for (int k = 0; k < n; ++k) {
    odb_FieldOutput mode = stressOf(step.frames()[first + k], positionCode);
    odb_SequenceFieldBulkData modeBlocks = mode.bulkDataBlocks();
    for (int b : missing) {
      if (b >= modeBlocks.size()) continue;
      const odb::FieldBlockData& d = modeBlocks[b].blockData();
      size_t size = sliceSize(blocks[b]);
      float* slice = cache[size_t(b)].data() + size_t(k) * size;
      if (d.doublePrecision)
        for (size_t i = 0; i < size && i < d.dataDouble.size(); ++i)
          slice[i] = float(d.dataDouble[i]);
      else
        for (size_t i = 0; i < size && i < d.data.size(); ++i) slice[i] = d.data[i];
    }
    modeBlocks.clearAll();
  }
}

}  // namespace

void sendModalStress(const odb_Odb& odb, const odb_FieldOutput& matrix, int32_t stepNumber,
                     int32_t positionCode, ResultCache& cache, ReplyChannel& out) {
  odb_SequenceFieldBulkData matrixBlocks = matrix.bulkDataBlocks();
  if (matrixBlocks.size() == 0) return;
  const int n = matrix.matrixOrder();
  if (n < 1) return;
  std::vector<float> m = unpackMatrix(matrixBlocks[0], n);
  matrixBlocks.clearAll();
  const bool root = matrix.name() == kMatrixRootStressName;

  int first = 0;
  const odb_Step* step = findModes(odb, stepNumber, &first);
  if (step == nullptr) return;
  if (first + n > step->frames().size())
    throw std::out_of_range("fewer mode frames than the matrix order");
  odb_FieldOutput stress = stressOf(step->frames()[first], positionCode);
  std::vector<int> slots = stressSlots(stress.componentLabels().values());
  odb_SequenceFieldBulkData blocks = stress.bulkDataBlocks();
  fillCache(*step, first, n, positionCode, blocks, cache);

  ValueStream stream(out);
  std::vector<StressRow> rows(static_cast<size_t>(n));
  for (int b = 0; b < blocks.size(); ++b) {
    BlockArrays a = BlockArrays::of(blocks[b].blockData(), false, false);
    const size_t size = sliceSize(blocks[b]);
    const std::vector<float>& modes = cache[size_t(b)];
    const size_t width = std::min(a.width, slots.size());
    std::vector<int> used(slots.begin(), slots.begin() + long(width));
    for (size_t r = 0; r < a.rows; ++r) {
      for (int k = 0; k < n; ++k) {
        rows[size_t(k)].fill(0.f);
        gatherStressRow(modes.data() + size_t(k) * size + r * a.width, used, &rows[size_t(k)]);
      }
      double q = modalMisesForm(rows.data(), m.data(), n);
      float v = static_cast<float>(root ? std::sqrt(std::fabs(q)) : q);
      stream.value(a.place(r), &v, nullptr, 1);
    }
  }
  blocks.clearAll();
}

}  // namespace odbs
