// Plain data of the model side of a database: what the writer takes and what the reader
// loads. Arrays are structure-of-arrays so that each is stored and read as one dataset.
// None of these types checks its invariants; odb::Writer does before it writes, and the
// reader does on everything it loads.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "odb/containers.h"
#include "odb/enums.h"

namespace odb {

// Nodes of one instance (or of the root assembly): labels[i] has the coordinates
// coordinates[i*dimension .. i*dimension+dimension-1].
struct NodeData {
  std::vector<int32_t> labels;
  std::vector<float> coordinates;
  int dimension = 3;
};

// Elements of one instance. Element i has type typeNames[typeIndex[i]], the nodes
// connectivity[offsets[i] .. offsets[i+1]-1] and the section category categoryIndex[i]
// (an index into the database's section categories; -1 for none).
struct ElementData {
  std::vector<int32_t> labels;
  std::vector<std::string> typeNames;
  std::vector<int32_t> typeIndex;
  std::vector<int64_t> offsets{0};
  std::vector<int32_t> connectivity;
  std::vector<int32_t> categoryIndex;

  // Appends one element. typeName is entered in typeNames on first use.
  void add(const std::string& typeName, int32_t label, const int32_t* nodes, int count,
           int32_t category);
  size_t size() const { return labels.size(); }
};

// A node set, element set or surface. Members are grouped by instance: the members of
// instanceNames[k] are the next counts[k] entries of labels (and, for a surface, of faces:
// one odb_ElementFaceEnum value per element label). An instance-level set has one group,
// named after its instance.
struct SetData {
  std::string name;
  odb_Enum::odb_SetTypeEnum type = odb_Enum::NODE_SET;
  std::vector<std::string> instanceNames;
  std::vector<int64_t> counts;
  std::vector<int32_t> labels;
  std::vector<int32_t> faces;

  // Appends the members that lie in one instance.
  void addMembers(const std::string& instance, const std::vector<int32_t>& memberLabels,
                  const std::vector<int32_t>& memberFaces = {});
};

// The sets of one kind of an entity as the file stores them, every member in one array,
// read in one go. Set i has the member groups [groupOffsets[i], groupOffsets[i+1]); group g
// lists instance instances[g] and the counts[g] labels (and, for surfaces, faces) from
// starts[g]. byKey lists the sets in the order of the entity's set repository (by name,
// byte-wise, the last of equal names) with what a walk over all of them needs first, so
// that it reads one array in order.
struct SetListData {
  struct Keyed {
    uint32_t index = 0;  // the set's place in names, types and groupOffsets
    // Whether the set is of the list's kind and every range of it lies within the arrays;
    // a set that is not sound has no members to read (through odb_Set its members throw).
    bool sound = false;
    // Whether its member groups lie one after another: then its members, all instances
    // together, are the count labels (and faces) from start.
    bool together = false;
    int64_t start = 0, count = 0;
  };
  std::string path;  // the list's group, for messages
  std::vector<std::string> names, instances;
  std::vector<int32_t> types, labels, faces;
  std::vector<int64_t> groupOffsets, starts, counts;
  std::vector<Keyed> byKey;
};

struct SectionPointData {
  int32_t number = 0;
  std::string description;
};

struct SectionCategoryData {
  std::string name;
  std::string description;
  std::vector<SectionPointData> sectionPoints;
};

struct LayerData {
  std::string material;
  float thickness = 0.f;
  odb_Union orientAngle;
};

// A section of any class; kind is a kseO_SectionKind. material serves the homogeneous
// classes, thickness the homogeneous shell, mass the point section, layers the composite
// shell.
struct SectionData {
  std::string name;
  int32_t kind = kseO_OTHER_SECTION;
  std::string material;
  float thickness = 0.f;
  float mass = 0.f;
  std::vector<LayerData> layers;
};

using TableData = std::vector<std::vector<float>>;

// A material; each behaviour is present when its flag is set. Tables are rows of floats.
struct MaterialData {
  std::string name;
  bool hasDensity = false;
  TableData density;
  bool hasElastic = false;
  std::string elasticType;
  TableData elastic;
  bool hasFailStrain = false;
  TableData failStrain;
  bool hasFailStress = false;
  TableData failStress;
  bool hasAcousticMedium = false;
  TableData acousticMedium;
};

// What a section assignment says beyond its section and region, where the source gives it:
// the offset of the reference surface or axis and the thickness.
struct SectionPlacement {
  bool hasOffset = false;
  float offset1 = 0.f;  // shells: from the mid-surface in thicknesses; beams: along axis 1
  float offset2 = 0.f;  // beams: along axis 2
  bool hasThickness = false;
  float thickness = 0.f;
};

struct SectionAssignmentData {
  std::string sectionName;
  SetData region;
  SectionPlacement placement;
};

struct ConnectorOrientationData {
  SetData region;
  bool hasCsys1 = false;
  std::string csys1;
  bool hasCsys2 = false;
  std::string csys2;
};

// What couples the two regions of a region pair.
enum RegionPairKind : int32_t { kContactPair = 1, kTie = 2 };

// Two regions that the solver couples (a contact pair, a tie): the names of its first
// (slave) and second (master) surface or set, as the root assembly or an instance holds them.
struct RegionPairData {
  std::string name;
  int32_t kind = kContactPair;  // a RegionPairKind
  std::string first, second;
};

// One part instance, or the root assembly's own nodes, elements, sets and assignments.
struct EntityData {
  std::string name;
  NodeData nodes;
  ElementData elements;
  std::vector<SetData> nodeSets, elementSets, surfaces;
  std::vector<SectionAssignmentData> sectionAssignments;
};

// The whole model side of a database.
struct ModelData {
  std::string name;  // the database name; the file name without folder when empty
  std::string title;
  std::string description;
  int32_t analysisCode = odb_Enum::IMPLICIT;
  std::vector<std::pair<std::string, std::string>> annotations;  // key, text
  EntityData assembly;                                           // name "ASSEMBLY" by default
  std::vector<EntityData> instances;
  std::vector<SectionCategoryData> sectionCategories;
  std::vector<SectionData> sections;
  std::vector<MaterialData> materials;
  std::vector<ConnectorOrientationData> connectorOrientations;
  std::vector<RegionPairData> regionPairs;  // in the order the solver defined them
};

}  // namespace odb
