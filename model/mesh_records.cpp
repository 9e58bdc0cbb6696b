#include "model/mesh_records.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "model/element_section_numbers.h"
#include "wire/coding.h"

namespace odbs {

namespace {

constexpr size_t kTypeNameWidth = 8;
constexpr char kConnectorType[] = "CONN3D2";
constexpr size_t kConnectorTypeLen = sizeof kConnectorType - 1;

// The bytes an element type contributes, worked out once per type name.
struct TypeLayout {
  std::string name;  // padded to kTypeNameWidth when shorter
  bool connector = false;
  size_t fixed = 0;     // body bytes before the nodes: name, label, section (and node count)
  size_t perNode = 4;   // body bytes per node
  size_t maxNodes = 0;  // the nodes one record holds
  bool fits = false;    // whether a record of this type holds its fixed part at all
};

std::vector<TypeLayout> typeLayouts(const std::vector<std::string>& typeNames) {
  const size_t maxBody = kRecordBufferSize - 1;
  std::vector<TypeLayout> out;
  out.reserve(typeNames.size());
  for (const std::string& t : typeNames) {
    TypeLayout l;
    l.name = t;
    if (l.name.size() < kTypeNameWidth) l.name.resize(kTypeNameWidth, ' ');
    l.connector = t.compare(0, kConnectorTypeLen, kConnectorType) == 0;
    l.fixed = l.name.size() + 8 + (l.connector ? 4 : 0);
    l.perNode = l.connector ? 8 : 4;
    l.fits = l.fixed <= maxBody;
    l.maxNodes = l.fits ? (maxBody - l.fixed) / l.perNode : 0;
    out.push_back(std::move(l));
  }
  return out;
}

}  // namespace

void queueNodeRecords(const odb_SequenceNode& nodes, ReplyChannel& out, const Selection* keep) {
  const std::vector<int32_t>& labels = nodes.labels();
  const float* coords = nodes.coordinateData().data();
  const size_t dim = static_cast<size_t>(nodes.dimension());
  const size_t body = 4 + 4 * dim;
  for (size_t i = 0; i < labels.size(); ++i) {
    if (keep && !(*keep)[i]) continue;
    uint8_t* p = putI32(out.queueFixed(kRecNode, body), labels[i]);
    putF32Array(p, coords + i * dim, dim);
  }
}

void queueElementRecords(const odb_SequenceElement& elements, const ElementSectionMap& sections,
                         const SectionTables& tables, ReplyChannel& out, const Selection* keep) {
  const odb::ElementData& d = elements.data();
  const std::vector<TypeLayout> types = typeLayouts(d.typeNames);
  ElementSectionNumbers numbers(elements, sections, tables);
  for (size_t i = 0; i < d.labels.size(); ++i) {
    const int32_t* nodes = d.connectivity.data() + d.offsets[i];
    size_t n = static_cast<size_t>(d.offsets[i + 1] - d.offsets[i]);
    if (n == 0 || (keep && !(*keep)[i])) continue;
    const TypeLayout& type = types[size_t(d.typeIndex[i])];
    if (!type.fits) continue;
    int32_t section = numbers.of(i);

    n = std::min(n, type.maxNodes);
    uint8_t* p = out.queueFixed(kRecElement, type.fixed + type.perNode * n);
    if (type.name.size() == kTypeNameWidth) {
      std::memcpy(p, type.name.data(), kTypeNameWidth);  // the usual case, without a call
      p += kTypeNameWidth;
    } else {
      p = putBytes(p, type.name.data(), type.name.size());
    }
    p = putI32(p, d.labels[i]);
    p = putI32(p, section);
    if (type.connector) p = putI32(p, static_cast<int32_t>(n));
    p = putI32Array(p, nodes, n);
    if (type.connector) std::fill(p, p + 4 * n, uint8_t{0});
  }
}

}  // namespace odbs
