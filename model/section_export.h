// The section phase of the model export: numbers every section, sends a section record
// for each section that is assigned to elements, and builds the element section maps that
// the element records read.
#pragma once

#include <map>
#include <string>

#include "context/reply_channel.h"
#include "model/element_section_map.h"
#include "model/section_numbering.h"
#include "odb/odb.h"

namespace odbs {

struct ModelSections {
  SectionTables tables;
  std::map<std::string, ElementSectionMap> byInstance;  // owner instance name -> map
  ElementSectionMap assembly;  // sections assigned only at the root assembly

  // The map for the elements of an instance: its own when it owns a section; otherwise an
  // empty one in a multi-instance model and the assembly's in a single-instance model.
  const ElementSectionMap& forInstance(const std::string& name, bool multiInstance) const;

 private:
  ElementSectionMap none_;
};

// Numbers the sections of odb and appends, for each section in container order whose first
// assignment region holds elements: (H owner,) the section record, (I) -- the H and I
// records only when multiInstance. The owner is the first instance that assigns the
// section, else the root assembly. Empties the pending buffer first and flushes it at the
// end. Every map returned is frozen. Throws what the database throws.
ModelSections sendSections(odb_Odb& odb, bool multiInstance, ReplyChannel& out);

}  // namespace odbs
