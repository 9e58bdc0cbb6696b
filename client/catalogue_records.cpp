#include "client/catalogue_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "wire/frame.h"

namespace odbs::client {

StepRecord decodeStep(const RecordView& rec) {
  // The text holds the name, then "\x01" and the description when there is one.
  std::string text;
  StepRecord s = decodeFields<StepRecord>(rec, kRecStep, "step", [&](ByteReader& r, StepRecord& f) {
    return r.getI32(&f.number) && r.getF64(&f.totalTime) && r.getText(&text);
  });
  size_t sep = text.find('\x01');
  s.name = text.substr(0, sep);
  if (sep != std::string::npos) s.description = text.substr(sep + 1);
  return s;
}

std::string decodeProcedure(const RecordView& rec) {
  return decodeFields<std::string>(
      rec, kRecProcedure, "procedure",
      [](ByteReader& r, std::string& text) { return r.getText(&text); });
}

StepTextsRecord decodeStepTexts(const RecordView& rec) {
  return decodeFields<StepTextsRecord>(
      rec, kRecStepTexts, "step texts",
      [](ByteReader& r, StepTextsRecord& t) { return r.getText(&t.domain) && r.getText(&t.name); });
}

FrameRecord decodeFrame(const RecordView& rec) {
  return decodeFields<FrameRecord>(rec, kRecFrame, "frame", [](ByteReader& r, FrameRecord& f) {
    return r.getI32(&f.frameIndex) && r.getI32(&f.domain) && r.getI32(&f.mode) &&
           r.getF64(&f.frameValue) && r.getF64(&f.frequency) && r.getI32(&f.stepNumber) &&
           r.getI32(&f.lastFrameIndex) && r.getText(&f.description);
  });
}

StepCountsRecord decodeStepCounts(const RecordView& rec) {
  return decodeFields<StepCountsRecord>(
      rec, kRecStepCounts, "step counts", [](ByteReader& r, StepCountsRecord& c) {
        return r.getI32(&c.stepNumber) && r.getI32(&c.frames) && r.getI32(&c.fieldFrames) &&
               r.getI32(&c.historySamples) && r.getI32(&c.selected);
      });
}

void addCatalogueRecords(RecordCatalog& catalog) {
  catalog.add("f", kRecStepCounts, [](const RecordView& rec) {
    StepCountsRecord c = decodeStepCounts(rec);
    return DescribedRecord{"step-counts",
                           {{"step", int64_t{c.stepNumber}},
                            {"frames", int64_t{c.frames}},
                            {"fieldFrames", int64_t{c.fieldFrames}},
                            {"historySamples", int64_t{c.historySamples}},
                            {"selected", int64_t{c.selected}}}};
  });
  catalog.add("f", kRecStep, [](const RecordView& rec) {
    StepRecord s = decodeStep(rec);
    return DescribedRecord{"step",
                           {{"number", int64_t{s.number}},
                            {"totalTime", s.totalTime},
                            {"name", s.name},
                            {"description", s.description}}};
  });
  catalog.add("f", kRecProcedure, [](const RecordView& rec) {
    return DescribedRecord{"procedure", {{"text", decodeProcedure(rec)}}};
  });
  catalog.add("f", kRecStepTexts, [](const RecordView& rec) {
    StepTextsRecord t = decodeStepTexts(rec);
    return DescribedRecord{"step-texts", {{"domain", t.domain}, {"name", t.name}}};
  });
  catalog.add("f", kRecFrame, [](const RecordView& rec) {
    FrameRecord f = decodeFrame(rec);
    return DescribedRecord{"frame",
                           {{"index", int64_t{f.frameIndex}},
                            {"domain", int64_t{f.domain}},
                            {"mode", int64_t{f.mode}},
                            {"value", f.frameValue},
                            {"frequency", f.frequency},
                            {"step", int64_t{f.stepNumber}},
                            {"lastIndex", int64_t{f.lastFrameIndex}},
                            {"description", f.description}}};
  });
}

}  // namespace odbs::client
