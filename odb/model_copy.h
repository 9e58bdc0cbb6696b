// Reads every part of a database into plain data or into a writer: copies and the version
// upgrade. Loads all arrays; throws std::runtime_error on a damaged file.
#pragma once

#include "odb/model_data.h"
#include "odb/odb.h"
#include "odb/writer.h"

namespace odb {

ModelData readModel(const odb_Odb& odb);

// Adds every step, frame, field output (block by block, one field output in memory at a
// time) and history region of odb to w.
void copyResults(const odb_Odb& odb, Writer& w);

}  // namespace odb
