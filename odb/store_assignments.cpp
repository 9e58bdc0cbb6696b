// Section assignments of an entity: the section names, one set group per region, and (from
// format version 4) the placement of each assignment; store and load side by side.
#include "odb/model_store.h"
#include "odb/store_util.h"

namespace odb {

namespace {

constexpr int32_t kHasOffset = 1;
constexpr int32_t kHasThickness = 2;
constexpr int kFirstVersionWithPlacements = 4;

}  // namespace

void storeSectionAssignments(const h5::Group& entity, const std::vector<SectionAssignmentData>& v) {
  h5::Group g = entity.create(name::kSectionAssignments);
  std::vector<std::string> names;
  std::vector<int32_t> flags;
  std::vector<float> offsets, thicknesses;
  for (size_t i = 0; i < v.size(); ++i) {
    const SectionPlacement& p = v[i].placement;
    names.push_back(v[i].sectionName);
    flags.push_back((p.hasOffset ? kHasOffset : 0) | (p.hasThickness ? kHasThickness : 0));
    offsets.push_back(p.offset1);
    offsets.push_back(p.offset2);
    thicknesses.push_back(p.thickness);
    storeSet(g.create(std::to_string(i)), v[i].region);
  }
  g.writeStrings(name::kSectionNames, names);
  g.write(name::kPlacementFlags, flags);
  g.write(name::kOffsets, offsets.data(), {static_cast<hsize_t>(v.size()), 2});
  g.write(name::kThicknesses, thicknesses);
}

odb_SequenceSectionAssignment loadSectionAssignments(const SourcePtr& src,
                                                     const std::string& entityPath) {
  odb_SequenceSectionAssignment seq;
  std::string path = entityPath + "/" + name::kSectionAssignments;
  if (!src->file.root().has(path)) return seq;
  h5::Group g = src->group(path);
  std::vector<std::string> names = g.readStrings(name::kSectionNames);
  const auto n = static_cast<int64_t>(names.size());
  std::vector<int32_t> flags;
  std::vector<float> offsets, thicknesses;
  if (src->version >= kFirstVersionWithPlacements) {
    flags = g.read<int32_t>(name::kPlacementFlags, n);
    offsets = g.read<float>(name::kOffsets, 2 * n);
    thicknesses = g.read<float>(name::kThicknesses, n);
  }
  for (size_t i = 0; i < names.size(); ++i) {
    SectionAssignmentData a{names[i], loadSet(g.open(std::to_string(i))), {}};
    if (!flags.empty()) {
      if (flags[i] & ~(kHasOffset | kHasThickness)) damaged(g, "unknown placement flags");
      a.placement = {(flags[i] & kHasOffset) != 0, offsets[2 * i], offsets[2 * i + 1],
                     (flags[i] & kHasThickness) != 0, thicknesses[i]};
    }
    seq.append(odb_SectionAssignment(a));
  }
  return seq;
}

}  // namespace odb
