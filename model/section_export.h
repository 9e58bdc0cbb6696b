// The section phase of the model export: numbers every section, sends a section record
// for each section that is assigned to elements, and builds the element section maps that
// the element records read.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "context/odb_context.h"
#include "context/reply_channel.h"
#include "model/element_section_map.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

// A section that the model export sends: the first assignment's region holds elements.
struct AssignedSection {
  const odb_Section* section;  // owned by the database
  int32_t number;
  std::string owner;  // first instance assigning it, else the root assembly's name
};

struct ModelSections {
  SectionTables tables;
  std::vector<AssignedSection> assigned;                // in section container order
  std::map<std::string, ElementSectionMap> byInstance;  // owner instance name -> map
  ElementSectionMap assembly;  // sections assigned only at the root assembly

  // The map for the elements of an instance: its own when it owns a section; otherwise an
  // empty one in a multi-instance model and the assembly's in a single-instance model.
  const ElementSectionMap& forInstance(const std::string& name, bool multiInstance) const;

 private:
  ElementSectionMap none_;
};

// Numbers the sections of odb and builds, for each section in container order whose first
// assignment region holds elements, its entry in assigned and the element section maps of
// its owner (the first instance that assigns the section, else the root assembly). Every
// map returned is frozen. Sends nothing; throws what the database throws.
ModelSections collectSections(odb_Odb& odb);

// collectSections of ctx's database, made on the first call for that database and kept in
// its tables for the later ones (the database does not change while it is open). Throws
// what collectSections throws, keeping nothing.
const ModelSections& collectedSections(OdbContext& ctx);

// Appends, for each section of sections.assigned that send accepts (every one when send is
// empty): (H owner,) the section record, (I) -- the H and I records only when
// multiInstance. Empties the pending buffer first and flushes it at the end. Throws
// std::runtime_error when a section is not of the class its type names.
void queueSections(odb_Odb& odb, const ModelSections& sections, bool multiInstance,
                   const std::function<bool(const AssignedSection&)>& send, ReplyChannel& out);

// collectedSections, then queueSections of every assigned section: the section phase of g.
const ModelSections& sendSections(OdbContext& ctx, bool multiInstance, ReplyChannel& out);

}  // namespace odbs
