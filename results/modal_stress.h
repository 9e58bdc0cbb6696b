// The matrix path of the field walk: for the field names "MATRIX Sqq" and "MATRIX RSqq",
// one equivalent-stress value per stress place, formed from the stresses of n consecutive
// eigenmodes and the n by n modal matrix that the field holds.
#pragma once

#include <cstdint>

#include "context/command_state.h"
#include "context/reply_channel.h"

class odb_FieldOutput;
class odb_Odb;

namespace odbs {

// matrix: the MATRIX field (its first block holds the lower triangle row by row);
// stepNumber: the 1-based requested step, from which the steps are searched backwards for
// a frequency step; positionCode: the subset position of "S" (3: the whole field).
// The stresses of each mode are kept in cache, one entry per block of "S" by its index,
// filled on first use and reused by later requests until command C empties the cache.
// Sends one single-component value record per place of "S"; queues on out. Sends nothing
// when there is no frequency step or no mode frame with "S". Throws std::out_of_range
// when fewer than n mode frames follow the first one, std::runtime_error when the matrix
// block is shorter than its order says.
void sendModalStress(const odb_Odb& odb, const odb_FieldOutput& matrix, int32_t stepNumber,
                     int32_t positionCode, ResultCache& cache, ReplyChannel& out);

}  // namespace odbs
