// Byte layout of the section assignment record 'T' (84) of command is, shared by the
// server's section assignment export and the client's decoder.
//
// Body: u32 section number (0: no section of that name), counted section name (as the
// section record sends it), u32 flags, f32 offset 1, f32 offset 2, f32 thickness. The offsets
// mean something only with kAssignmentHasOffset, the thickness only with
// kAssignmentHasThickness; absent values are sent as 0.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "wire/coding.h"

namespace odbs {

constexpr uint32_t kAssignmentHasOffset = 1;
constexpr uint32_t kAssignmentHasThickness = 2;

struct SectionAssignmentBody {
  uint32_t number = 0;
  std::string name;
  uint32_t flags = 0;
  float offset1 = 0.f;
  float offset2 = 0.f;
  float thickness = 0.f;
};

inline size_t sectionAssignmentSize(const SectionAssignmentBody& b) {
  return 4 + 4 + b.name.size() + 4 + 3 * 4;
}

// Writes the body at dst, which has room for sectionAssignmentSize(b) bytes; returns the end.
inline uint8_t* putSectionAssignment(uint8_t* dst, const SectionAssignmentBody& b) {
  dst = putU32(dst, b.number);
  dst = putText(dst, b.name);
  dst = putU32(dst, b.flags);
  dst = putF32(dst, b.offset1);
  dst = putF32(dst, b.offset2);
  return putF32(dst, b.thickness);
}

// Reads a whole body; false when it is too short, has bytes left over or unknown flags.
inline bool getSectionAssignment(ByteReader& r, SectionAssignmentBody* out) {
  SectionAssignmentBody b;
  bool ok = r.getU32(&b.number) && r.getText(&b.name) && r.getU32(&b.flags) &&
            r.getF32(&b.offset1) && r.getF32(&b.offset2) && r.getF32(&b.thickness);
  if (!ok || !r.atEnd() || (b.flags & ~(kAssignmentHasOffset | kAssignmentHasThickness))) {
    return false;
  }
  *out = std::move(b);
  return true;
}

}  // namespace odbs
