#include "results/result_header.h"

#include "odb/odb.h"

namespace odbs {

void sendResultHeader(const odb_Odb& odb, ReplyChannel& out) {
  out.sendText(odb.analysisTitle(), kRecTitle);
  out.send(RecordBuilder(kRecAnalysisCode).i32(odb.jobData().analysisCode() - 1));
}

}  // namespace odbs
