#include "tools/odb_build/results_json.h"

#include <algorithm>
#include <map>
#include <set>

namespace odb {
namespace {

const std::map<std::string, int> kPositions = {{"UNDEFINED_POSITION", 0},
                                               {"NODAL", 1},
                                               {"ELEMENT_NODAL", 2},
                                               {"INTEGRATION_POINT", 3},
                                               {"CENTROID", 4},
                                               {"ELEMENT_FACE", 5},
                                               {"ELEMENT_FACE_INTEGRATION_POINT", 6},
                                               {"SURFACE_INTEGRATION_POINT", 7},
                                               {"WHOLE_ELEMENT", 8},
                                               {"WHOLE_REGION", 9},
                                               {"WHOLE_PART_INSTANCE", 10},
                                               {"WHOLE_MODEL", 11},
                                               {"GENERAL_PARTICLE", 12},
                                               {"SURFACE_NODAL", 13},
                                               {"SURFACE_FACET", 14},
                                               {"ELEMENT_EDGE", 15}};
const std::map<std::string, int> kTypes = {{"UNKNOWN_DATATYPE", 0}, {"BOOLEAN", 1},
                                           {"SCALAR", 2},           {"VECTOR", 3},
                                           {"MATRIX", 4},           {"TENSOR_3D_FULL", 5},
                                           {"TENSOR_3D_PLANAR", 6}, {"TENSOR_3D_SURFACE", 7},
                                           {"TENSOR_2D_PLANAR", 8}, {"TENSOR_2D_SURFACE", 9}};
const std::map<std::string, int> kDomains = {
    {"TIME", 0}, {"FREQUENCY", 1}, {"MODAL", 2}, {"ARC_LENGTH", 3}};

// An enumeration member given by number or by name.
int32_t enumOf(const JsonAt& j, const std::string& key, const std::map<std::string, int>& names,
               int32_t fallback) {
  if (!j.has(key)) return fallback;
  JsonAt v = j[key];
  if (v.value().is_number_integer()) {
    int32_t n = v.i32();
    for (const auto& [name, value] : names)
      if (value == n) return n;
    v.fail("unknown value " + std::to_string(n));
  }
  auto it = names.find(v.str());
  if (it == names.end()) v.fail("unknown name \"" + v.str() + "\"");
  return it->second;
}

SectionPointData sectionPointOf(const JsonAt& j, const std::string& key) {
  if (!j.has(key)) return {-1, ""};
  JsonAt sp = j[key];
  return {sp[0].i32(), sp.size() > 1 ? sp[1].str() : ""};
}

// Rows of equal width, flattened; width 0 for no rows.
template <typename T>
std::vector<T> rowsOf(const JsonAt& j, int32_t* width) {
  std::vector<T> out;
  for (size_t r = 0; r < j.size(); ++r) {
    JsonAt row = j[r];
    if (r == 0) *width = static_cast<int32_t>(row.size());
    if (static_cast<int32_t>(row.size()) != *width || *width == 0)
      row.fail("rows need the same non-zero width");
    for (size_t c = 0; c < row.size(); ++c) out.push_back(static_cast<T>(row[c].num()));
  }
  return out;
}

FieldBlockData readBlock(const JsonAt& j, const FieldOutputData& field) {
  j.allowOnly({"instance", "elementType", "position", "type", "sectionPoint", "precision", "data",
               "conjugateData", "elementLabels", "nodeLabels", "integrationPoints",
               "numberOfElements", "localCsys"});
  FieldBlockData b;
  b.instance = j.str("instance", "");
  b.elementType = j.str("elementType", "");
  b.position = enumOf(j, "position", kPositions, odb_Enum::NODAL);
  b.type = enumOf(j, "type", kTypes, field.type);
  b.sectionPoint = sectionPointOf(j, "sectionPoint");
  std::string precision = j.str("precision", "single");
  if (precision != "single" && precision != "double")
    j["precision"].fail("expected \"single\" or \"double\"");
  b.doublePrecision = precision == "double";
  int32_t width = 0, conjugateWidth = 0;
  if (b.doublePrecision) {
    b.dataDouble = rowsOf<double>(j["data"], &width);
    if (j.has("conjugateData"))
      b.conjugateDataDouble = rowsOf<double>(j["conjugateData"], &conjugateWidth);
  } else {
    b.data = rowsOf<float>(j["data"], &width);
    if (j.has("conjugateData"))
      b.conjugateData = rowsOf<float>(j["conjugateData"], &conjugateWidth);
  }
  b.width =
      width > 0 ? width : std::max<int32_t>(1, static_cast<int32_t>(field.componentLabels.size()));
  if (j.has("conjugateData") && conjugateWidth != width && j["conjugateData"].size() > 0)
    j["conjugateData"].fail("conjugate rows need the width of the data rows");
  const size_t rows = j["data"].size();
  for (const char* key : {"elementLabels", "nodeLabels", "integrationPoints"}) {
    if (!j.has(key)) continue;
    std::vector<int32_t> v = j[key].ints();
    if (v.size() != rows) j[key].fail("expected one entry per data row");
    (key[0] == 'e' ? b.elementLabels : key[0] == 'n' ? b.nodeLabels : b.integrationPoints) = v;
  }
  std::set<int32_t> elements(b.elementLabels.begin(), b.elementLabels.end());
  b.numberOfElements = j.i32("numberOfElements", static_cast<int32_t>(elements.size()));
  if (j.has("localCsys")) {
    b.localCsys = rowsOf<float>(j["localCsys"], &b.csysWidth);
    if (j["localCsys"].size() != rows) j["localCsys"].fail("expected one entry per data row");
  }
  return b;
}

JsonField readField(const JsonAt& j) {
  j.allowOnly(
      {"name", "description", "type", "componentLabels", "complex", "matrixOrder", "blocks"});
  JsonField f{j.path(), {}, {}};
  FieldOutputData& h = f.header;
  h.name = j["name"].str();
  h.description = j.str("description", "");
  h.type = enumOf(j, "type", kTypes, odb_Enum::SCALAR);
  if (j.has("componentLabels"))
    for (size_t i = 0; i < j["componentLabels"].size(); ++i)
      h.componentLabels.push_back(j["componentLabels"][i].str());
  h.isComplex = j.has("complex") && j["complex"].boolean();
  h.matrixOrder = j.i32("matrixOrder", 0);
  if (j.has("blocks"))
    for (size_t i = 0; i < j["blocks"].size(); ++i)
      f.blocks.push_back(readBlock(j["blocks"][i], h));
  return f;
}

// The set named by a history point's "region": a set of the point's instance (or of the
// root assembly), searched among node sets, element sets and surfaces.
SetData regionSet(const JsonAt& ref, const std::string& instance, const ModelData& m) {
  std::string name = ref.str();
  const EntityData* owner = instance.empty() ? &m.assembly : nullptr;
  for (const auto& i : m.instances)
    if (i.name == instance) owner = &i;
  if (!owner) ref.fail("no instance \"" + instance + "\" for the region set");
  for (const auto* list : {&owner->nodeSets, &owner->elementSets, &owner->surfaces})
    for (const auto& set : *list)
      if (set.name == name) return set;
  ref.fail("no set \"" + name + "\" in \"" + owner->name + "\"");
}

HistoryPointData readPoint(const JsonAt& p, const ModelData& m) {
  p.allowOnly({"position", "node", "element", "elementType", "integrationPoint", "sectionPoint",
               "instance", "region"});
  HistoryPointData point;
  point.position = enumOf(p, "position", kPositions, odb_Enum::NODAL);
  point.nodeLabel = p.i32("node", -1);
  point.elementLabel = p.i32("element", -1);
  point.elementType = p.str("elementType", "");
  point.integrationPoint = p.i32("integrationPoint", 0);
  point.sectionPoint = sectionPointOf(p, "sectionPoint");
  point.instance = p.str("instance", "");
  if (p.has("region")) point.region = regionSet(p["region"], point.instance, m);
  return point;
}

// Samples [frame value, value, ...]: the frame values are kept in double precision.
HistoryOutputData readHistoryOutput(const JsonAt& o) {
  o.allowOnly({"name", "description", "type", "data", "conjugateData"});
  HistoryOutputData d;
  d.name = o["name"].str();
  d.description = o.str("description", "");
  d.type = enumOf(o, "type", kTypes, odb_Enum::SCALAR);
  int32_t w = 0, cw = 0;
  std::vector<double> rows = rowsOf<double>(o["data"], &w);
  if (w > 0) d.width = w;
  for (size_t i = 0; i < rows.size(); ++i) {
    if (i % size_t(d.width) == 0) d.frameValues.push_back(rows[i]);
    d.data.push_back(static_cast<float>(rows[i]));
  }
  if (o.has("conjugateData")) {
    d.conjugateData = rowsOf<float>(o["conjugateData"], &cw);
    if (d.conjugateData.size() != d.data.size())
      o["conjugateData"].fail("expected the shape of \"data\"");
  }
  return d;
}

HistoryRegionData readRegion(const JsonAt& j, const ModelData& m) {
  j.allowOnly({"name", "description", "point", "outputs"});
  HistoryRegionData r{j["name"].str(), j.str("description", ""), {}, {}};
  if (j.has("point")) r.point = readPoint(j["point"], m);
  if (j.has("outputs"))
    for (size_t i = 0; i < j["outputs"].size(); ++i)
      r.outputs.push_back(readHistoryOutput(j["outputs"][i]));
  return r;
}

}  // namespace

std::vector<JsonStep> readResultsJson(const JsonAt& root, const ModelData& m) {
  std::vector<JsonStep> steps;
  if (!root.has("steps")) return steps;
  JsonAt list = root["steps"];
  for (size_t i = 0; i < list.size(); ++i) {
    JsonAt s = list[i];
    s.allowOnly(
        {"name", "description", "procedure", "domain", "totalTime", "frames", "historyRegions"});
    JsonStep st{s.path(), {}, {}, {}};
    st.step = {s["name"].str(), s.str("description", ""), s.str("procedure", ""),
               enumOf(s, "domain", kDomains, odb_Enum::TIME), s.num("totalTime", 0)};
    if (s.has("frames")) {
      JsonAt frames = s["frames"];
      for (size_t k = 0; k < frames.size(); ++k) {
        JsonAt f = frames[k];
        f.allowOnly(
            {"index", "domain", "mode", "value", "frequency", "description", "fieldOutputs"});
        JsonFrame fr{f.path(), {}, {}};
        fr.frame = {f.i32("index", -1),    enumOf(f, "domain", kDomains, st.step.domain),
                    f.i32("mode", 0),      f.num("value", 0),
                    f.num("frequency", 0), f.str("description", "")};
        if (f.has("fieldOutputs"))
          for (size_t n = 0; n < f["fieldOutputs"].size(); ++n)
            fr.fields.push_back(readField(f["fieldOutputs"][n]));
        st.frames.push_back(std::move(fr));
      }
    }
    if (s.has("historyRegions"))
      for (size_t k = 0; k < s["historyRegions"].size(); ++k)
        st.history.push_back(readRegion(s["historyRegions"][k], m));
    steps.push_back(std::move(st));
  }
  return steps;
}

void writeResultsJson(const std::vector<JsonStep>& steps, Writer& w) {
  std::string at;
  try {
    for (const auto& s : steps) {
      at = s.path;
      w.addStep(s.step);
      for (const auto& f : s.frames) {
        at = f.path;
        w.addFrame(f.frame);
        for (const auto& field : f.fields) {
          at = field.path;
          w.addFieldOutput(field.header);
          for (size_t b = 0; b < field.blocks.size(); ++b) {
            at = field.path + "/blocks/" + std::to_string(b);
            w.addFieldBlock(field.blocks[b]);
          }
        }
      }
      at = s.path + "/historyRegions";
      for (const auto& r : s.history) w.addHistoryRegion(r);
    }
  } catch (const std::invalid_argument& e) {
    throw JsonError("at " + at + ": " + e.what());
  }
}

}  // namespace odb
