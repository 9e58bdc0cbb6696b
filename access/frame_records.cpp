#include "access/frame_records.h"

#include "odb/odb.h"

namespace odbs {

namespace {

// Longest text that the catalogue sends in one field: keeps every mirrored line, escaped,
// within the line limit of the cache file, so a replay is byte for byte the same.
constexpr size_t kMaxText = 4000;
// The step text of record 12 (name, 0x01, description) is composed in a 200-byte area.
constexpr size_t kMaxStepText = 199;

std::string cut(const std::string& s, size_t n) {
  return s.size() > n ? s.substr(0, n) : s;
}

// Texts of record 14: the step's domain as a word and the step's name.
const char* domainWord(int domain) {
  switch (domain) {
    case odb_Enum::TIME:
      return "TIME";
    case odb_Enum::FREQUENCY:
      return "FREQUENCY";
    case odb_Enum::ARC_LENGTH:
      return "ARC_LENGTH";
    case odb_Enum::MODAL:
      return "MODAL";
    default:
      return "";
  }
}

}  // namespace

std::string catalogueTitle(const odb_Odb& odb) {
  return cut(odb.analysisTitle(), kMaxText);
}

void setStepFields(const odb_Step& step, int32_t stepNumber, int32_t frameCount, FrameRecords* f) {
  f->stepNumber = stepNumber;
  f->totalTime = step.totalTime();
  f->stepText = cut(step.name() + '\x01' + step.description(), kMaxStepText);
  f->procedure = cut(step.procedure(), kMaxText);
  f->text1 = domainWord(step.domain());
  f->text2 = cut(step.name(), kMaxText);
  f->entry1 = stepNumber;
  f->entry2 = frameCount - 1;
}

void setFrameFields(const odb_Frame& frame, FrameRecords* f) {
  f->frameIndex = frame.frameIndex();
  f->domain = frame.domain();
  f->mode = frame.mode();
  f->frameValue = frame.frameValue();
  f->frequency = frame.frequency();
  f->description = cut(frame.description(), kMaxText);
}

}  // namespace odbs
