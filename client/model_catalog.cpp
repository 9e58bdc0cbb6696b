// Describers of the model and set records for the record catalog.
#include "client/model_records.h"
#include "wire/frame.h"

namespace odbs::client {

namespace {

const char* const kModelCommands[] = {"G", "g", "irf"};
const char* const kSetCommands[] = {"S", "s", "irs", "is"};

std::vector<int64_t> ints(const std::vector<int32_t>& v) {
  return std::vector<int64_t>(v.begin(), v.end());
}

std::vector<double> doubles(const std::vector<float>& v) {
  return std::vector<double>(v.begin(), v.end());
}

DescribedRecord describeSection(const RecordView& rec) {
  SectionRecord s = decodeSection(rec);
  DescribedRecord d{"section",
                    {{"number", int64_t{s.number}},
                     {"name", s.name},
                     {"kind", sectionKindName(s.code)},
                     {"code", int64_t{s.code}}}};
  for (size_t k = 0; k < s.runs.size(); ++k) {
    const LayerRunRecord& run = s.runs[k];
    std::string p = "run" + std::to_string(k + 1) + ".";
    d.fields.push_back({p + "layer", int64_t{run.layer}});
    d.fields.push_back({p + "points", int64_t{run.points}});
    d.fields.push_back({p + "material", run.material});
    d.fields.push_back({p + "thickness", double{run.thickness}});
    d.fields.push_back({p + "angle", double{run.angle}});
  }
  if (s.code == -3 && s.hasOrientation) {
    d.fields.push_back({"orientation", s.orientationRegion});
    d.fields.push_back({"csys1", s.csys1});
    d.fields.push_back({"csys2", s.csys2});
  }
  if (s.code == -4) d.fields.push_back({"mass", double{s.mass}});
  if (s.code == -5) d.fields.push_back({"thickness", double{s.thickness}});
  if (s.code <= -5 && s.code >= -11) d.fields.push_back({"material", s.material});
  return d;
}

DescribedRecord describeMaterial(const RecordView& rec) {
  MaterialRecord m = decodeMaterial(rec);
  DescribedRecord d{"material", {{"name", m.name}, {"density", double{m.density}}}};
  if (m.hasElastic) {
    d.fields.push_back({"elastic", m.elasticType});
    d.fields.push_back({"elasticValues", doubles(m.elastic)});
  }
  if (m.hasFailStrain) d.fields.push_back({"failStrain", doubles(m.failStrain)});
  if (m.hasFailStress) d.fields.push_back({"failStress", doubles(m.failStress)});
  d.fields.push_back({"acoustic", int64_t{m.acoustic}});
  return d;
}

DescribedRecord describeElement(const RecordView& rec) {
  ElementRecord e = decodeElement(rec);
  return {"element",
          {{"type", e.type},
           {"label", int64_t{e.label}},
           {"section", int64_t{e.section}},
           {"nodes", ints(e.nodes)}}};
}

DescribedRecord describeNode(const RecordView& rec) {
  NodeRecord n = decodeNode(rec);
  return {"node", {{"label", int64_t{n.label}}, {"coordinates", doubles(n.coordinates)}}};
}

void addHeaderRecords(RecordCatalog& c, const std::string& command) {
  c.add(command, kRecTitle, [](const RecordView& r) {
    return DescribedRecord{"title", {{"text", decodeTitle(r)}}};
  });
  c.add(command, kRecAnalysisCode, [](const RecordView& r) {
    return DescribedRecord{"analysis-code", {{"codeMinus1", int64_t{decodeAnalysisCode(r)}}}};
  });
  c.add(command, kRecInstanceHeader, [](const RecordView& r) {
    return DescribedRecord{"instance", {{"name", decodeInstanceHeader(r)}}};
  });
  c.add(command, kRecBlockEnd, [](const RecordView& r) {
    decodeBlockEnd(r);
    return DescribedRecord{"block-end", {}};
  });
}

}  // namespace

void addModelRecords(RecordCatalog& c) {
  for (const char* command : kModelCommands) {
    addHeaderRecords(c, command);
    c.add(command, kRecAnnotation, [](const RecordView& r) {
      return DescribedRecord{"annotation", {{"line", decodeAnnotationLine(r)}}};
    });
    c.add(command, kRecNode, describeNode);
    c.add(command, kRecElement, describeElement);
    c.add(command, kRecSection, describeSection);
    c.add(command, kRecMaterial, describeMaterial);
  }
  for (const char* command : kSetCommands) {
    addHeaderRecords(c, command);
    for (uint8_t type : {kRecNodeSetHeader, kRecElementSetHeader, kRecSurfaceHeader}) {
      c.add(command, type, [](const RecordView& r) {
        SetHeaderRecord h = decodeSetHeader(r);
        return DescribedRecord{setKindName(h.kind), {{"name", h.name}}};
      });
    }
    for (uint8_t type : {kRecNodeLabels, kRecElementLabels}) {
      c.add(command, type, [](const RecordView& r) {
        return DescribedRecord{"labels", {{"labels", ints(decodeLabelBlock(r))}}};
      });
    }
    c.add(command, kRecFaceLabels, [](const RecordView& r) {
      std::vector<int64_t> labels, faces;
      for (const auto& [label, face] : decodeFaceBlock(r)) {
        labels.push_back(label);
        faces.push_back(face);
      }
      return DescribedRecord{"faces", {{"elements", labels}, {"faces", faces}}};
    });
    c.add(command, kRecSetEnd, [](const RecordView& r) {
      decodeSetEnd(r);
      return DescribedRecord{"set-end", {}};
    });
  }
  c.add("is", kRecSectionAssignment, [](const RecordView& r) {
    SectionAssignmentRecord a = decodeSectionAssignment(r);
    DescribedRecord d{"section-assignment", {{"number", int64_t{a.number}}, {"name", a.name}}};
    if (a.hasOffset) d.fields.push_back({"offset", std::vector<double>{a.offset1, a.offset2}});
    if (a.hasThickness) d.fields.push_back({"thickness", double{a.thickness}});
    return d;
  });
}

}  // namespace odbs::client
