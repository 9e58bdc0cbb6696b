// The model part of the JSON description (docs/odb_json.md) into odb::ModelData.
#include "tools/odb_build/model_json.h"

#include <map>

namespace odb {
namespace {

const std::map<std::string, int> kSectionKinds = {{"other", kseO_OTHER_SECTION},
                                                  {"compositeShell", kseO_COMPOSITE_SHELL},
                                                  {"connector", kseO_CONNECTOR},
                                                  {"point", kseO_POINT},
                                                  {"homogeneousShell", kseO_HOMOGENEOUS_SHELL},
                                                  {"homogeneousSolid", kseO_HOMOGENEOUS_SOLID},
                                                  {"truss", kseO_TRUSS},
                                                  {"peg", kseO_PEG},
                                                  {"membrane", kseO_MEMBRANE},
                                                  {"gasket", kseO_GASKET},
                                                  {"cohesive", kseO_COHESIVE},
                                                  {"beam", kseO_BEAM}};

// A set's members: a plain array belongs to the entity itself; an object maps instance
// names to arrays (assembly-level sets).
SetData readSet(const std::string& name, odb_Enum::odb_SetTypeEnum type, const JsonAt& j,
                const std::string& owner) {
  SetData s;
  s.name = name;
  s.type = type;
  auto add = [&](const std::string& instance, const JsonAt& members) {
    if (type != odb_Enum::SURFACE_SET) return s.addMembers(instance, members.ints());
    std::vector<int32_t> labels, faces;
    for (size_t i = 0; i < members.size(); ++i) {
      JsonAt pair = members[i];
      if (pair.size() != 2) pair.fail("expected [element label, face number]");
      labels.push_back(pair[0].i32());
      faces.push_back(pair[1].i32());
    }
    s.addMembers(instance, labels, faces);
  };
  if (j.value().is_object()) {
    for (const auto& [instance, members] : j.members()) add(instance, members);
  } else {
    add(owner, j);
  }
  return s;
}

std::vector<SetData> readSets(const JsonAt& e, const std::string& key,
                              odb_Enum::odb_SetTypeEnum type, const std::string& owner) {
  std::vector<SetData> out;
  if (!e.has(key)) return out;
  for (const auto& [name, members] : e[key].members())
    out.push_back(readSet(name, type, members, owner));
  return out;
}

const SetData& findRegion(const EntityData& d, const JsonAt& ref) {
  std::string name = ref.str();
  for (const auto* list : {&d.elementSets, &d.surfaces, &d.nodeSets})
    for (const auto& s : *list)
      if (s.name == name) return s;
  ref.fail("no set \"" + name + "\" in \"" + d.name + "\"");
}

EntityData readEntity(const JsonAt& e, const std::string& name, const ModelData& m) {
  EntityData d;
  d.name = name;
  if (e.has("nodes")) {
    JsonAt nodes = e["nodes"];
    for (size_t i = 0; i < nodes.size(); ++i) {
      JsonAt n = nodes[i];
      size_t k = n.size();
      if (k < 2 || k > 4) n.fail("expected [label, x] to [label, x, y, z]");
      if (i == 0) d.nodes.dimension = static_cast<int>(k - 1);
      if (static_cast<int>(k - 1) != d.nodes.dimension)
        n.fail("all nodes need the same number of coordinates");
      d.nodes.labels.push_back(n[0].i32());
      for (size_t c = 1; c < k; ++c) d.nodes.coordinates.push_back(static_cast<float>(n[c].num()));
    }
  }
  if (e.has("elements")) {
    JsonAt els = e["elements"];
    for (size_t i = 0; i < els.size(); ++i) {
      JsonAt el = els[i];
      int32_t category = -1;
      if (el.has("sectionCategory")) {
        std::string c = el["sectionCategory"].str();
        for (size_t k = 0; k < m.sectionCategories.size(); ++k)
          if (m.sectionCategories[k].name == c) category = static_cast<int32_t>(k);
        if (category < 0) el["sectionCategory"].fail("unknown section category \"" + c + "\"");
      }
      std::vector<int32_t> nodes = el["nodes"].ints();
      d.elements.add(el["type"].str(), el["label"].i32(), nodes.data(),
                     static_cast<int>(nodes.size()), category);
    }
  }
  d.nodeSets = readSets(e, "nodeSets", odb_Enum::NODE_SET, name);
  d.elementSets = readSets(e, "elementSets", odb_Enum::ELEMENT_SET, name);
  d.surfaces = readSets(e, "surfaces", odb_Enum::SURFACE_SET, name);
  if (e.has("sectionAssignments")) {
    JsonAt list = e["sectionAssignments"];
    for (size_t i = 0; i < list.size(); ++i)
      d.sectionAssignments.push_back({list[i]["section"].str(), findRegion(d, list[i]["region"])});
  }
  return d;
}

SectionData readSection(const JsonAt& j) {
  SectionData s;
  s.name = j["name"].str();
  std::string kind = j["kind"].str();
  auto it = kSectionKinds.find(kind);
  if (it == kSectionKinds.end()) j["kind"].fail("unknown section kind \"" + kind + "\"");
  s.kind = it->second;
  s.material = j.str("material", "");
  s.thickness = static_cast<float>(j.num("thickness", 0));
  s.mass = static_cast<float>(j.num("mass", 0));
  if (j.has("layers")) {
    JsonAt layers = j["layers"];
    for (size_t i = 0; i < layers.size(); ++i) {
      JsonAt l = layers[i];
      LayerData ld{l["material"].str(), static_cast<float>(l["thickness"].num()), {}};
      if (l.has("orientAngle")) {
        JsonAt a = l["orientAngle"];
        ld.orientAngle = a.value().is_string() ? odb_Union::ofString(a.str())
                         : a.value().is_number_integer()
                             ? odb_Union::ofInt(a.i32())
                             : odb_Union::ofFloat(static_cast<float>(a.num()));
      }
      s.layers.push_back(ld);
    }
  }
  return s;
}

MaterialData readMaterial(const JsonAt& j) {
  MaterialData m;
  m.name = j["name"].str();
  if ((m.hasDensity = j.has("density"))) m.density = j["density"].table();
  if ((m.hasElastic = j.has("elastic"))) {
    JsonAt e = j["elastic"];
    m.elasticType = e.str("type", "ISOTROPIC");
    m.elastic = e["table"].table();
    if ((m.hasFailStrain = e.has("failStrain"))) m.failStrain = e["failStrain"].table();
    if ((m.hasFailStress = e.has("failStress"))) m.failStress = e["failStress"].table();
  }
  if ((m.hasAcousticMedium = j.has("acousticMedium")))
    m.acousticMedium = j["acousticMedium"].table();
  return m;
}

}  // namespace

ModelData readModelJson(const JsonAt& root) {
  if (!root.value().is_object()) root.fail("expected an object");
  ModelData m;
  m.name = root.str("name", "");
  m.title = root.str("title", "");
  m.description = root.str("description", "");
  m.analysisCode = root.i32("analysisCode", odb_Enum::IMPLICIT);
  if (root.has("annotations"))
    for (const auto& [k, v] : root["annotations"].members()) m.annotations.emplace_back(k, v.str());
  if (root.has("sectionCategories")) {
    JsonAt cats = root["sectionCategories"];
    for (size_t i = 0; i < cats.size(); ++i) {
      SectionCategoryData c{cats[i]["name"].str(), cats[i].str("description", ""), {}};
      if (cats[i].has("sectionPoints")) {
        JsonAt sp = cats[i]["sectionPoints"];
        for (size_t k = 0; k < sp.size(); ++k)
          c.sectionPoints.push_back({sp[k][0].i32(), sp[k][1].str()});
      }
      for (const auto& other : m.sectionCategories)
        if (other.name == c.name) cats[i]["name"].fail("duplicate section category");
      m.sectionCategories.push_back(c);
    }
  }
  if (root.has("sections"))
    for (size_t i = 0; i < root["sections"].size(); ++i)
      m.sections.push_back(readSection(root["sections"][i]));
  if (root.has("materials"))
    for (size_t i = 0; i < root["materials"].size(); ++i)
      m.materials.push_back(readMaterial(root["materials"][i]));
  if (root.has("instances")) {
    JsonAt list = root["instances"];
    for (size_t i = 0; i < list.size(); ++i)
      m.instances.push_back(readEntity(list[i], list[i]["name"].str(), m));
  }
  if (root.has("assembly")) {
    JsonAt a = root["assembly"];
    m.assembly = readEntity(a, a.str("name", "ASSEMBLY"), m);
    if (a.has("connectorOrientations")) {
      JsonAt list = a["connectorOrientations"];
      for (size_t i = 0; i < list.size(); ++i) {
        ConnectorOrientationData c;
        c.region = findRegion(m.assembly, list[i]["region"]);
        if ((c.hasCsys1 = list[i].has("csys1"))) c.csys1 = list[i]["csys1"].str();
        if ((c.hasCsys2 = list[i].has("csys2"))) c.csys2 = list[i]["csys2"].str();
        m.connectorOrientations.push_back(c);
      }
    }
  } else {
    m.assembly.name = "ASSEMBLY";
  }
  return m;
}

}  // namespace odb
