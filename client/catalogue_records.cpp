#include "client/catalogue_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "wire/frame.h"

namespace odbs::client {

StepRecord decodeStep(const RecordView& rec) {
  expectType(rec, kRecStep, "step");
  ByteReader r = rec.reader();
  StepRecord s;
  std::string text;
  expectFields(r.getI32(&s.number) && r.getF64(&s.totalTime) && r.getText(&text), r, rec, "step");
  size_t sep = text.find('\x01');
  s.name = text.substr(0, sep);
  if (sep != std::string::npos) s.description = text.substr(sep + 1);
  return s;
}

std::string decodeProcedure(const RecordView& rec) {
  expectType(rec, kRecProcedure, "procedure");
  ByteReader r = rec.reader();
  std::string text;
  expectFields(r.getText(&text), r, rec, "procedure");
  return text;
}

StepTextsRecord decodeStepTexts(const RecordView& rec) {
  expectType(rec, kRecStepTexts, "step texts");
  ByteReader r = rec.reader();
  StepTextsRecord t;
  expectFields(r.getText(&t.domain) && r.getText(&t.name), r, rec, "step texts");
  return t;
}

FrameRecord decodeFrame(const RecordView& rec) {
  expectType(rec, kRecFrame, "frame");
  ByteReader r = rec.reader();
  FrameRecord f;
  expectFields(r.getI32(&f.frameIndex) && r.getI32(&f.domain) && r.getI32(&f.mode) &&
                   r.getF64(&f.frameValue) && r.getF64(&f.frequency) && r.getI32(&f.stepNumber) &&
                   r.getI32(&f.lastFrameIndex) && r.getText(&f.description),
               r, rec, "frame");
  return f;
}

StepCountsRecord decodeStepCounts(const RecordView& rec) {
  expectType(rec, kRecStepCounts, "step counts");
  ByteReader r = rec.reader();
  StepCountsRecord c;
  expectFields(r.getI32(&c.stepNumber) && r.getI32(&c.frames) && r.getI32(&c.fieldFrames) &&
                   r.getI32(&c.historySamples) && r.getI32(&c.selected),
               r, rec, "step counts");
  return c;
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
