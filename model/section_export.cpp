#include "model/section_export.h"

#include <memory>

#include "model/section_record.h"

namespace odbs {

namespace {

// Who assigns each section, and the region of its first assignment.
struct Assignments {
  std::map<std::string, std::string> owner;      // section -> first instance assigning it
  std::map<std::string, const odb_Set*> region;  // section -> region of first assignment
};

Assignments collectAssignments(const odb_Assembly& assembly) {
  Assignments a;
  for (odb_InstanceRepositoryIT it(assembly.instances()); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    for (const odb_SectionAssignment& sa : instance.sectionAssignments()) {
      a.owner.emplace(sa.sectionName(), instance.name());
      a.region.emplace(sa.sectionName(), &sa.region());
    }
  }
  for (const odb_SectionAssignment& sa : assembly.sectionAssignments()) {
    a.region.emplace(sa.sectionName(), &sa.region());
  }
  return a;
}

}  // namespace

const ElementSectionMap& ModelSections::forInstance(const std::string& name,
                                                    bool multiInstance) const {
  auto it = byInstance.find(name);
  if (it != byInstance.end()) return it->second;
  return multiInstance ? none_ : assembly;
}

ModelSections collectSections(odb_Odb& odb) {
  const auto& api = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  const kseO_SectionContainer& sections = api.sections();
  const odb_Assembly& assembly = odb.rootAssembly();
  ModelSections result;
  result.tables = numberSections(sections, odb.sectionCategories());
  Assignments assigned = collectAssignments(assembly);

  for (kseO_SectionContainerIT it(sections); !it.isDone(); it.next()) {
    const odb_Section& section = it.currentValue();
    auto region = assigned.region.find(section.name());
    if (region == assigned.region.end()) continue;
    odb_View<int> members = region->second->elements();
    if (members.empty()) continue;

    auto owner = assigned.owner.find(section.name());
    bool ownedByInstance = owner != assigned.owner.end();
    const std::string& ownerName = ownedByInstance ? owner->second : assembly.name();
    ElementSectionMap& map = ownedByInstance ? result.byInstance[ownerName] : result.assembly;
    int32_t number = result.tables.numberOf(section.name());
    result.assigned.push_back({&section, number, ownerName});
    map.insert(members.data(), size_t(members.size()), number);
  }
  for (auto& entry : result.byInstance) entry.second.freeze();
  result.assembly.freeze();
  return result;
}

void queueSections(odb_Odb& odb, const ModelSections& sections, bool multiInstance,
                   const std::function<bool(const AssignedSection&)>& send, ReplyChannel& out) {
  const odb_Assembly& assembly = odb.rootAssembly();
  SectionRecordContext recordContext{assembly, odb.sectionCategories(), sections.tables};
  out.discardPending();
  for (const AssignedSection& a : sections.assigned) {
    if (send && !send(a)) continue;
    if (multiInstance) out.queueText(a.owner, kRecInstanceHeader);
    queueSectionRecord(*a.section, a.number, recordContext, out);
    if (multiInstance) out.queueFixed(kRecBlockEnd, 0);
  }
  out.flush();
}

namespace {

// The per-database table that keeps the collected sections.
struct CollectedSections {
  std::unique_ptr<const ModelSections> sections;
};

}  // namespace

const ModelSections& collectedSections(OdbContext& ctx) {
  CollectedSections& kept = ctx.tables.get<CollectedSections>();
  if (!kept.sections)
    kept.sections = std::make_unique<const ModelSections>(collectSections(*ctx.odb));
  return *kept.sections;
}

const ModelSections& sendSections(OdbContext& ctx, bool multiInstance, ReplyChannel& out) {
  const ModelSections& result = collectedSections(ctx);
  queueSections(*ctx.odb, result, multiInstance, {}, out);
  return result;
}

}  // namespace odbs
