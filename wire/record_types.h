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
  kRecStepCounts = 16,    // counts of one step (fs, fv)
  kRecMaterial = 17,      // material (model export)
  kRecRealValue = 17,     // real value (contact output)
  kRecComplexValue = 18,  // complex value (contact output)
  kRecRotationReal = 19,  // rotation values of UR (contact output), then of UR1, UR2, UR3
  kRecRotationComplex = 20,
  kRecAnnotation = 21,  // annotation line (model export)
  kRecFieldValue = 21,  // value record (field walk)
  // Value records of the field walk, by what changed against the previous value
  // (wire/field_value_coding.h gives their layout).
  kRecValueSamePlace = 21,        // nothing
  kRecValueNewNode = 22,          // node
  kRecValueNewPoint = 23,         // integration point
  kRecValueNewPointNode = 24,     // integration point and node
  kRecValueNewAll = 31,           // element, integration point and node
  kRecValueNewElementPoint = 32,  // ' ': element and integration point
  kRecValueNewElementNode = 33,   // '!': element and node
  kRecValueNewElement = 34,       // '"': element
  kRecElementType = 30,           // element type of the values that follow
  kRecSequenced = 34,             // '"': the m test record
  kRecElementValue = 34,          // '"': element value (field walk)
  kRecElementStatus = 34,         // '"': element status (contact output)
  kRecSection = 36,               // '$'
  kRecDataClass = 37,             // '%'
  kRecRotation1Real = 38,         // '&': rotation values of UR1 (contact output)
  kRecOrientation = 39,           // '\''
  kRecRotation1Complex = 40,      // '('
  kRecHistoryStep = 50,           // '2': step of the history output
  kRecHistoryRegion = 52,         // '4': history region and its point
  kRecHistoryOutput = 54,         // '6': history output and its conjugate flag
  kRecHistoryValue = 56,          // '8': one f32 of a history sample
  kRecRotation2Real = 57,         // '9': UR2
  kRecRotation2Complex = 60,      // '<'
  kRecInstanceHeader = 72,        // 'H': counted text
  kRecBlockEnd = 73,              // 'I': type byte only
  kRecRotation3Real = 76,         // 'L': UR3
  kRecRotation3Complex = 80,      // 'P'
  kRecSectionAssignment = 84,     // 'T': section assignment (is)
  kRecRegion = 96,                // '`': the region whose values follow (rn, rg)
  kRecMessage = 124,              // '|': counted text for the user
  kRecProcessId = 125,            // '}': u32 process id
  kRecEnd = 126,                  // '~': closes the reply to one command
};

}  // namespace odbs
