#include "model/set_records.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

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
  } catch (const std::out_of_range&) {
    return Members();  // no members in this instance
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

}  // namespace

bool isSentSet(const odb_Set& set, bool coupling) {
  const std::string& name = set.name();
  if (name == " ALL NODES" || name == " ALL ELEMENTS") return false;
  return coupling || set.type() != odb_Enum::NODE_SET ||
         name.find("COUPLING_") == std::string::npos;
}

void queueSet(const odb_Set& set, const std::string* instance, bool multiInstance,
              ReplyChannel& out) {
  const bool perInstance = instance != nullptr && multiInstance;
  switch (set.type()) {
    case odb_Enum::NODE_SET:
      out.queueText(set.name(), kRecNodeSetHeader);
      if (perInstance) out.queueText(*instance, kRecInstanceHeader);
      queueLabelBlocks(kRecNodeLabels, membersOf(set, instance).labels, out);
      break;
    case odb_Enum::ELEMENT_SET:
      out.queueText(set.name(), kRecElementSetHeader);
      if (perInstance) out.queueText(*instance, kRecInstanceHeader);
      queueLabelBlocks(kRecElementLabels, membersOf(set, instance).labels, out);
      break;
    case odb_Enum::SURFACE_SET: {
      out.queueText(set.name(), kRecSurfaceHeader);
      if (perInstance) out.queueText(*instance, kRecInstanceHeader);
      Members m = membersOf(set, instance);
      queueFaceBlocks(m.labels, m.faces, out);
      break;
    }
  }
  out.queueFixed(kRecSetEnd, 0);
  if (perInstance) out.queueFixed(kRecBlockEnd, 0);
}

void queueSetError(ReplyChannel& out) {
  out.queueText("Error in Sets definition", kRecMessage);
}

}  // namespace odbs
