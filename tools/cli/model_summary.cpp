#include "tools/cli/model_summary.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "client/core_records.h"
#include "tools/cli/json_text.h"
#include "tools/cli/record_printer.h"
#include "wire/frame.h"

namespace odbs::cli {

MeshBlock& ModelSummaryBuilder::currentBlock() {
  if (header_ || !inBlock_) {
    s_.blocks.push_back(MeshBlock{header_.value_or(""), 0, 0, 0, {}, {}, {}, {}});
    header_.reset();
    inBlock_ = true;
  }
  return s_.blocks.back();
}

void ModelSummaryBuilder::add(const client::RecordView& rec) {
  switch (rec.type) {
    case kRecTitle:
      s_.title = client::decodeTitle(rec);
      break;
    case kRecAnalysisCode:
      s_.analysisCode = client::decodeAnalysisCode(rec) + 1;
      break;
    case kRecAnnotation:
      s_.annotation.push_back(client::decodeAnnotationLine(rec));
      break;
    case kRecInstanceHeader:
      if (header_) currentBlock();  // the previous instance sent no records
      header_ = client::decodeInstanceHeader(rec);
      break;
    case kRecSection:
      s_.sections.push_back({client::decodeSection(rec), header_.value_or("")});
      header_.reset();
      break;
    case kRecBlockEnd:
      client::decodeBlockEnd(rec);
      break;
    case kRecMaterial:
      s_.materials.push_back(client::decodeMaterial(rec));
      break;
    case kRecNode: {
      client::NodeRecord n = client::decodeNode(rec);
      MeshBlock& b = currentBlock();
      if (b.nodes++ == 0) {
        b.dimension = n.coordinates.size();
        b.low = b.high = n.coordinates;
      }
      for (size_t c = 0; c < std::min(b.low.size(), n.coordinates.size()); ++c) {
        b.low[c] = std::min(b.low[c], n.coordinates[c]);
        b.high[c] = std::max(b.high[c], n.coordinates[c]);
      }
      break;
    }
    case kRecElement: {
      client::ElementRecord e = client::decodeElement(rec);
      MeshBlock& b = currentBlock();
      ++b.elements;
      ++b.types[e.type];
      ++b.sections[e.section];
      break;
    }
    case kRecMessage:
      s_.messages.push_back(client::decodeMessage(rec).text);
      break;
    default:
      break;
  }
}

ModelSummary ModelSummaryBuilder::finish() {
  if (header_) currentBlock();
  return std::move(s_);
}

namespace {

std::string sectionDetail(const client::SectionRecord& r) {
  std::string d;
  if (r.code > 0) {
    d = std::to_string(r.runs.size()) + " layer runs:";
    for (const auto& run : r.runs) {
      d += " [layer " + std::to_string(run.layer) + " x" + std::to_string(run.points) + " " +
           run.material + " t=" + formatNumber(run.thickness) + " " + formatNumber(run.angle) +
           " deg]";
    }
  } else if (r.code == -3) {
    d = r.hasOrientation
            ? "orientation " + r.orientationRegion + " (" + (r.csys1.empty() ? "-" : r.csys1) +
                  ", " + (r.csys2.empty() ? "-" : r.csys2) + ")"
            : "no orientation";
  } else if (r.code == -4) {
    d = "mass " + formatNumber(r.mass);
  } else if (r.code == -5) {
    d = "thickness " + formatNumber(r.thickness) + ", material " + r.material;
  } else if (r.code <= -6 && r.code >= -11) {
    d = "material " + r.material;
  }
  return d;
}

std::string numbers(const std::vector<float>& v) {
  std::string s;
  for (float f : v) s += (s.empty() ? "" : " ") + formatNumber(f);
  return s;
}

std::string blockName(const MeshBlock& b) {
  return b.name.empty() ? "(the instance)" : b.name;
}

void printText(const ModelSummary& s, std::ostream& out) {
  out << "title          " << s.title << "\n";
  out << "analysis code  " << s.analysisCode << "\n";
  for (const auto& m : s.messages) out << "message        " << m << "\n";
  if (!s.annotation.empty()) {
    out << "annotation     " << s.annotation.size() << " lines\n";
    for (const auto& line : s.annotation) {
      std::string l = line;
      if (!l.empty() && l.back() == '\n') l.pop_back();
      out << "  | " << l << "\n";
    }
  }
  out << "sections       " << s.sections.size() << " assigned\n";
  for (const auto& e : s.sections) {
    out << "  #" << e.record.number << "  " << e.record.name << "  "
        << client::sectionKindName(e.record.code);
    std::string d = sectionDetail(e.record);
    if (!d.empty()) out << ", " << d;
    if (!e.owner.empty()) out << "  [" << e.owner << "]";
    out << "\n";
  }
  out << "materials      " << s.materials.size() << "\n";
  for (const auto& m : s.materials) {
    out << "  " << m.name << "  density " << formatNumber(m.density);
    if (m.hasElastic) out << ", elastic " << m.elasticType << " " << numbers(m.elastic);
    if (m.hasFailStrain) out << ", failure strain " << numbers(m.failStrain);
    if (m.hasFailStress) out << ", failure stress " << numbers(m.failStress);
    if (m.acoustic) out << ", acoustic medium";
    out << "\n";
  }
  uint64_t nodes = 0, elements = 0;
  for (const auto& b : s.blocks) {
    nodes += b.nodes;
    elements += b.elements;
  }
  out << "mesh           " << nodes << " nodes, " << elements << " elements\n";
  for (const auto& b : s.blocks) {
    out << "  " << blockName(b) << ": " << b.nodes << " nodes";
    if (b.nodes > 0)
      out << " (" << b.dimension << "D, " << numbers(b.low) << " to " << numbers(b.high) << ")";
    out << ", " << b.elements << " elements";
    std::string sep = ": ";
    for (const auto& [type, n] : b.types) {
      out << sep << type << " " << n;
      sep = ", ";
    }
    out << "\n";
    if (!b.sections.empty()) {
      out << "    by section:";
      for (const auto& [number, n] : b.sections) {
        out << " " << (number == 0 ? std::string("none") : "#" + std::to_string(number)) << " "
            << n;
      }
      out << "\n";
    }
  }
}

void printJson(const ModelSummary& s, std::ostream& out) {
  JsonWriter j(out);
  j.beginObject();
  j.key("title").value(s.title);
  j.key("analysisCode").value(int64_t{s.analysisCode});
  j.key("messages").strings(s.messages);
  j.key("annotation").strings(s.annotation);
  j.key("sections").beginArray();
  for (const auto& e : s.sections) {
    const client::SectionRecord& r = e.record;
    j.beginObject();
    j.key("number").value(int64_t{r.number});
    j.key("name").value(r.name);
    j.key("kind").value(client::sectionKindName(r.code));
    j.key("owner").value(e.owner);
    if (r.code == -4) j.key("mass").value(r.mass);
    if (r.code == -5) j.key("thickness").value(r.thickness);
    if (r.code <= -5 && r.code >= -11) j.key("material").value(r.material);
    if (r.code == -3) {
      j.key("orientation").value(r.orientationRegion);
      j.key("csys1").value(r.csys1);
      j.key("csys2").value(r.csys2);
    }
    if (r.code > 0) {
      j.key("layerRuns").beginArray();
      for (const auto& run : r.runs) {
        j.beginObject();
        j.key("layer").value(int64_t{run.layer});
        j.key("points").value(int64_t{run.points});
        j.key("material").value(run.material);
        j.key("thickness").value(run.thickness);
        j.key("angle").value(run.angle);
        j.endObject();
      }
      j.endArray();
    }
    j.endObject();
  }
  j.endArray();
  j.key("materials").beginArray();
  for (const auto& m : s.materials) {
    j.beginObject();
    j.key("name").value(m.name);
    j.key("density").value(m.density);
    if (m.hasElastic) {
      j.key("elasticType").value(m.elasticType);
      j.key("elastic").numbers(m.elastic);
    }
    if (m.hasFailStrain) j.key("failStrain").numbers(m.failStrain);
    if (m.hasFailStress) j.key("failStress").numbers(m.failStress);
    j.key("acoustic").value(m.acoustic);
    j.endObject();
  }
  j.endArray();
  j.key("blocks").beginArray();
  for (const auto& b : s.blocks) {
    j.beginObject();
    j.key("name").value(b.name);
    j.key("nodes").value(int64_t(b.nodes));
    j.key("elements").value(int64_t(b.elements));
    j.key("low").numbers(b.low);
    j.key("high").numbers(b.high);
    j.key("types").beginObject();
    for (const auto& [type, n] : b.types) j.key(type).value(int64_t(n));
    j.endObject();
    j.key("sections").beginObject();
    for (const auto& [number, n] : b.sections) j.key(std::to_string(number)).value(int64_t(n));
    j.endObject();
    j.endObject();
  }
  j.endArray();
  j.endObject();
}

}  // namespace

void printModelSummary(const ModelSummary& s, OutputFormat format, std::ostream& out) {
  if (format == OutputFormat::kJson) {
    printJson(s, out);
    out << "\n";
  } else {
    printText(s, out);
  }
}

}  // namespace odbs::cli
