// Decoders of the history output records (commands hi and hr) and the regrouping of the
// value records into samples.
//
// Each decoder takes a record of its type and returns its fields; it throws DecodeError
// when the type byte is another one or the body does not have the record's layout.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/record.h"
#include "client/record_catalog.h"

namespace odbs::client {

// '2': a step.
struct HistoryStepRecord {
  uint32_t number = 0;  // 1-based position of the step
  uint32_t domain = 0;  // 0 time, 1 frequency, 2 modal, 3 arc length
  double totalTime = 0.0;
  std::string name, description;
};
HistoryStepRecord decodeHistoryStep(const RecordView& rec);

// '4': a history region and where its values were taken.
struct HistoryRegionRecord {
  std::string name, setName;
  uint32_t positionCode = 0;      // see historyPositionName
  int32_t values[3] = {0, 0, 0};  // node / element / integration point / section point
};
HistoryRegionRecord decodeHistoryRegion(const RecordView& rec);
// A short name of a history position code ("node", "integration point", ...).
const char* historyPositionName(uint32_t code);

// '6': a history output.
struct HistoryOutputRecord {
  std::string name, description;
  uint32_t type = 0;
  bool conjugate = false;  // its samples carry a third float, the conjugate value
};
HistoryOutputRecord decodeHistoryOutput(const RecordView& rec);

// '8': one float of a sample.
float decodeHistoryValue(const RecordView& rec);

// One sample: frame value, value and, for outputs with a conjugate, the conjugate value.
struct HistorySample {
  float frameValue = 0.f;
  float value = 0.f;
  float conjugate = 0.f;
};

// One output of one region of one step, with its samples (none in a catalogue reply).
struct HistorySeries {
  HistoryStepRecord step;
  HistoryRegionRecord region;
  HistoryOutputRecord output;
  std::vector<HistorySample> samples;
  size_t trailingValues = 0;  // value records after the last whole sample
};

// Gathers the records of an hi or hr reply into series. Value records are grouped by the
// output record before them: two floats per sample (frame value, value), three when the
// output has a conjugate. Other record types are ignored.
class HistoryCollector {
 public:
  // Throws DecodeError for a malformed record, a region before any step or an output or
  // value before any region or output.
  void add(const RecordView& rec);
  const std::vector<HistoryStepRecord>& steps() const { return steps_; }
  const std::vector<HistorySeries>& series() const { return series_; }
  // Regions in the order they came, with the step they belong to (a catalogue lists
  // regions that have no output too).
  const std::vector<std::pair<HistoryStepRecord, HistoryRegionRecord>>& regions() const {
    return regions_;
  }

 private:
  std::vector<HistoryStepRecord> steps_;
  std::vector<std::pair<HistoryStepRecord, HistoryRegionRecord>> regions_;
  std::vector<HistorySeries> series_;
  float pending_[3] = {0.f, 0.f, 0.f};
};

// Registers describers of these records for replies to hi and hr.
void addHistoryRecords(RecordCatalog& catalog);

}  // namespace odbs::client
