// The reply frame and the record type bytes, shared by the server and the client library.
//
// Frame: a 16-bit little-endian count of the bytes that follow, then the record: one type
// byte and a body laid out by the type. The count includes the type byte. Several type
// bytes carry different bodies depending on the command that was answered (17, 21, 34);
// docs/protocol.md gives every body.
#pragma once

#include <cstddef>
#include <cstdint>

namespace odbs {

// Sizes of the server's record buffers.
constexpr size_t kFrameHeaderSize = 2;        // the 16-bit count
constexpr size_t kRecordBufferSize = 10240;   // largest composed record (type + body)
constexpr size_t kPendingBufferSize = 40961;  // pending output buffer
constexpr size_t kPendingFlushLimit = 40950;  // pending + record >= this flushes first
constexpr size_t kInputBlockSize = 4096;      // command input is read in such blocks
constexpr size_t kMaxCommandLine = 4095;      // characters of one command line

// Record type bytes. Names follow the record's first use; see docs/protocol.md.
enum RecordType : uint8_t {
  kRecTitle = 1,          // counted text: analysis title
  kRecAnalysisCode = 2,   // i32: analysis code minus 1
  kRecNode = 3,           // i32 label, f32 coordinates
  kRecElement = 4,        // type name, i32 label, i32 section, connectivity
  kRecNodeSetHeader = 5,  // set headers (counted text first)
  kRecElementSetHeader = 6,
  kRecSurfaceHeader = 7,
  kRecLabelBlock8 = 8,  // label and face blocks of a set
  kRecLabelBlock9 = 9,
  kRecLabelBlock10 = 10,
  kRecSetEnd = 11,  // type byte only
  kRecStep = 12,    // step and frame catalogue
  kRecProcedure = 13,
  kRecStepTexts = 14,
  kRecFrame = 15,
  kRecStepCounts = 16,
  kRecMaterial = 17,  // material (model export); real value (contact output)
  kRecRealValue = 17,
  kRecComplexValue = 18,
  kRecRotationReal = 19,  // rotation values of UR (contact output), then of UR1, UR2, UR3
  kRecRotationComplex = 20,
  kRecRotation1Real = 38,
  kRecRotation1Complex = 40,
  kRecRotation2Real = 57,
  kRecRotation2Complex = 60,
  kRecRotation3Real = 76,
  kRecRotation3Complex = 80,
  kRecAnnotation = 21,  // annotation line (model export); value record (field walk)
  kRecElementType = 30,
  kRecSequenced = 34,  // '"': element value; element status; the m test record
  kRecElementStatus = 34,
  kRecSection = 36,         // '$'
  kRecDataClass = 37,       // '%'
  kRecOrientation = 39,     // '\''
  kRecHistoryStep = 50,     // '2': step of the history output
  kRecHistoryRegion = 52,   // '4': history region and its point
  kRecHistoryOutput = 54,   // '6': history output and its conjugate flag
  kRecHistoryValue = 56,    // '8': one f32 of a history sample
  kRecInstanceHeader = 72,  // 'H': counted text
  kRecBlockEnd = 73,        // 'I': type byte only
  kRecMessage = 124,        // '|': counted text for the user
  kRecProcessId = 125,      // '}': u32 process id
  kRecEnd = 126,            // '~': closes the reply to one command
};

// The end record as it appears on the wire.
constexpr uint8_t kEndFrame[3] = {0x01, 0x00, kRecEnd};

}  // namespace odbs
