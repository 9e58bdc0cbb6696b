// sendSets: commands S (node and element sets) and s (the same and surfaces).
//
// Per instance, in key order, for each kind: the root assembly's sets of that kind with
// the members in this instance, then (H) the instance's own sets (I). H and I only in a
// multi-instance model.
#include "model/send_sets.h"

#include <exception>

#include "model/model_header.h"
#include "model/set_records.h"

namespace odbs {

namespace {

struct SetWalk {
  bool multiInstance;
  bool coupling;
  ReplyChannel& out;

  // The root assembly's sets, each with its members in instance.
  void assemblySets(const odb_SetRepository& sets, const std::string& instance) const {
    for (odb_SetRepositoryIT it(sets); !it.isDone(); it.next()) {
      if (isSentSet(it.currentValue(), coupling)) {
        queueSet(it.currentValue(), &instance, multiInstance, out);
      }
    }
  }

  // An instance's own sets, whole; a set that fails is replaced by the set error record.
  void instanceSets(const odb_SetRepository& sets, const std::string& instance) const {
    if (multiInstance) out.queueText(instance, kRecInstanceHeader);
    for (odb_SetRepositoryIT it(sets); !it.isDone(); it.next()) {
      try {
        if (isSentSet(it.currentValue(), coupling)) {
          queueSet(it.currentValue(), nullptr, multiInstance, out);
        }
      } catch (const std::exception&) {
        queueSetError(out);
      }
    }
    if (multiInstance) out.queueFixed(kRecBlockEnd, 0);
  }
};

}  // namespace

void sendSets(OdbContext& ctx, int mode, bool coupling, ReplyChannel& out) {
  const odb_Odb& odb = *ctx.odb;
  sendModelHeader(odb, out);
  const odb_Assembly& assembly = odb.rootAssembly();
  const odb_InstanceRepository& instances = assembly.instances();
  const SetWalk walk{instances.size() > 1, coupling, out};
  out.discardPending();
  for (odb_InstanceRepositoryIT it(instances); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    walk.assemblySets(assembly.nodeSets(), instance.name());
    walk.instanceSets(instance.nodeSets(), instance.name());
    walk.assemblySets(assembly.elementSets(), instance.name());
    walk.instanceSets(instance.elementSets(), instance.name());
    if (mode == 1) {
      walk.assemblySets(assembly.surfaces(), instance.name());
      walk.instanceSets(instance.surfaces(), instance.name());
    }
  }
  out.flush();
}

}  // namespace odbs
