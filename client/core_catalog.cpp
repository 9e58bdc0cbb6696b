// Describers of the core records for the record catalog.
#include "client/core_records.h"
#include "client/record_catalog.h"
#include "wire/frame.h"

namespace odbs::client {

void addCoreRecords(RecordCatalog& catalog) {
  catalog.add("", kRecMessage, [](const RecordView& rec) {
    MessageRecord m = decodeMessage(rec);
    if (m.upgradeNeeded) return DescribedRecord{"upgrade-needed", {}};
    return DescribedRecord{"message", {{"text", m.text}}};
  });
  catalog.add("", kRecProcessId, [](const RecordView& rec) {
    return DescribedRecord{"process-id", {{"pid", int64_t{decodeProcessId(rec)}}}};
  });
  catalog.add("", kRecEnd, [](const RecordView& rec) {
    decodeEnd(rec);
    return DescribedRecord{"end", {}};
  });
  catalog.add("m", kRecSequenced, [](const RecordView& rec) {
    TestRecord t = decodeTestRecord(rec);
    return DescribedRecord{"test",
                           {{"sequence", int64_t{t.sequence}},
                            {"values", std::vector<int64_t>(t.values.begin(), t.values.end())}}};
  });
}

}  // namespace odbs::client
