// The record type bytes, shared by the server and the client library.
//
// Several type bytes carry different bodies depending on the command that was answered
// (17, 21, 34); those have one name per meaning. docs/protocol.md gives every body.
#pragma once

#include <cstdint>

namespace odbs {

// Record type bytes, named by what the record carries; see docs/protocol.md.
enum RecordType : uint8_t {
  kRecTitle = 1,          // counted text: analysis title
  kRecAnalysisCode = 2,   // i32: analysis code minus 1
  kRecNode = 3,           // i32 label, f32 coordinates
  kRecElement = 4,        // type name, i32 label, i32 section, connectivity
  kRecNodeSetHeader = 5,  // set headers (counted text first)
  kRecElementSetHeader = 6,
  kRecSurfaceHeader = 7,
  kRecNodeLabels = 8,     // node label block of a set
  kRecElementLabels = 9,  // element label block of a set
  kRecFaceLabels = 10,    // face block of a surface: element label and face number pairs
  kRecSetEnd = 11,        // type byte only
  kRecStep = 12,          // step and frame catalogue
  kRecProcedure = 13,
  kRecStepTexts = 14,
  kRecFrame = 15,
  kRecStepCounts = 16,
  kRecMaterial = 17,   // material (model export)
  kRecRealValue = 17,  // real value (contact output)
  kRecComplexValue = 18,
  kRecAnnotation = 21,  // annotation line (model export)
  kRecFieldValue = 21,  // value record (field walk)
  kRecElementType = 30,
  kRecSequenced = 34,       // '"': the m test record
  kRecElementValue = 34,    // '"': element value (field walk)
  kRecElementStatus = 34,   // '"': element status (contact output)
  kRecSection = 36,         // '$'
  kRecDataClass = 37,       // '%'
  kRecOrientation = 39,     // '\''
  kRecInstanceHeader = 72,  // 'H': counted text
  kRecBlockEnd = 73,        // 'I': type byte only
  kRecMessage = 124,        // '|': counted text for the user
  kRecProcessId = 125,      // '}': u32 process id
  kRecEnd = 126,            // '~': closes the reply to one command
};

}  // namespace odbs
