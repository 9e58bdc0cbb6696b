// The model part of the JSON description (docs/odb_json.md) into odb::ModelData.
#include "tools/odb_build/model_json.h"

#include <map>
#include <unordered_set>

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

// The labels of one entity, for checking references to its nodes and elements.
struct Labels {
  std::unordered_set<int32_t> nodes, elements;
};

Labels labelsOf(const EntityData& e) {
  return {{e.nodes.labels.begin(), e.nodes.labels.end()},
          {e.elements.labels.begin(), e.elements.labels.end()}};
}

// The entities a set of owner may hold members of: the owner itself and, for the root
// assembly, every instance.
struct SetScope {
  const EntityData& owner;
  const Labels& ownerLabels;
  const ModelData* model;  // null for an instance's own sets
  std::map<std::string, Labels> instanceLabels;

  const Labels* find(const std::string& name) {
    if (name == owner.name) return &ownerLabels;
    if (!model) return nullptr;
    auto it = instanceLabels.find(name);
    if (it != instanceLabels.end()) return &it->second;
    for (const auto& i : model->instances)
      if (i.name == name) return &(instanceLabels[name] = labelsOf(i));
    return nullptr;
  }
};

// A set's members: a plain array belongs to the entity itself; an object maps instance
// names to arrays (assembly-level sets). Every member must exist in its instance.
SetData readSet(const std::string& name, odb_Enum::odb_SetTypeEnum type, const JsonAt& j,
                SetScope& scope) {
  SetData s;
  s.name = name;
  s.type = type;
  auto add = [&](const std::string& instance, const JsonAt& members) {
    const Labels* labels = scope.find(instance);
    if (!labels)
      members.fail("no instance \"" + instance + "\" for the members of a set of \"" +
                   scope.owner.name + "\"");
    const std::unordered_set<int32_t>& known =
        type == odb_Enum::NODE_SET ? labels->nodes : labels->elements;
    std::vector<int32_t> memberLabels, faces;
    for (size_t i = 0; i < members.size(); ++i) {
      JsonAt m = members[i];
      if (type == odb_Enum::SURFACE_SET) {
        if (m.size() != 2) m.fail("expected [element label, face number]");
        memberLabels.push_back(m[0].i32());
        faces.push_back(m[1].i32());
        if (faces.back() < 0 || faces.back() > 15) m[1].fail("unknown face number");
      } else {
        memberLabels.push_back(m.i32());
      }
      if (!known.count(memberLabels.back()))
        m.fail(std::string("no ") + (type == odb_Enum::NODE_SET ? "node " : "element ") +
               std::to_string(memberLabels.back()) + " in \"" + instance + "\"");
    }
    s.addMembers(instance, memberLabels, faces);
  };
  if (j.value().is_object()) {
    for (const auto& [instance, members] : j.members()) add(instance, members);
  } else {
    add(scope.owner.name, j);
  }
  return s;
}

std::vector<SetData> readSets(const JsonAt& e, const std::string& key,
                              odb_Enum::odb_SetTypeEnum type, SetScope& scope) {
  std::vector<SetData> out;
  if (!e.has(key)) return out;
  for (const auto& [name, members] : e[key].members())
    out.push_back(readSet(name, type, members, scope));
  return out;
}

// A label of a node or element: positive and not seen before in its entity.
int32_t newLabel(const JsonAt& j, std::unordered_set<int32_t>& seen, const char* kind) {
  int32_t label = j.i32();
  if (label <= 0) j.fail(std::string(kind) + " labels must be positive");
  if (!seen.insert(label).second)
    j.fail("duplicate " + std::string(kind) + " label " + std::to_string(label));
  return label;
}

bool inAnyInstance(const ModelData& m, int32_t node) {
  for (const auto& i : m.instances)
    for (int32_t label : i.nodes.labels)
      if (label == node) return true;
  return false;
}

const SetData& findRegion(const EntityData& d, const JsonAt& ref) {
  std::string name = ref.str();
  for (const auto* list : {&d.elementSets, &d.surfaces, &d.nodeSets})
    for (const auto& s : *list)
      if (s.name == name) return s;
  ref.fail("no set \"" + name + "\" in \"" + d.name + "\"");
}

// Region pairs of the assembly: {"name", "kind": "contact" | "tie", "first", "second"}.
std::vector<RegionPairData> readRegionPairs(const JsonAt& list) {
  std::vector<RegionPairData> pairs;
  for (size_t i = 0; i < list.size(); ++i) {
    const JsonAt p = list[i];
    p.allowOnly({"name", "kind", "first", "second"});
    RegionPairData d;
    d.name = p["name"].str();
    std::string kind = p.str("kind", "contact");
    if (kind == "contact")
      d.kind = kContactPair;
    else if (kind == "tie")
      d.kind = kTie;
    else
      p["kind"].fail("kind must be \"contact\" or \"tie\"");
    d.first = p["first"].str();
    d.second = p["second"].str();
    for (const auto& other : pairs)
      if (other.name == d.name) p["name"].fail("duplicate region pair '" + d.name + "'");
    pairs.push_back(d);
  }
  return pairs;
}

// Reads an instance (assembly false) or the root assembly, whose elements and sets may
// also refer to the instances' nodes and elements.
EntityData readEntity(const JsonAt& e, const std::string& name, const ModelData& m, bool assembly) {
  if (assembly)
    e.allowOnly({"name", "nodes", "elements", "nodeSets", "elementSets", "surfaces",
                 "sectionAssignments", "connectorOrientations", "regionPairs"});
  else
    e.allowOnly(
        {"name", "nodes", "elements", "nodeSets", "elementSets", "surfaces", "sectionAssignments"});
  EntityData d;
  d.name = name;
  std::unordered_set<int32_t> nodeLabels, elementLabels;
  if (e.has("nodes")) {
    JsonAt nodes = e["nodes"];
    for (size_t i = 0; i < nodes.size(); ++i) {
      JsonAt n = nodes[i];
      size_t k = n.size();
      if (k < 2 || k > 4) n.fail("expected [label, x] to [label, x, y, z]");
      if (i == 0) d.nodes.dimension = static_cast<int>(k - 1);
      if (static_cast<int>(k - 1) != d.nodes.dimension)
        n.fail("all nodes need the same number of coordinates");
      d.nodes.labels.push_back(newLabel(n[0], nodeLabels, "node"));
      for (size_t c = 1; c < k; ++c) d.nodes.coordinates.push_back(static_cast<float>(n[c].num()));
    }
  }
  if (e.has("elements")) {
    JsonAt els = e["elements"];
    for (size_t i = 0; i < els.size(); ++i) {
      JsonAt el = els[i];
      el.allowOnly({"type", "label", "nodes", "sectionCategory"});
      int32_t category = -1;
      if (el.has("sectionCategory")) {
        std::string c = el["sectionCategory"].str();
        for (size_t k = 0; k < m.sectionCategories.size(); ++k)
          if (m.sectionCategories[k].name == c) category = static_cast<int32_t>(k);
        if (category < 0) el["sectionCategory"].fail("unknown section category \"" + c + "\"");
      }
      std::vector<int32_t> nodes = el["nodes"].ints();
      for (size_t k = 0; k < nodes.size(); ++k)
        if (!nodeLabels.count(nodes[k]) && !(assembly && inAnyInstance(m, nodes[k])))
          el["nodes"][k].fail("no node " + std::to_string(nodes[k]) + " in \"" + name + "\"" +
                              (assembly ? " or its instances" : ""));
      d.elements.add(el["type"].str(), newLabel(el["label"], elementLabels, "element"),
                     nodes.data(), static_cast<int>(nodes.size()), category);
    }
  }
  Labels own{std::move(nodeLabels), std::move(elementLabels)};
  SetScope scope{d, own, assembly ? &m : nullptr, {}};
  d.nodeSets = readSets(e, "nodeSets", odb_Enum::NODE_SET, scope);
  d.elementSets = readSets(e, "elementSets", odb_Enum::ELEMENT_SET, scope);
  d.surfaces = readSets(e, "surfaces", odb_Enum::SURFACE_SET, scope);
  if (e.has("sectionAssignments")) {
    JsonAt list = e["sectionAssignments"];
    for (size_t i = 0; i < list.size(); ++i) {
      JsonAt a = list[i];
      a.allowOnly({"section", "region", "offset", "thickness"});
      d.sectionAssignments.push_back({a["section"].str(), findRegion(d, a["region"]), {}});
      SectionPlacement& p = d.sectionAssignments.back().placement;
      if (a.has("offset")) {
        std::vector<float> o = a["offset"].floats();
        if (o.empty() || o.size() > 2) a["offset"].fail("expected [offset] or [offset1, offset2]");
        p.hasOffset = true;
        p.offset1 = o[0];
        p.offset2 = o.size() > 1 ? o[1] : 0.f;
      }
      if (a.has("thickness")) {
        p.hasThickness = true;
        p.thickness = static_cast<float>(a["thickness"].num());
      }
    }
  }
  return d;
}

SectionData readSection(const JsonAt& j) {
  j.allowOnly({"name", "kind", "material", "thickness", "mass", "layers"});
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
      l.allowOnly({"material", "thickness", "orientAngle"});
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
  j.allowOnly({"name", "density", "elastic", "acousticMedium"});
  MaterialData m;
  m.name = j["name"].str();
  if ((m.hasDensity = j.has("density"))) m.density = j["density"].table();
  if ((m.hasElastic = j.has("elastic"))) {
    JsonAt e = j["elastic"];
    e.allowOnly({"type", "table", "failStrain", "failStress"});
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
  root.allowOnly({"name", "title", "description", "analysisCode", "annotations",
                  "sectionCategories", "sections", "materials", "instances", "assembly", "steps"});
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
      cats[i].allowOnly({"name", "description", "sectionPoints"});
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
    for (size_t i = 0; i < list.size(); ++i) {
      std::string name = list[i]["name"].str();
      for (const auto& other : m.instances)
        if (other.name == name) list[i]["name"].fail("duplicate instance '" + name + "'");
      m.instances.push_back(readEntity(list[i], name, m, false));
    }
  }
  if (root.has("assembly")) {
    JsonAt a = root["assembly"];
    m.assembly = readEntity(a, a.str("name", "ASSEMBLY"), m, true);
    if (a.has("connectorOrientations")) {
      JsonAt list = a["connectorOrientations"];
      for (size_t i = 0; i < list.size(); ++i) {
        list[i].allowOnly({"region", "csys1", "csys2"});
        ConnectorOrientationData c;
        c.region = findRegion(m.assembly, list[i]["region"]);
        if ((c.hasCsys1 = list[i].has("csys1"))) c.csys1 = list[i]["csys1"].str();
        if ((c.hasCsys2 = list[i].has("csys2"))) c.csys2 = list[i]["csys2"].str();
        m.connectorOrientations.push_back(c);
      }
    }
    if (a.has("regionPairs")) m.regionPairs = readRegionPairs(a["regionPairs"]);
  } else {
    m.assembly.name = "ASSEMBLY";
  }
  return m;
}

}  // namespace odb
