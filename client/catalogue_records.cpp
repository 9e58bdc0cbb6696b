#include "client/catalogue_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "wire/frame.h"

namespace odbs::client {

namespace {

void check(bool ok, const ByteReader& r, const RecordView& rec, const char* what) {
  if (!ok || !r.atEnd()) {
    throw DecodeError(std::string(what) + " record: body of " + std::to_string(rec.size) +
                      " bytes does not hold its fields");
  }
}

}  // namespace

StepRecord decodeStep(const RecordView& rec) {
  expectType(rec, kRecStep, "step");
  ByteReader r = rec.reader();
  StepRecord s;
  std::string text;
  check(r.getI32(&s.number) && r.getF64(&s.totalTime) && r.getText(&text), r, rec, "step");
  size_t sep = text.find('\x01');
  s.name = text.substr(0, sep);
  if (sep != std::string::npos) s.description = text.substr(sep + 1);
  return s;
}

std::string decodeProcedure(const RecordView& rec) {
  expectType(rec, kRecProcedure, "procedure");
  ByteReader r = rec.reader();
  std::string text;
  check(r.getText(&text), r, rec, "procedure");
  return text;
}

StepTextsRecord decodeStepTexts(const RecordView& rec) {
  expectType(rec, kRecStepTexts, "step texts");
  ByteReader r = rec.reader();
  StepTextsRecord t;
  check(r.getText(&t.domain) && r.getText(&t.name), r, rec, "step texts");
  return t;
}

FrameRecord decodeFrame(const RecordView& rec) {
  expectType(rec, kRecFrame, "frame");
  ByteReader r = rec.reader();
  FrameRecord f;
  check(r.getI32(&f.frameIndex) && r.getI32(&f.domain) && r.getI32(&f.mode) &&
            r.getF64(&f.frameValue) && r.getF64(&f.frequency) && r.getI32(&f.stepNumber) &&
            r.getI32(&f.lastFrameIndex) && r.getText(&f.description),
        r, rec, "frame");
  return f;
}

void addCatalogueRecords(RecordCatalog& catalog) {
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
