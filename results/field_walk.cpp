#include "results/field_walk.h"

#include "odb/odb.h"
#include "results/block_values.h"
#include "results/field_classify.h"

namespace odbs {

namespace {

constexpr int32_t kNoSectionPoint = -1;

// The element type record's surface tag for a block at section point sp.
int32_t surfaceTag(int32_t sp, FieldPath path, const FieldRequest& r) {
  if (sp == kNoSectionPoint) return -1;
  if (path == FieldPath::kSectionPoints && r.resultMode != -1) {
    if (sp == r.sectionPoints.first) return 1;
    if (sp == r.sectionPoints.second) return 2;
  }
  return sp;
}

bool skipBlock(int32_t sp, FieldPath path, const FieldRequest& r) {
  return path == FieldPath::kSectionPoints && r.resultMode != -1 && sp != kNoSectionPoint &&
         sp != r.sectionPoints.first && sp != r.sectionPoints.second;
}

}  // namespace

void fillSectionRanges(const odb_SequenceFieldBulkData& blocks, LabelTable& table) {
  for (int i = 0; i < blocks.size(); ++i) {
    const odb_FieldBulkData& b = blocks[i];
    int32_t sp = b.sectionPoint().number();
    if (sp == kNoSectionPoint || b.elementLabels() == nullptr) continue;
    BlockArrays a = BlockArrays::of(b.blockData(), false, false);
    for (size_t r = 0, stride = a.elementStride(); r < a.rows; r += stride)
      enterLabel(table, a.elements[r], sp);
  }
}

namespace {

class BlockSender {
 public:
  BlockSender(const InstanceNumbering& instances, const FieldRequest& r, ReplyChannel& out)
      : instances_(instances),
        request_(r),
        out_(out),
        stream_(out),
        headers_(instances.multiInstance()) {}

  // Instance-name, data-class and element type records for block b.
  void open(const odb_FieldBulkData& b, int32_t tag) {
    headers_.enter(b.instance().name(), out_);
    stream_.dataClass(dataClassOfBlock(b.type(), b.width()));
    stream_.elementType(b.baseElementType(), tag, b.sectionPoint().number());
  }
  // Where block b's rows are checked against the places already sent (after D only).
  PlaceFilter filterOf(const odb_FieldBulkData& b) {
    if (!request_.requestDefined) return {};
    return {&places_, static_cast<int16_t>(b.sectionPoint().number()),
            instances_.numberOf(b.instance().name())};
  }
  void rows(const BlockArrays& a, size_t begin, size_t end, const PlaceFilter& filter) {
    sendRows(stream_, a, begin, end, filter);
  }

 private:
  const InstanceNumbering& instances_;
  const FieldRequest& request_;
  ReplyChannel& out_;
  ValueStream stream_;
  InstanceHeaders headers_;
  PlaceSet places_;
};

}  // namespace

FieldPath fieldPathOf(int32_t resultMode, const SectionPointPair& pair) {
  if (pair.first != -1 || resultMode == pair.first) return FieldPath::kSectionPoints;
  if (resultMode == -2 || resultMode == -3) return FieldPath::kSurface;
  return FieldPath::kGeneral;
}

void sendFieldPath(const InstanceNumbering& instances, const odb_FieldOutput& field,
                   const FieldRequest& request, ReplyChannel& out) {
  const FieldPath path = fieldPathOf(request.resultMode, request.sectionPoints);
  odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
  LabelTable labels;
  if (path == FieldPath::kSurface) {
    fillSectionRanges(blocks, labels);
    labels.setFrozen(true);
  }
  const bool lowest = request.resultMode == -2;
  BlockSender sender(instances, request, out);
  for (int i = 0; i < blocks.size(); ++i) {
    const odb_FieldBulkData& b = blocks[i];
    const int32_t sp = b.sectionPoint().number();
    if (b.elementLabels() == nullptr || skipBlock(sp, path, request)) continue;
    BlockArrays a = BlockArrays::of(b.blockData(), field.isComplex(), request.upperCase);
    const PlaceFilter filter = sender.filterOf(b);
    if (path != FieldPath::kSurface || sp == kNoSectionPoint) {
      sender.open(b, surfaceTag(sp, path, request));
      sender.rows(a, 0, a.rows, filter);
      continue;
    }
    // Surface path: the rows of each element whose lowest (rt) or highest (rb) section
    // point this block holds, behind one element type record for the block.
    bool opened = false;
    for (size_t r = 0, stride = a.elementStride(); r < a.rows; r += stride) {
      const SectionRange* range = labels.find(a.elements[r]);
      if (range == nullptr || (lowest ? range->lowest : range->highest) != static_cast<int16_t>(sp))
        continue;
      if (!opened) sender.open(b, lowest ? 1 : 2);
      opened = true;
      sender.rows(a, r, r + stride, filter);
    }
  }
  blocks.clearAll();
}

}  // namespace odbs
