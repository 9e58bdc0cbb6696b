#include "client/history_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "wire/record_types.h"

namespace odbs::client {

HistoryStepRecord decodeHistoryStep(const RecordView& rec) {
  return decodeFields<HistoryStepRecord>(
      rec, kRecHistoryStep, "history step", [](ByteReader& r, HistoryStepRecord& s) {
        return r.getU32(&s.number) && r.getU32(&s.domain) && r.getF64(&s.totalTime) &&
               r.getText(&s.name) && r.getText(&s.description);
      });
}

HistoryRegionRecord decodeHistoryRegion(const RecordView& rec) {
  return decodeFields<HistoryRegionRecord>(
      rec, kRecHistoryRegion, "history region", [](ByteReader& r, HistoryRegionRecord& g) {
        return r.getText(&g.name) && r.getText(&g.setName) && r.getU32(&g.positionCode) &&
               r.getI32(&g.values[0]) && r.getI32(&g.values[1]) && r.getI32(&g.values[2]);
      });
}

const char* historyPositionName(uint32_t code) {
  static const char* const kNames[] = {
      "undefined",    "node",          "element node",  "integration point", "centroid",
      "element face", "whole element", "whole region",  "whole instance",    "whole model",
      "particle",     "surface node",  "surface facet", "element edge"};
  return code < sizeof kNames / sizeof kNames[0] ? kNames[code] : "unknown";
}

HistoryOutputRecord decodeHistoryOutput(const RecordView& rec) {
  return decodeFields<HistoryOutputRecord>(
      rec, kRecHistoryOutput, "history output", [](ByteReader& r, HistoryOutputRecord& o) {
        uint32_t conjugate = 0;
        bool ok = r.getText(&o.name) && r.getText(&o.description) && r.getU32(&o.type) &&
                  r.getU32(&conjugate);
        o.conjugate = conjugate != 0;
        return ok;
      });
}

float decodeHistoryValue(const RecordView& rec) {
  return decodeFields<float>(rec, kRecHistoryValue, "history value",
                             [](ByteReader& r, float& v) { return r.getF32(&v); });
}

void HistoryCollector::add(const RecordView& rec) {
  switch (rec.type) {
    case kRecHistoryStep:
      steps_.push_back(decodeHistoryStep(rec));
      break;
    case kRecHistoryRegion:
      if (steps_.empty()) throw DecodeError("history region record before any step record");
      regions_.emplace_back(steps_.back(), decodeHistoryRegion(rec));
      break;
    case kRecHistoryOutput: {
      if (regions_.empty()) throw DecodeError("history output record before any region record");
      HistorySeries s;
      s.step = regions_.back().first;
      s.region = regions_.back().second;
      s.output = decodeHistoryOutput(rec);
      series_.push_back(std::move(s));
      break;
    }
    case kRecHistoryValue: {
      if (series_.empty()) throw DecodeError("history value record before any output record");
      HistorySeries& s = series_.back();
      size_t width = s.output.conjugate ? 3 : 2;
      pending_[s.trailingValues++] = decodeHistoryValue(rec);
      if (s.trailingValues == width) {
        s.samples.push_back({pending_[0], pending_[1], width == 3 ? pending_[2] : 0.f});
        s.trailingValues = 0;
      }
      break;
    }
    default:
      break;
  }
}

}  // namespace odbs::client
