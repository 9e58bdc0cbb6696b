// exportSectionAssignments: command is, which region of each instance carries which
// section, with the section numbers of the model export.
#include <algorithm>
#include <exception>

#include "model/model_header.h"
#include "model/other_exports.h"
#include "model/section_numbering.h"
#include "model/set_records.h"
#include "wire/section_assignment_coding.h"

namespace odbs {

namespace {

void queueAssignment(const odb_SectionAssignment& a, const SectionTables& tables,
                     ReplyChannel& out) {
  const odb::SectionPlacement& p = a.placement();
  SectionAssignmentBody body;
  body.number = static_cast<uint32_t>(tables.numberOf(a.sectionName()));
  body.name = shortSectionName(a.sectionName());
  // A name that would not fit one record is cut, as counted texts are.
  const size_t room = kRecordBufferSize - 1 - sectionAssignmentSize(SectionAssignmentBody{});
  body.name.resize(std::min(body.name.size(), room));
  body.flags =
      (p.hasOffset ? kAssignmentHasOffset : 0) | (p.hasThickness ? kAssignmentHasThickness : 0);
  if (p.hasOffset) {
    body.offset1 = p.offset1;
    body.offset2 = p.offset2;
  }
  if (p.hasThickness) body.thickness = p.thickness;
  putSectionAssignment(out.queueFixed(kRecSectionAssignment, sectionAssignmentSize(body)), body);
}

}  // namespace

void exportSectionAssignments(OdbContext& ctx, ReplyChannel& out) {
  odb_Odb& odb = *ctx.odb;
  sendModelHeader(odb, out);
  const auto& api = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  const SectionTables tables = numberSections(api.sections(), odb.sectionCategories());
  const odb_Assembly& assembly = odb.rootAssembly();
  const bool multi = assembly.instances().size() > 1;

  out.discardPending();
  for (odb_InstanceRepositoryIT it(assembly.instances()); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    if (multi) out.queueText(instance.name(), kRecInstanceHeader);
    for (const odb_SectionAssignment& a : instance.sectionAssignments()) {
      queueAssignment(a, tables, out);
      queueSet(a.region(), nullptr, multi, out);
    }
    if (multi) out.queueFixed(kRecBlockEnd, 0);
  }
  for (const odb_SectionAssignment& a : assembly.sectionAssignments()) {
    queueAssignment(a, tables, out);
    odb_SequenceString spans;
    try {
      spans = a.region().instanceNames();
    } catch (const std::exception&) {
      continue;  // members that cannot be read: the region lies in no instance
    }
    for (const std::string& instance : spans) queueSet(a.region(), &instance, multi, out);
  }
  out.flush();
}

}  // namespace odbs
