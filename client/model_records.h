// Decoders of the records of the model and set replies (commands G, g, irf, S, s, irs, is):
// title, analysis code, annotation line, instance header, block end, node, element, section,
// material, set headers, label and face blocks, set end, section assignment.
//
// Each decoder takes a record of its type and returns its fields; it throws DecodeError
// when the type byte is another one or the body does not have the record's layout (too
// short, bytes left over, a text count running past the end).
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "client/record.h"
#include "client/record_catalog.h"

namespace odbs::client {

// 1: the analysis title. 21 (model replies): one annotation line, newline included.
// 'H': an instance or root assembly name. All are counted texts.
std::string decodeTitle(const RecordView& rec);
std::string decodeAnnotationLine(const RecordView& rec);
std::string decodeInstanceHeader(const RecordView& rec);

// 2: the analysis code minus 1.
int32_t decodeAnalysisCode(const RecordView& rec);

// 'I' and 11: no body.
void decodeBlockEnd(const RecordView& rec);
void decodeSetEnd(const RecordView& rec);

// 3: node label and its coordinates (one to three).
struct NodeRecord {
  int32_t label = 0;
  std::vector<float> coordinates;
};
NodeRecord decodeNode(const RecordView& rec);

// 4: element. The type name stands unpadded: the server pads names shorter than 8
// characters with blanks (removed here) and sends longer ones whole, without a count.
// The decoder takes 8 + (body - 8) mod 4 characters, which is exact for names of up to 11
// characters, and extends the name by 4 characters at a time while the next 4 bytes are
// name characters (letters, digits, '_', '-', '.'). CONN3D2 elements carry their node
// count and one zero per node besides the labels.
struct ElementRecord {
  std::string type;
  int32_t label = 0;
  int32_t section = 0;  // 0: none
  std::vector<int32_t> nodes;
  bool connector = false;  // the type begins with "CONN3D2"
};
ElementRecord decodeElement(const RecordView& rec);

// '$': section. code < 0 names the kind (-3 connector, -4 point, -5 homogeneous shell,
// -6 solid, -7 truss, -8 PEG, -9 membrane, -10 gasket, -11 cohesive); code >= 0 is the run
// count of a composite shell, 0 also for a kind without data.
struct LayerRunRecord {
  int32_t layer = 0;
  int32_t points = 0;
  std::string material;
  float thickness = 0.f;
  float angle = 0.f;
};
struct SectionRecord {
  uint32_t number = 0;
  std::string name;
  int32_t code = 0;
  std::vector<LayerRunRecord> runs;  // composite shells
  // Connector: the orientation whose region is named after the section, if any.
  bool hasOrientation = false;
  std::string orientationRegion, csys1, csys2;  // a csys is "" when absent
  float mass = 0.f;                             // point
  float thickness = 0.f;                        // homogeneous shell
  std::string material;  // homogeneous shell, solid, truss, PEG, membrane, gasket, cohesive
};
SectionRecord decodeSection(const RecordView& rec);
// A short name of a section kind code ("connector", "solid", "composite shell", ...).
std::string sectionKindName(int32_t code);

// 17 (model replies): material.
struct MaterialRecord {
  std::string name;
  float density = 0.f;
  bool hasElastic = false;
  std::string elasticType;
  std::vector<float> elastic;  // 6 values when hasElastic
  bool hasFailStrain = false;
  std::vector<float> failStrain;  // 5 values
  bool hasFailStress = false;
  std::vector<float> failStress;  // 7 values
  bool acoustic = false;
};
MaterialRecord decodeMaterial(const RecordView& rec);

// 5, 6, 7: set header of a node set, element set or surface.
enum class SetKind { kNode, kElement, kSurface };
struct SetHeaderRecord {
  SetKind kind = SetKind::kNode;
  std::string name;
};
SetHeaderRecord decodeSetHeader(const RecordView& rec);
const char* setKindName(SetKind kind);

// 8, 9: up to 30 node or element labels. 10: up to 30 (element label, face) pairs.
std::vector<int32_t> decodeLabelBlock(const RecordView& rec);
std::vector<std::pair<int32_t, int32_t>> decodeFaceBlock(const RecordView& rec);

// 'T' (is): a section assignment; its region follows as a set (header, blocks, set end).
struct SectionAssignmentRecord {
  uint32_t number = 0;  // 0: no section of that name
  std::string name;
  bool hasOffset = false;
  float offset1 = 0.f, offset2 = 0.f;
  bool hasThickness = false;
  float thickness = 0.f;
};
SectionAssignmentRecord decodeSectionAssignment(const RecordView& rec);

// Registers describers of these records for replies to G, g, irf, S, s, irs and is.
void addModelRecords(RecordCatalog& catalog);

}  // namespace odbs::client
