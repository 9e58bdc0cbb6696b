// Decoders of the step and frame catalogue records (command f): 12 step, 13 procedure,
// 14 step texts and 15 frame. The title (1) and analysis code (2) that open the reply are
// the model export's records.
//
// Each decoder takes a record of its type and returns its fields; it throws DecodeError
// when the type byte is another one or the body does not have the record's layout.
#pragma once

#include <cstdint>
#include <string>

#include "client/record.h"
#include "client/record_catalog.h"

namespace odbs::client {

// 12: step number (1-based), total time at the step's start, and the step text, which
// holds the name and the description separated by the byte 0x01.
struct StepRecord {
  int32_t number = 0;
  double totalTime = 0;
  std::string name, description;
};
StepRecord decodeStep(const RecordView& rec);

// 13: the step's procedure (counted text).
std::string decodeProcedure(const RecordView& rec);

// 14: the step's domain as a word and the step's name.
struct StepTextsRecord {
  std::string domain, name;
};
StepTextsRecord decodeStepTexts(const RecordView& rec);

// 15: one frame.
struct FrameRecord {
  int32_t frameIndex = 0, domain = 0, mode = 0;
  double frameValue = 0, frequency = 0;
  int32_t stepNumber = 0, lastFrameIndex = 0;
  std::string description;
};
FrameRecord decodeFrame(const RecordView& rec);

// 16 (fs, fv): the counts of one step.
struct StepCountsRecord {
  int32_t stepNumber = 0, frames = 0, fieldFrames = 0, historySamples = 0, selected = 0;
};
StepCountsRecord decodeStepCounts(const RecordView& rec);

// Registers the describers of records 12 to 15 for replies to f.
void addCatalogueRecords(RecordCatalog& catalog);

}  // namespace odbs::client
