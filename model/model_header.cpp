#include "model/model_header.h"

#include <string_view>

namespace odbs {

void sendModelHeader(const odb_Odb& odb, ReplyChannel& out) {
  out.sendText(odb.analysisTitle(), kRecTitle);
  out.send(RecordBuilder(kRecAnalysisCode).i32(odb.jobData().analysisCode() - 1));
}

void sendAnnotationLines(const odb_Odb& odb, ReplyChannel& out) {
  try {
    const odb_Text* text = odb.userData().annotationObjects("xml");
    if (text == nullptr) return;
    std::string_view rest = text->text();
    while (!rest.empty()) {
      size_t end = rest.find('\n');
      size_t len = end == std::string_view::npos ? rest.size() : end + 1;
      out.sendText(rest.substr(0, len), kRecAnnotation);
      rest.remove_prefix(len);
    }
  } catch (...) {
    // The annotation is optional decoration; the model follows without it.
  }
}

}  // namespace odbs
