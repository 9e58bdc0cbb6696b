// Describers of the history records (hi, hr) and the contact and status records (rd).
#include "client/contact_records.h"
#include "client/history_records.h"
#include "client/model_records.h"
#include "wire/record_types.h"

namespace odbs::client {

namespace {

std::vector<double> doubles(const std::vector<float>& v) {
  return std::vector<double>(v.begin(), v.end());
}

DescribedRecord describeHistoryStep(const RecordView& rec) {
  HistoryStepRecord s = decodeHistoryStep(rec);
  return {"history-step",
          {{"number", int64_t{s.number}},
           {"domain", int64_t{s.domain}},
           {"totalTime", s.totalTime},
           {"name", s.name},
           {"description", s.description}}};
}

DescribedRecord describeHistoryRegion(const RecordView& rec) {
  HistoryRegionRecord g = decodeHistoryRegion(rec);
  return {"history-region",
          {{"name", g.name},
           {"set", g.setName},
           {"position", std::string(historyPositionName(g.positionCode))},
           {"positionCode", int64_t{g.positionCode}},
           {"values", std::vector<int64_t>{g.values[0], g.values[1], g.values[2]}}}};
}

DescribedRecord describeHistoryOutput(const RecordView& rec) {
  HistoryOutputRecord o = decodeHistoryOutput(rec);
  return {"history-output",
          {{"name", o.name},
           {"description", o.description},
           {"type", int64_t{o.type}},
           {"conjugate", int64_t{o.conjugate}}}};
}

DescribedRecord describeContactRow(const RecordView& rec) {
  ContactRow row = decodeContactRow(rec);
  DescribedRecord d{row.complex ? "complex-row" : "row",
                    {{"of", std::string(contactRowKindName(row.kind))},
                     {"label", int64_t{row.label}},
                     {"values", doubles(row.values)}}};
  if (row.complex) d.fields.push_back({"conjugates", doubles(row.conjugates)});
  return d;
}

}  // namespace

void addHistoryRecords(RecordCatalog& c) {
  for (const char* command : {"hi", "hr"}) {
    c.add(command, kRecHistoryStep, describeHistoryStep);
    c.add(command, kRecHistoryRegion, describeHistoryRegion);
    c.add(command, kRecHistoryOutput, describeHistoryOutput);
    c.add(command, kRecHistoryValue, [](const RecordView& r) {
      return DescribedRecord{"history-value", {{"value", double{decodeHistoryValue(r)}}}};
    });
  }
}

void addContactRecords(RecordCatalog& c) {
  c.add("rd", kRecTitle, [](const RecordView& r) {
    return DescribedRecord{"title", {{"text", decodeTitle(r)}}};
  });
  c.add("rd", kRecAnalysisCode, [](const RecordView& r) {
    return DescribedRecord{"analysis-code", {{"codeMinus1", int64_t{decodeAnalysisCode(r)}}}};
  });
  c.add("rd", kRecInstanceHeader, [](const RecordView& r) {
    return DescribedRecord{"instance", {{"name", decodeInstanceHeader(r)}}};
  });
  for (uint8_t type : {kRecRealValue, kRecComplexValue, kRecRotationReal, kRecRotationComplex,
                       kRecRotation1Real, kRecRotation1Complex, kRecRotation2Real,
                       kRecRotation2Complex, kRecRotation3Real, kRecRotation3Complex})
    c.add("rd", type, describeContactRow);
  c.add("rd", kRecElementStatus, [](const RecordView& r) {
    ElementStatusRecord s = decodeElementStatus(r);
    return DescribedRecord{"element-status",
                           {{"element", int64_t{s.element}}, {"value", double{s.value}}}};
  });
}

}  // namespace odbs::client
