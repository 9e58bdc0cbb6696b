#include "client/model_records.h"

#include "client/client_error.h"
#include "client/core_records.h"
#include "wire/frame.h"
#include "wire/section_assignment_coding.h"

namespace odbs::client {

namespace {

constexpr size_t kTypeNameWidth = 8;
constexpr int32_t kFailStrainTag = 0;
constexpr int32_t kFailStressTag = 1;
constexpr int32_t kElasticEnd = -1;

// Reads from one record's body; every failure names the record and the field.
class BodyReader {
 public:
  BodyReader(const RecordView& rec, const char* what) : r_(rec.reader()), what_(what) {}

  int32_t i32(const char* field) {
    int32_t v = 0;
    if (!r_.getI32(&v)) fail(field);
    return v;
  }
  uint32_t u32(const char* field) {
    uint32_t v = 0;
    if (!r_.getU32(&v)) fail(field);
    return v;
  }
  float f32(const char* field) {
    float v = 0;
    if (!r_.getF32(&v)) fail(field);
    return v;
  }
  std::string text(const char* field) {
    std::string s;
    if (!r_.getText(&s)) fail(field);
    return s;
  }
  std::string bytes(size_t n, const char* field) {
    std::string s;
    if (!r_.getBytes(n, &s)) fail(field);
    return s;
  }
  std::vector<float> floats(size_t n, const char* field) {
    std::vector<float> v(n);
    for (float& f : v) f = f32(field);
    return v;
  }
  size_t remaining() const { return r_.remaining(); }
  const uint8_t* position() const { return r_.position(); }
  void end() {
    if (!r_.atEnd()) {
      throw DecodeError(std::string(what_) + " record has " + std::to_string(r_.remaining()) +
                        " bytes after its fields");
    }
  }

 private:
  [[noreturn]] void fail(const char* field) {
    throw DecodeError(std::string(what_) + " record ends inside its " + field);
  }
  ByteReader r_;
  const char* what_;
};

std::string countedText(const RecordView& rec, uint8_t type, const char* what) {
  expectType(rec, type, what);
  BodyReader r(rec, what);
  std::string s = r.text("text");
  r.end();
  return s;
}

void typeOnly(const RecordView& rec, uint8_t type, const char* what) {
  expectType(rec, type, what);
  if (rec.size != 0) {
    throw DecodeError(std::string(what) + " record with a body of " + std::to_string(rec.size) +
                      " bytes");
  }
}

bool isNameByte(uint8_t c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.';
}

// How many bytes of the element body are its type name (see decodeElement).
size_t typeNameLength(const RecordView& rec) {
  if (rec.size < kTypeNameWidth + 8) return kTypeNameWidth;
  size_t n = kTypeNameWidth + (rec.size - kTypeNameWidth) % 4;
  while (n + 4 + 8 <= rec.size) {
    bool name = true;
    for (size_t k = 0; k < 4; ++k) name = name && isNameByte(rec.body[n + k]);
    if (!name) break;
    n += 4;
  }
  return n;
}

}  // namespace

std::string decodeTitle(const RecordView& rec) {
  return countedText(rec, kRecTitle, "title");
}

std::string decodeAnnotationLine(const RecordView& rec) {
  return countedText(rec, kRecAnnotation, "annotation line");
}

std::string decodeInstanceHeader(const RecordView& rec) {
  return countedText(rec, kRecInstanceHeader, "instance header");
}

int32_t decodeAnalysisCode(const RecordView& rec) {
  expectType(rec, kRecAnalysisCode, "analysis-code");
  BodyReader r(rec, "analysis-code");
  int32_t code = r.i32("code");
  r.end();
  return code;
}

void decodeBlockEnd(const RecordView& rec) {
  typeOnly(rec, kRecBlockEnd, "block end");
}

void decodeSetEnd(const RecordView& rec) {
  typeOnly(rec, kRecSetEnd, "set end");
}

NodeRecord decodeNode(const RecordView& rec) {
  expectType(rec, kRecNode, "node");
  BodyReader r(rec, "node");
  NodeRecord n;
  n.label = r.i32("label");
  if (r.remaining() % 4 != 0 || r.remaining() == 0 || r.remaining() > 12) {
    throw DecodeError("node record: body of " + std::to_string(rec.size) +
                      " bytes, 8, 12 or 16 expected");
  }
  n.coordinates = r.floats(r.remaining() / 4, "coordinates");
  return n;
}

ElementRecord decodeElement(const RecordView& rec) {
  expectType(rec, kRecElement, "element");
  BodyReader r(rec, "element");
  ElementRecord e;
  e.type = r.bytes(typeNameLength(rec), "type name");
  while (!e.type.empty() && e.type.back() == ' ') e.type.pop_back();
  e.label = r.i32("label");
  e.section = r.i32("section number");
  e.connector = e.type.compare(0, 7, "CONN3D2") == 0;
  if (e.connector) {
    int32_t n = r.i32("node count");
    if (n < 0 || r.remaining() != 8 * size_t(n)) {
      throw DecodeError("element record: connector node count " + std::to_string(n) +
                        " does not match the " + std::to_string(r.remaining()) + " bytes left");
    }
    for (int32_t k = 0; k < n; ++k) e.nodes.push_back(r.i32("node label"));
    for (int32_t k = 0; k < n; ++k) {
      if (r.u32("node name length") != 0) {
        throw DecodeError("element record: connector node name length is not 0");
      }
    }
  } else {
    if (r.remaining() % 4 != 0) {
      throw DecodeError("element record: connectivity of " + std::to_string(r.remaining()) +
                        " bytes is not a whole number of labels");
    }
    while (r.remaining() > 0) e.nodes.push_back(r.i32("node label"));
  }
  r.end();
  return e;
}

std::string sectionKindName(int32_t code) {
  switch (code) {
    case -3:
      return "connector";
    case -4:
      return "point";
    case -5:
      return "homogeneous shell";
    case -6:
      return "solid";
    case -7:
      return "truss";
    case -8:
      return "PEG";
    case -9:
      return "membrane";
    case -10:
      return "gasket";
    case -11:
      return "cohesive";
    case 0:
      return "other";
    default:
      return code > 0 ? "composite shell" : "unknown";
  }
}

SectionRecord decodeSection(const RecordView& rec) {
  expectType(rec, kRecSection, "section");
  BodyReader r(rec, "section");
  SectionRecord s;
  s.number = r.u32("number");
  s.name = r.text("name");
  s.code = r.i32("kind code");
  if (s.code > 0) {
    for (int32_t k = 0; k < s.code; ++k) {
      LayerRunRecord run;
      run.layer = r.i32("layer number");
      run.points = r.i32("point count");
      run.material = r.text("layer material");
      r.text("second layer name");
      run.thickness = r.f32("layer thickness");
      run.angle = r.f32("layer angle");
      s.runs.push_back(std::move(run));
    }
  } else if (s.code == -3) {
    s.orientationRegion = r.text("orientation region");
    s.hasOrientation = !s.orientationRegion.empty();
    if (s.hasOrientation) {
      s.csys1 = r.text("first coordinate system");
      s.csys2 = r.text("second coordinate system");
    }
    r.u32("trailing zero");
  } else if (s.code == -4) {
    s.mass = r.f32("mass");
    r.u32("trailing zero");
  } else if (s.code == -5) {
    s.thickness = r.f32("thickness");
    s.material = r.text("material");
    r.text("second name");
  } else if (s.code <= -6 && s.code >= -11) {
    s.material = r.text("material");
    r.text("second name");
  }
  r.end();
  return s;
}

MaterialRecord decodeMaterial(const RecordView& rec) {
  expectType(rec, kRecMaterial, "material");
  BodyReader r(rec, "material");
  MaterialRecord m;
  m.name = r.text("name");
  m.density = r.f32("density");
  m.elasticType = r.text("elastic type");
  // Without elastic data only the acoustic flag follows the empty elastic type.
  m.hasElastic = !m.elasticType.empty() || r.remaining() != 4;
  if (m.hasElastic) {
    m.elastic = r.floats(6, "elastic values");
    for (;;) {
      int32_t tag = r.i32("elastic block tag");
      if (tag == kElasticEnd) break;
      if (tag == kFailStrainTag && !m.hasFailStrain) {
        m.hasFailStrain = true;
        m.failStrain = r.floats(5, "failure strain");
      } else if (tag == kFailStressTag && !m.hasFailStress) {
        m.hasFailStress = true;
        m.failStress = r.floats(7, "failure stress");
      } else {
        throw DecodeError("material record: unexpected elastic block tag " + std::to_string(tag));
      }
    }
  }
  int32_t acoustic = r.i32("acoustic flag");
  if (acoustic != 0 && acoustic != 1) {
    throw DecodeError("material record: acoustic flag " + std::to_string(acoustic));
  }
  m.acoustic = acoustic == 1;
  r.end();
  return m;
}

const char* setKindName(SetKind kind) {
  switch (kind) {
    case SetKind::kNode:
      return "node set";
    case SetKind::kElement:
      return "element set";
    case SetKind::kSurface:
      return "surface";
  }
  return "set";
}

SectionAssignmentRecord decodeSectionAssignment(const RecordView& rec) {
  expectType(rec, kRecSectionAssignment, "section assignment");
  ByteReader r = rec.reader();
  SectionAssignmentBody b;
  if (!getSectionAssignment(r, &b)) {
    throw DecodeError("section assignment record does not have its layout (" +
                      std::to_string(rec.size) + " body bytes)");
  }
  return {b.number,   std::move(b.name), (b.flags & kAssignmentHasOffset) != 0,
          b.offset1,  b.offset2,         (b.flags & kAssignmentHasThickness) != 0,
          b.thickness};
}

SetHeaderRecord decodeSetHeader(const RecordView& rec) {
  if (rec.type < kRecNodeSetHeader || rec.type > kRecSurfaceHeader) {
    expectType(rec, kRecNodeSetHeader, "set header");
  }
  SetHeaderRecord h;
  h.kind = static_cast<SetKind>(rec.type - kRecNodeSetHeader);
  BodyReader r(rec, "set header");
  h.name = r.text("name");
  r.end();
  return h;
}

std::vector<int32_t> decodeLabelBlock(const RecordView& rec) {
  if (rec.type != kRecNodeLabels && rec.type != kRecElementLabels) {
    expectType(rec, kRecNodeLabels, "label block");
  }
  if (rec.size == 0 || rec.size % 4 != 0 || rec.size > 120) {
    throw DecodeError("label block of " + std::to_string(rec.size) +
                      " bytes: 1 to 30 labels expected");
  }
  BodyReader r(rec, "label block");
  std::vector<int32_t> labels;
  while (r.remaining() > 0) labels.push_back(r.i32("label"));
  return labels;
}

std::vector<std::pair<int32_t, int32_t>> decodeFaceBlock(const RecordView& rec) {
  expectType(rec, kRecFaceLabels, "face block");
  if (rec.size == 0 || rec.size % 8 != 0 || rec.size > 240) {
    throw DecodeError("face block of " + std::to_string(rec.size) +
                      " bytes: 1 to 30 label and face pairs expected");
  }
  BodyReader r(rec, "face block");
  std::vector<std::pair<int32_t, int32_t>> pairs;
  while (r.remaining() > 0) {
    int32_t label = r.i32("element label");
    pairs.emplace_back(label, r.i32("face"));
  }
  return pairs;
}

}  // namespace odbs::client
