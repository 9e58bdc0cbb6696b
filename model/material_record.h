// The material record (type 17) of the model export.
#pragma once

#include <set>
#include <string>

#include "context/reply_channel.h"
#include "odb/odb.h"

namespace odbs {

// Appends one material record to the pending output buffer. Layout:
//   counted name; f32 density (first value of the first row, else 0);
//   counted elastic type (count 0 and nothing more of the elastic data when the material
//   has no elastic behaviour); 6 x f32 of the first elastic row (missing columns 0);
//   [u32 0, 5 x f32 failure strain]; [u32 1, 7 x f32 failure stress]; i32 -1;
//   i32 acoustic medium flag (1 or 0).
// Only the first row of each table is sent. Throws only what the database throws.
void queueMaterialRecord(const kmaO_Material& material, ReplyChannel& out);

// The material phase of the model export: empties the pending buffer, appends one material
// record per material of odb in container order (only those named in only, when given) and
// flushes. Throws what the database throws.
void sendMaterials(odb_Odb& odb, ReplyChannel& out, const std::set<std::string>* only = nullptr);

}  // namespace odbs
