// The criteria list of irc read as a filter of the model export (command irf).
//
// Kinds: 1 instance name; 2 node set; 3 section (number v > 0, else the name in the text,
// with or without "Section-"); 4 material of the element's section; 5 element type (a text
// ending in '*' is a prefix); 6 element labels v .. atoi(text); 7 element set; 8 node labels
// v .. atoi(text). Set names are NAME (the root assembly's set, its members in each entity,
// and in a single-instance model also the instance's own set NAME) or INSTANCE.NAME (that
// instance's own set; the root assembly's name gives its set as for NAME, without an
// instance's own set). Criteria of one kind add up (or); different kinds narrow (and).
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "context/command_state.h"
#include "model/element_section_map.h"
#include "model/mesh_records.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

// What the filter keeps of one instance or of the root assembly's own mesh.
struct EntitySelection {
  Selection nodes;                 // per node of the entity's sequence
  Selection elements;              // per element of the entity's sequence
  std::set<int32_t> sectionsUsed;  // section numbers of the elements kept
};

class ModelFilter {
 public:
  // Reads criteria (kinds outside 1..8 are ignored). Borrows odb and tables for its
  // lifetime. Throws what the database throws while reading its sections.
  ModelFilter(const std::vector<Criterion>& criteria, odb_Odb& odb, const SectionTables& tables);

  // Selects the nodes and elements of entity (an instance of the root assembly, or in a
  // multi-instance model the root assembly itself), whose elements find their section
  // numbers in sections. An entity that no instance criterion names keeps nothing. Sets
  // whose members cannot be read count as empty. Throws what the database throws while
  // reading the entity's mesh.
  EntitySelection select(const odb_DiscreteEntity& entity, const ElementSectionMap& sections) const;

 private:
  struct Range {
    int32_t first, last;
  };
  bool elementPasses(const odb::ElementData& d, size_t i, int32_t section,
                     const std::unordered_set<int32_t>& setMembers,
                     const std::unordered_set<int32_t>* nodes) const;
  std::unordered_set<int32_t> setMembers(const odb_DiscreteEntity& entity,
                                         const std::vector<std::string>& names,
                                         bool nodeSets) const;

  const odb_Assembly& assembly_;
  const SectionTables& tables_;
  const bool multi_;
  std::vector<std::string> instances_, nodeSets_, types_, elementSets_;
  std::set<int32_t> sections_, materialSections_;
  bool hasSection_ = false, hasMaterial_ = false;
  std::vector<Range> elementRanges_, nodeRanges_;
};

}  // namespace odbs
