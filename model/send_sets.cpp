// sendSets: commands S (node and element sets) and s (the same and surfaces).
//
// Per instance, in key order, for each kind: the root assembly's sets of that kind with
// the members in this instance, then (H) the instance's own sets (I). H and I only in a
// multi-instance model. The sets are read from the stored lists (every member of a kind in
// one array) where the file has them, without a look-up or a copy per set.
#include "model/send_sets.h"

#include <exception>
#include <vector>

#include "model/model_header.h"
#include "model/set_records.h"

namespace odbs {

namespace {

const odb_SetRepository& repositoryOf(const odb_DiscreteEntity& e, odb_Enum::odb_SetTypeEnum kind) {
  return kind == odb_Enum::NODE_SET      ? e.nodeSets()
         : kind == odb_Enum::ELEMENT_SET ? e.elementSets()
                                         : e.surfaces();
}

// The stored list of sets of kind, or nullptr when the file keeps a group per set or the
// list cannot be read: then the walk goes through the repository, whose sets fail one by
// one (or whose loading throws) as they always did.
const odb::SetListData* storedList(const odb_DiscreteEntity& e, odb_Enum::odb_SetTypeEnum kind) {
  try {
    return e.setList(kind);
  } catch (const std::exception&) {
    return nullptr;
  }
}

struct SetWalk {
  bool multiInstance;
  bool coupling;
  ReplyChannel& out;
  std::vector<int32_t>& scratch;

  // The root assembly's sets of kind, each with its members in instance.
  void assemblySets(const odb_Assembly& assembly, odb_Enum::odb_SetTypeEnum kind,
                    const std::string& instance) const {
    if (const odb::SetListData* list = storedList(assembly, kind)) {
      for (const odb::SetListData::Keyed& set : list->byKey)
        if (isSentSet(list->names[set.index], kind, coupling))
          queueListedSet(*list, set, kind, &instance, multiInstance, out, scratch);
      return;
    }
    const odb_SetRepository& sets = repositoryOf(assembly, kind);
    for (odb_SetRepositoryIT it(sets); !it.isDone(); it.next()) {
      if (isSentSet(it.currentValue(), coupling)) {
        queueSet(it.currentValue(), &instance, multiInstance, out);
      }
    }
  }

  // An instance's own sets of kind, whole; a set that fails is replaced by the set error
  // record.
  void instanceSets(const odb_Instance& instance, odb_Enum::odb_SetTypeEnum kind) const {
    const odb::SetListData* list = storedList(instance, kind);
    const odb_SetRepository* sets = list ? nullptr : &repositoryOf(instance, kind);
    if (multiInstance) out.queueText(instance.name(), kRecInstanceHeader);
    if (list) {
      for (const odb::SetListData::Keyed& set : list->byKey) {
        try {
          if (isSentSet(list->names[set.index], kind, coupling))
            queueListedSet(*list, set, kind, nullptr, multiInstance, out, scratch);
        } catch (const std::exception&) {
          queueSetError(out);
        }
      }
    } else {
      for (odb_SetRepositoryIT it(*sets); !it.isDone(); it.next()) {
        try {
          if (isSentSet(it.currentValue(), coupling)) {
            queueSet(it.currentValue(), nullptr, multiInstance, out);
          }
        } catch (const std::exception&) {
          queueSetError(out);
        }
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
  std::vector<int32_t> scratch;
  const SetWalk walk{instances.size() > 1, coupling, out, scratch};
  out.discardPending();
  for (odb_InstanceRepositoryIT it(instances); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    walk.assemblySets(assembly, odb_Enum::NODE_SET, instance.name());
    walk.instanceSets(instance, odb_Enum::NODE_SET);
    walk.assemblySets(assembly, odb_Enum::ELEMENT_SET, instance.name());
    walk.instanceSets(instance, odb_Enum::ELEMENT_SET);
    if (mode == 1) {
      walk.assemblySets(assembly, odb_Enum::SURFACE_SET, instance.name());
      walk.instanceSets(instance, odb_Enum::SURFACE_SET);
    }
  }
  out.flush();
}

}  // namespace odbs
