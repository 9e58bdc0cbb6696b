#include "tools/cli/model_summary.h"

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "client/core_records.h"
#include "tools/cli/record_printer.h"
#include "tools/common/json_values.h"
#include "tools/common/number_text.h"
#include "tools/common/table_writer.h"
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
           run.material + " t=" + tools::formatNumber(run.thickness) + " " +
           tools::formatNumber(run.angle) + " deg]";
    }
  } else if (r.code == -3) {
    d = r.hasOrientation
            ? "orientation " + r.orientationRegion + " (" + (r.csys1.empty() ? "-" : r.csys1) +
                  ", " + (r.csys2.empty() ? "-" : r.csys2) + ")"
            : "no orientation";
  } else if (r.code == -4) {
    d = "mass " + tools::formatNumber(r.mass);
  } else if (r.code == -5) {
    d = "thickness " + tools::formatNumber(r.thickness) + ", material " + r.material;
  } else if (r.code <= -6 && r.code >= -11) {
    d = "material " + r.material;
  }
  return d;
}

std::string numbers(const std::vector<float>& v) {
  std::string s;
  for (float f : v) s += (s.empty() ? "" : " ") + tools::formatNumber(f);
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
    out << "  " << m.name << "  density " << tools::formatNumber(m.density);
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

tools::Json toJson(const ModelSummary& s) {
  using tools::Json;
  using tools::jsonNumber;
  using tools::jsonNumbers;
  Json j = Json::object();
  j["title"] = s.title;
  j["analysisCode"] = s.analysisCode;
  j["messages"] = s.messages;
  j["annotation"] = s.annotation;
  Json sections = Json::array();
  for (const auto& e : s.sections) {
    const client::SectionRecord& r = e.record;
    Json o = Json::object();
    o["number"] = r.number;
    o["name"] = r.name;
    o["kind"] = client::sectionKindName(r.code);
    o["owner"] = e.owner;
    if (r.code == -4) o["mass"] = jsonNumber(r.mass);
    if (r.code == -5) o["thickness"] = jsonNumber(r.thickness);
    if (r.code <= -5 && r.code >= -11) o["material"] = r.material;
    if (r.code == -3) {
      o["orientation"] = r.orientationRegion;
      o["csys1"] = r.csys1;
      o["csys2"] = r.csys2;
    }
    if (r.code > 0) {
      Json runs = Json::array();
      for (const auto& run : r.runs) {
        runs.push_back({{"layer", run.layer},
                        {"points", run.points},
                        {"material", run.material},
                        {"thickness", jsonNumber(run.thickness)},
                        {"angle", jsonNumber(run.angle)}});
      }
      o["layerRuns"] = std::move(runs);
    }
    sections.push_back(std::move(o));
  }
  j["sections"] = std::move(sections);
  Json materials = Json::array();
  for (const auto& m : s.materials) {
    Json o = Json::object();
    o["name"] = m.name;
    o["density"] = jsonNumber(m.density);
    if (m.hasElastic) {
      o["elasticType"] = m.elasticType;
      o["elastic"] = jsonNumbers(m.elastic);
    }
    if (m.hasFailStrain) o["failStrain"] = jsonNumbers(m.failStrain);
    if (m.hasFailStress) o["failStress"] = jsonNumbers(m.failStress);
    o["acoustic"] = m.acoustic;
    materials.push_back(std::move(o));
  }
  j["materials"] = std::move(materials);
  Json blocks = Json::array();
  for (const auto& b : s.blocks) {
    Json o = Json::object();
    o["name"] = b.name;
    o["nodes"] = b.nodes;
    o["elements"] = b.elements;
    o["low"] = jsonNumbers(b.low);
    o["high"] = jsonNumbers(b.high);
    o["types"] = Json::object();
    for (const auto& [type, n] : b.types) o["types"][type] = n;
    o["sections"] = Json::object();
    for (const auto& [number, n] : b.sections) o["sections"][std::to_string(number)] = n;
    blocks.push_back(std::move(o));
  }
  j["blocks"] = std::move(blocks);
  return j;
}

// One row per instance and element type: the mesh as a table.
void printTable(const ModelSummary& s, tools::TableFormat format, std::ostream& out) {
  tools::TableWriter t(out, format, {"instance", "nodes", "elements", "element_type", "count"});
  for (const auto& b : s.blocks) {
    if (b.types.empty()) {
      t.cell(b.name).cell(int64_t(b.nodes)).cell(int64_t(b.elements)).endRow();
    }
    for (const auto& [type, n] : b.types) {
      t.cell(b.name).cell(int64_t(b.nodes)).cell(int64_t(b.elements)).cell(type);
      t.cell(int64_t(n)).endRow();
    }
  }
}

}  // namespace

void printModelSummary(const ModelSummary& s, OutputFormat format, std::ostream& out) {
  if (format == OutputFormat::kJson) {
    tools::printJson(toJson(s), out);
  } else if (format == OutputFormat::kCsv) {
    printTable(s, tools::TableFormat::kCsv, out);
  } else {
    printText(s, out);
  }
}

}  // namespace odbs::cli
