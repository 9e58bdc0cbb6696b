// The material record (type 17) of the model export.
#pragma once

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

}  // namespace odbs
