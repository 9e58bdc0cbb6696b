// The regions of the two-region field output (rn, rg): the database's region pairs, kept
// among its tables, and the look-up of a surface or set by name with the places whose
// values it takes.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "context/odb_context.h"
#include "odb/model_data.h"

class odb_Odb;

namespace odbs {

// The region pairs of one database, read on the first rn or rg and dropped with the
// database when it is closed or its file changes.
struct RegionPairTable {
  bool built = false;
  std::vector<odb::RegionPairData> pairs;  // number k is pairs[k - 1]
};

// The table of ctx's database, read from it on first use. Throws what reading throws.
const RegionPairTable& regionPairTable(OdbContext& ctx);

// The pair named name, or nullptr.
const odb::RegionPairData* pairNamed(const RegionPairTable& table, const std::string& name);

// Region kinds on the wire.
enum RegionKind : int32_t { kRegionNodeSet = 1, kRegionElementSet = 2, kRegionSurface = 3 };

// The element and node labels of a region in one instance, sorted.
struct RegionPlaces {
  std::vector<int32_t> elements, nodes;
  bool hasElement(int32_t label) const;
  bool hasNode(int32_t label) const;
};

struct Region {
  int32_t kind = kRegionNodeSet;
  std::string name;
  std::string instance;                        // empty: a set of the root assembly
  std::map<std::string, RegionPlaces> places;  // by the instance the members lie in
};

// The surface, element set or node set called name: of the root assembly first (surfaces,
// then element sets, then node sets), else of the first instance in name order that has
// one. Node places of element sets and surfaces are every node of their elements. Empty
// when no set has that name.
std::optional<Region> findRegion(const odb_Odb& odb, const std::string& name);

}  // namespace odbs
