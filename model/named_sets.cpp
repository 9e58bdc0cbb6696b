// sendNamedSets: command irs, the element sets named by the criteria list (kind 7).
//
// "NAME": the root assembly's element set NAME once per instance it spans, then, in a
// single-instance model, the instance's own element set NAME.
// "INSTANCE.NAME": that instance's own element set NAME (behind H ... I in a
// multi-instance model); when INSTANCE is the root assembly's name, the root assembly's set
// NAME as above, without an instance's own set.
#include "model/named_sets.h"

#include <exception>

#include "model/model_header.h"
#include "model/set_records.h"

namespace odbs {

namespace {

constexpr int32_t kElementSetCriterion = 7;

void queueAssemblySet(const odb_Assembly& assembly, const std::string& name, bool multi,
                      ReplyChannel& out) {
  const odb_Set* set = assembly.elementSets().find(name);
  if (set == nullptr) return;
  odb_SequenceString spans = set->instanceNames();
  for (const std::string& instance : spans) queueSet(*set, &instance, multi, out);
}

void queueUndottedName(const odb_Assembly& assembly, const std::string& name, bool multi,
                       ReplyChannel& out) {
  queueAssemblySet(assembly, name, multi, out);
  const odb_InstanceRepository& instances = assembly.instances();
  if (multi || instances.size() != 1) return;
  const odb_Instance& instance = instances.members().begin()->second;
  try {
    const odb_Set* own = instance.elementSets().find(name);
    if (own != nullptr) queueSet(*own, nullptr, multi, out);
  } catch (const std::exception&) {
    queueSetError(out);
    if (multi) out.queueFixed(kRecBlockEnd, 0);
  }
}

void queueDottedName(const odb_Assembly& assembly, const std::string& name, size_t dot, bool multi,
                     ReplyChannel& out) {
  std::string instanceName = name.substr(0, dot);
  std::string setName = name.substr(dot + 1);
  if (instanceName == assembly.name()) {
    queueAssemblySet(assembly, setName, multi, out);
    return;
  }
  const odb_Instance* instance = assembly.instances().find(instanceName);
  if (instance == nullptr) return;
  const odb_Set* set = instance->elementSets().find(setName);
  if (set == nullptr) return;
  if (multi) out.queueText(instanceName, kRecInstanceHeader);
  queueSet(*set, nullptr, multi, out);
  if (multi) out.queueFixed(kRecBlockEnd, 0);
}

}  // namespace

void sendNamedSets(OdbContext& ctx, const std::vector<Criterion>& criteria, ReplyChannel& out) {
  if (criteria.empty()) return;
  const odb_Odb& odb = *ctx.odb;
  sendModelHeader(odb, out);
  const odb_Assembly& assembly = odb.rootAssembly();
  const bool multi = assembly.instances().size() > 1;
  out.discardPending();
  for (const Criterion& c : criteria) {
    if (c.kind != kElementSetCriterion) continue;
    size_t dot = c.text.find('.');
    if (dot == std::string::npos) {
      queueUndottedName(assembly, c.text, multi, out);
    } else {
      queueDottedName(assembly, c.text, dot, multi, out);
    }
  }
  out.flush();
}

}  // namespace odbs
