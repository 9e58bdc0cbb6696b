#include "results/field_values.h"

#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "odb/odb.h"
#include "results/block_values.h"
#include "results/field_classify.h"

namespace odbs {

namespace {

bool hasSectionPoint(const odb_FieldBulkData& b) {
  return b.sectionPoint().number() != -1;
}

// The blocks of one instance and element type with section points, and where each
// element's rows start in each of them.
struct SectionGroup {
  std::string instance, elementType;
  uint32_t dataClass = 0;
  std::map<int32_t, BlockArrays> bySectionPoint;
  std::map<int32_t, std::unordered_map<int32_t, size_t>> rowOf;  // section point -> label -> row
  std::vector<int32_t> labels;  // elements in the order they were first met
  std::unordered_set<int32_t> seen;
};

void sendPlainBlocks(const InstanceNumbering& instances, const odb_SequenceFieldBulkData& blocks,
                     bool complex, bool upperCase, PlaceSet* places, ValueStream& stream,
                     InstanceHeaders& headers, ReplyChannel& out) {
  for (int i = 0; i < blocks.size(); ++i) {
    const odb_FieldBulkData& b = blocks[i];
    if (hasSectionPoint(b) || b.elementLabels() == nullptr) continue;
    headers.enter(b.instance().name(), out);
    stream.dataClass(dataClassOfBlock(b.type(), b.width()));
    stream.elementType(b.baseElementType(), -1, -1);
    BlockArrays a = BlockArrays::of(b.blockData(), complex, upperCase);
    PlaceFilter filter{places, kPlaceWithoutSectionPoint, instances.numberOf(b.instance().name())};
    sendRows(stream, a, 0, a.rows, filter);
  }
}

std::vector<SectionGroup> groupSectionBlocks(const odb_SequenceFieldBulkData& blocks, bool complex,
                                             bool upperCase, ElementTable& table) {
  std::vector<SectionGroup> groups;
  std::map<std::pair<std::string, std::string>, size_t> index;
  for (int i = 0; i < blocks.size(); ++i) {
    const odb_FieldBulkData& b = blocks[i];
    if (!hasSectionPoint(b) || b.elementLabels() == nullptr) continue;
    auto key = std::make_pair(b.instance().name(), b.baseElementType());
    auto [it, isNew] = index.try_emplace(key, groups.size());
    if (isNew) {
      groups.emplace_back();
      groups.back().instance = key.first;
      groups.back().elementType = key.second;
      groups.back().dataClass = dataClassOfBlock(b.type(), b.width());
    }
    SectionGroup& g = groups[it->second];
    int32_t sp = b.sectionPoint().number();
    BlockArrays a = BlockArrays::of(b.blockData(), complex, upperCase);
    // A second block of the same place and section point adds nothing new.
    if (!g.bySectionPoint.emplace(sp, a).second) continue;
    auto& rows = g.rowOf[sp];
    size_t stride = a.elementStride();
    for (size_t r = 0; r < a.rows; r += stride) {
      int32_t label = a.elements[r];
      enterElement(table, label, sp);
      rows.emplace(label, r);
      if (g.seen.insert(label).second) g.labels.push_back(label);
    }
  }
  return groups;
}

// Row where element label starts in the group's block of section point sp, with the block.
const BlockArrays* findRows(const SectionGroup& g, int32_t sp, int32_t label, size_t* row) {
  auto rows = g.rowOf.find(sp);
  if (rows == g.rowOf.end()) return nullptr;
  auto r = rows->second.find(label);
  if (r == rows->second.end()) return nullptr;
  *row = r->second;
  return &g.bySectionPoint.at(sp);
}

void sendMidSurface(const odb_SequenceFieldBulkData& blocks, bool complex, bool upperCase,
                    ValueStream& stream, InstanceHeaders& headers, ReplyChannel& out) {
  ElementTable table;
  std::vector<SectionGroup> groups = groupSectionBlocks(blocks, complex, upperCase, table);
  middleSectionPoints(table);
  table.setFrozen(true);
  for (const SectionGroup& g : groups) {
    headers.enter(g.instance, out);
    stream.dataClass(g.dataClass);
    stream.elementType(g.elementType, 1, 1);
    for (int32_t label : g.labels) {
      const ElementSectionPoints* pair = table.find(label);
      size_t lowRow = 0, highRow = 0;
      const BlockArrays* low = findRows(g, pair->lowest, label, &lowRow);
      const BlockArrays* high = findRows(g, pair->highest, label, &highRow);
      if (!low || !high) continue;
      size_t count = std::min(low->elementStride(), high->elementStride());
      sendMidSurfaceRows(stream, *low, lowRow, *high, highRow, count);
    }
  }
}

}  // namespace

void sendFieldValues(const InstanceNumbering& instances, const odb_FieldOutput& field,
                     ReplyChannel& out, bool upperCase, bool requestDefined) {
  odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
  bool sectionBlocks = false;
  for (int i = 0; i < blocks.size() && !sectionBlocks; ++i)
    sectionBlocks = hasSectionPoint(blocks[i]);
  // Both passes share the remembered place, data class and instance.
  ValueStream stream(out);
  InstanceHeaders headers(instances.multiInstance());
  {
    PlaceSet places;
    sendPlainBlocks(instances, blocks, field.isComplex(), upperCase,
                    requestDefined ? &places : nullptr, stream, headers, out);
  }
  // The arrays stay loaded for the second pass only when it has something to send.
  if (sectionBlocks) sendMidSurface(blocks, field.isComplex(), upperCase, stream, headers, out);
  blocks.clearAll();
}

}  // namespace odbs
