#include "results/result_title.h"

#include "odb/odb.h"

namespace odbs {

void sendResultTitle(const odb_Odb& odb, ReplyChannel& out) {
  out.sendText(odb.analysisTitle(), kRecTitle);
  out.send(
      RecordBuilder(kRecAnalysisCode).u32(static_cast<uint32_t>(odb.jobData().analysisCode() - 1)));
}

}  // namespace odbs
