// The four records that the step and frame catalogue sends per frame (12 step, 13
// procedure, 14 step texts, 15 frame), shared by fd and by the step counts of fs and fv.
#pragma once

#include <cstdint>
#include <string>

#include "context/reply_channel.h"

class odb_Odb;
class odb_Step;
class odb_Frame;

namespace odbs {

// The values of one frame's four records, as they are sent and mirrored.
struct FrameRecords {
  int32_t stepNumber = 0;
  double totalTime = 0;
  std::string stepText;  // name, 0x01, description
  std::string procedure;
  std::string text1, text2;
  int32_t frameIndex = 0, domain = 0, mode = 0;
  double frameValue = 0, frequency = 0;
  int32_t entry1 = 0, entry2 = 0;
  std::string description;
};

// The analysis title as records 1 of f send it (cut to the longest catalogue text).
std::string catalogueTitle(const odb_Odb& odb);

// Fills the step's fields of f: stepNumber is 1-based, frameCount the step's frames.
void setStepFields(const odb_Step& step, int32_t stepNumber, int32_t frameCount, FrameRecords* f);

// Fills the frame's fields of f.
void setFrameFields(const odb_Frame& frame, FrameRecords* f);

// Composes the records of one frame into out: the pending buffer (ReplyChannel) or any
// other sink with queue(const RecordBuilder&).
template <typename Out>
void queueFrame(const FrameRecords& f, Out& out) {
  out.queue(RecordBuilder(kRecStep).i32(f.stepNumber).f64(f.totalTime).text(f.stepText));
  out.queue(RecordBuilder(kRecProcedure).text(f.procedure));
  out.queue(RecordBuilder(kRecStepTexts).text(f.text1).text(f.text2));
  out.queue(RecordBuilder(kRecFrame)
                .i32(f.frameIndex)
                .i32(f.domain)
                .i32(f.mode)
                .f64(f.frameValue)
                .f64(f.frequency)
                .i32(f.entry1)
                .i32(f.entry2)
                .text(f.description));
}

}  // namespace odbs
