// The section record '$' of the model export: number, short name, kind and kind data.
#pragma once

#include <cstdint>

#include "context/reply_channel.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

// What a section record needs besides the section itself; all borrowed for one call.
struct SectionRecordContext {
  const odb_Assembly& assembly;                     // connector orientations
  const odb_SectionCategoryRepository& categories;  // section points of composite layups
  const SectionTables& tables;                      // categoryOf
};

// Appends one section record for section under number to the pending output buffer.
// Layout: u32 number, counted short name, then by class (tested in this order):
//   composite shell   i32 run count, one layer run block per run
//   connector         -3, orientation block, u32 0
//   point             -4, f32 mass, u32 0
//   homogeneous shell -5, f32 thickness, counted material, u32 0
//   solid -6, truss -7, PEG -8, membrane -9, gasket -10, cohesive -11: counted material, u32 0
//   any other         0
// Throws std::runtime_error when the section is not of the class its type names.
void queueSectionRecord(const odb_Section& section, int32_t number, const SectionRecordContext& ctx,
                        ReplyChannel& out);

}  // namespace odbs
