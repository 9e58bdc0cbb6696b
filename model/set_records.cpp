#include "model/set_records.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <string_view>
#include <vector>

#include "wire/coding.h"

namespace odbs {

namespace {

constexpr size_t kBlockSize = 30;

struct Members {
  odb_View<int> labels;
  odb_View<int> faces;  // surfaces only
};

Members membersOf(const odb_Set& set, const std::string* instance) {
  Members m;
  try {
    switch (set.type()) {
      case odb_Enum::NODE_SET:
        m.labels = instance ? set.nodes(*instance) : set.nodes();
        break;
      case odb_Enum::ELEMENT_SET:
        m.labels = instance ? set.elements(*instance) : set.elements();
        break;
      case odb_Enum::SURFACE_SET:
        m.labels = instance ? set.elements(*instance) : set.elements();
        m.faces = instance ? set.faces(*instance) : set.faces();
        break;
    }
  } catch (const std::exception&) {
    // No members in this instance, or members that cannot be read (a damaged file): the
    // set goes out with its header and end record and no blocks.
    return Members();
  }
  return m;
}

void queueLabelBlocks(uint8_t type, odb_View<int> labels, ReplyChannel& out) {
  for (size_t at = 0; at < size_t(labels.size()); at += kBlockSize) {
    size_t n = std::min(kBlockSize, size_t(labels.size()) - at);
    putI32Array(out.queueFixed(type, 4 * n), labels.data() + at, n);
  }
}

void queueFaceBlocks(odb_View<int> labels, odb_View<int> faces, ReplyChannel& out) {
  size_t count = size_t(std::min(labels.size(), faces.size()));
  for (size_t at = 0; at < count; at += kBlockSize) {
    size_t n = std::min(kBlockSize, count - at);
    uint8_t* p = out.queueFixed(kRecFaceLabels, 8 * n);
    for (size_t k = 0; k < n; ++k) {
      p = putI32(p, labels.data()[at + k]);
      p = putI32(p, faces.data()[at + k]);
    }
  }
}

// The members of a set of a stored list, as membersOf gives them for the same set: those
// of the first group of instance (none when it has none), or every group's in group order.
// Groups stored apart are gathered into scratch; stored one after another (as the writer
// stores them) they are read in place.
Members listedMembers(const odb::SetListData& d, const odb::SetListData::Keyed& k,
                      const std::string* instance, std::vector<int32_t>& scratch) {
  if (!k.sound) return Members();
  const bool surface = d.types[k.index] == odb_Enum::SURFACE_SET;
  auto range = [&](const std::vector<int32_t>& labels, const std::vector<int32_t>& faces,
                   int64_t start, int64_t count) {
    Members m;
    m.labels = odb_View<int>(labels.data() + start, static_cast<int>(count));
    if (surface) m.faces = odb_View<int>(faces.data() + start, static_cast<int>(count));
    return m;
  };
  if (instance == nullptr && k.together) return range(d.labels, d.faces, k.start, k.count);
  const int64_t first = d.groupOffsets[k.index], last = d.groupOffsets[k.index + 1];
  if (instance != nullptr) {
    for (int64_t g = first; g < last; ++g)
      if (d.instances[g] == *instance) return range(d.labels, d.faces, d.starts[g], d.counts[g]);
    return Members();
  }
  scratch.clear();
  for (int64_t g = first; g < last; ++g)
    scratch.insert(scratch.end(), d.labels.begin() + d.starts[g],
                   d.labels.begin() + d.starts[g] + d.counts[g]);
  for (int64_t g = first; surface && g < last; ++g)
    scratch.insert(scratch.end(), d.faces.begin() + d.starts[g],
                   d.faces.begin() + d.starts[g] + d.counts[g]);
  return range(scratch, scratch, 0, k.count);
}

void queueSetRecords(std::string_view name, odb_Enum::odb_SetTypeEnum type,
                     const std::string* instance, bool multiInstance, const Members& m,
                     ReplyChannel& out) {
  const bool perInstance = instance != nullptr && multiInstance;
  switch (type) {
    case odb_Enum::NODE_SET:
      out.queueText(name, kRecNodeSetHeader);
      if (perInstance) out.queueText(*instance, kRecInstanceHeader);
      queueLabelBlocks(kRecNodeLabels, m.labels, out);
      break;
    case odb_Enum::ELEMENT_SET:
      out.queueText(name, kRecElementSetHeader);
      if (perInstance) out.queueText(*instance, kRecInstanceHeader);
      queueLabelBlocks(kRecElementLabels, m.labels, out);
      break;
    case odb_Enum::SURFACE_SET:
      out.queueText(name, kRecSurfaceHeader);
      if (perInstance) out.queueText(*instance, kRecInstanceHeader);
      queueFaceBlocks(m.labels, m.faces, out);
      break;
  }
  out.queueFixed(kRecSetEnd, 0);
  if (perInstance) out.queueFixed(kRecBlockEnd, 0);
}

}  // namespace

bool isSentSet(std::string_view name, odb_Enum::odb_SetTypeEnum type, bool coupling) {
  if (name == " ALL NODES" || name == " ALL ELEMENTS") return false;
  return coupling || type != odb_Enum::NODE_SET || name.find("COUPLING_") == name.npos;
}

bool isSentSet(const odb_Set& set, bool coupling) {
  return isSentSet(set.name(), set.type(), coupling);
}

void queueSet(const odb_Set& set, const std::string* instance, bool multiInstance,
              ReplyChannel& out) {
  queueSetRecords(set.name(), set.type(), instance, multiInstance, membersOf(set, instance), out);
}

void queueListedSet(const odb::SetListData& list, const odb::SetListData::Keyed& set,
                    odb_Enum::odb_SetTypeEnum kind, const std::string* instance, bool multiInstance,
                    ReplyChannel& out, std::vector<int32_t>& scratch) {
  queueSetRecords(list.names[set.index], kind, instance, multiInstance,
                  listedMembers(list, set, instance, scratch), out);
}

void queueSetError(ReplyChannel& out) {
  out.queueText("Error in Sets definition", kRecMessage);
}

}  // namespace odbs
