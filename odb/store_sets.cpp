// Sets: one set group, the set lists of an entity and connector orientations (which hold a
// set each); store and load side by side.
#include <algorithm>
#include <cstdint>
#include <numeric>

#include "odb/model_store.h"
#include "odb/store_util.h"

namespace odb {

void storeSet(const h5::Group& g, const SetData& s) {
  g.setString(name::kName, s.name);
  g.setInt(name::kType, s.type);
  g.writeStrings(name::kInstanceNames, s.instanceNames);
  g.write(name::kCounts, s.counts);
  g.write(name::kLabels, s.labels);
  if (s.type == odb_Enum::SURFACE_SET) g.write(name::kFaces, s.faces);
}

SetData loadSet(const h5::Group& g) {
  SetData s;
  s.name = g.getString(name::kName);
  int64_t type = g.getInt(name::kType);
  if (type < odb_Enum::NODE_SET || type > odb_Enum::SURFACE_SET) damaged(g, "unknown set type");
  s.type = static_cast<odb_Enum::odb_SetTypeEnum>(type);
  s.instanceNames = g.readStrings(name::kInstanceNames);
  s.counts = g.read<int64_t>(name::kCounts, static_cast<int64_t>(s.instanceNames.size()));
  s.labels = g.read<int32_t>(name::kLabels, sumCounts(g, s.counts));
  if (s.type == odb_Enum::SURFACE_SET)
    s.faces = g.read<int32_t>(name::kFaces, static_cast<int64_t>(s.labels.size()));
  return s;
}

// A set list: the sets of one kind of an entity (or the region sets of a step's history),
// their members in one array per list. Set i has the member groups
// [group_offsets[i], group_offsets[i+1]); group g lists instance group_instances[g] and the
// member_counts[g] labels (and faces) from member_starts[g].
void storeSetList(const h5::Group& parent, const std::string& list,
                  const std::vector<SetData>& sets) {
  h5::Group g = parent.create(list);
  std::vector<std::string> names, instances;
  std::vector<int32_t> types, labels, faces;
  std::vector<int64_t> groupOffsets{0}, starts, counts;
  bool surfaces = false;
  for (const SetData& s : sets) {
    names.push_back(s.name);
    types.push_back(s.type);
    int64_t at = static_cast<int64_t>(labels.size());
    for (size_t k = 0; k < s.instanceNames.size(); ++k) {
      instances.push_back(s.instanceNames[k]);
      starts.push_back(at);
      counts.push_back(s.counts[k]);
      at += s.counts[k];
    }
    groupOffsets.push_back(static_cast<int64_t>(instances.size()));
    labels.insert(labels.end(), s.labels.begin(), s.labels.end());
    surfaces = surfaces || s.type == odb_Enum::SURFACE_SET;
  }
  for (const SetData& s : sets)  // faces of surfaces, a 0 per member of other sets
    if (surfaces)
      s.type == odb_Enum::SURFACE_SET ? faces.insert(faces.end(), s.faces.begin(), s.faces.end())
                                      : faces.insert(faces.end(), s.labels.size(), 0);
  g.writeStrings(name::kNames, names);
  g.write(name::kSetTypes, types);
  g.write(name::kGroupOffsets, groupOffsets);
  g.writeStrings(name::kGroupInstances, instances);
  g.write(name::kMemberStarts, starts);
  g.write(name::kMemberCounts, counts);
  g.write(name::kLabels, labels);
  if (surfaces) g.write(name::kFaces, faces);
}

namespace {

// The sets' indexes by name, byte-wise, one per name: the last of equal names, as a
// repository keeps it.
std::vector<uint32_t> keyOrder(const std::vector<std::string>& names) {
  std::vector<uint32_t> order(names.size());
  std::iota(order.begin(), order.end(), 0u);
  std::stable_sort(order.begin(), order.end(),
                   [&](uint32_t a, uint32_t b) { return names[a] < names[b]; });
  std::vector<uint32_t> out;
  out.reserve(order.size());
  for (size_t k = 0; k < order.size(); ++k)
    if (k + 1 == order.size() || names[order[k + 1]] != names[order[k]]) out.push_back(order[k]);
  return out;
}

// The arrays of a set list, read in one go and checked for their sizes; each set's own
// ranges are checked apart (setFault), so one damaged set spoils no other.
SetListData loadSetListData(const h5::Group& g) {
  SetListData d;
  d.path = g.path();
  d.names = g.readStrings(name::kNames);
  auto n = static_cast<int64_t>(d.names.size());
  if (d.names.size() > UINT32_MAX) damaged(g, "too many sets");
  d.types = g.read<int32_t>(name::kSetTypes, n);
  d.groupOffsets = g.read<int64_t>(name::kGroupOffsets, n + 1);
  d.instances = g.readStrings(name::kGroupInstances);
  auto groups = static_cast<int64_t>(d.instances.size());
  d.starts = g.read<int64_t>(name::kMemberStarts, groups);
  d.counts = g.read<int64_t>(name::kMemberCounts, groups);
  d.labels = g.read<int32_t>(name::kLabels);
  if (g.isDataset(name::kFaces))
    d.faces = g.read<int32_t>(name::kFaces, static_cast<int64_t>(d.labels.size()));
  return d;
}

// Why set i of d cannot be read, or nullptr when its type is known and its ranges lie
// within the arrays.
const char* setFault(const SetListData& d, size_t i) {
  if (d.types[i] < odb_Enum::NODE_SET || d.types[i] > odb_Enum::SURFACE_SET) return "unknown type";
  int64_t first = d.groupOffsets[i], last = d.groupOffsets[i + 1];
  if (first < 0 || last < first || last > static_cast<int64_t>(d.instances.size()))
    return "member groups out of range";
  if (d.types[i] == odb_Enum::SURFACE_SET && d.faces.empty()) return "a surface without faces";
  const auto total = static_cast<int64_t>(d.labels.size());
  for (int64_t g = first; g < last; ++g) {
    int64_t start = d.starts[g], count = d.counts[g];
    if (start < 0 || count < 0 || start > total || count > total - start)
      return "members out of range";
  }
  return nullptr;
}

SetData sliceSet(const SetListData& d, size_t i) {
  if (const char* fault = setFault(d, i))
    h5::fail("damaged database: " + d.path + ": set '" + d.names[i] + "': " + fault);
  SetData s;
  s.name = d.names[i];
  s.type = static_cast<odb_Enum::odb_SetTypeEnum>(d.types[i]);
  for (int64_t g = d.groupOffsets[i]; g < d.groupOffsets[i + 1]; ++g) {
    int64_t start = d.starts[g], count = d.counts[g];
    s.instanceNames.push_back(d.instances[g]);
    s.counts.push_back(count);
    s.labels.insert(s.labels.end(), d.labels.begin() + start, d.labels.begin() + start + count);
    if (s.type == odb_Enum::SURFACE_SET)
      s.faces.insert(s.faces.end(), d.faces.begin() + start, d.faces.begin() + start + count);
  }
  return s;
}

// Version 2 and older: one set group per set.
odb_SetRepository lazySetGroups(const SourcePtr& src, const std::string& path,
                                odb_Enum::odb_SetTypeEnum type) {
  odb_SetRepository repo;
  if (!src->file.root().has(path)) return repo;  // version 1 files may lack a set kind
  h5::Group g = src->group(path);
  std::vector<std::string> names = g.readStrings(name::kNames);
  for (size_t i = 0; i < names.size(); ++i) {
    std::string setPath = path + "/" + std::to_string(i);
    odb::Lazy<SetData> members(std::function<SetData()>([src, setPath, type] {
      SetData d = loadSet(src->group(setPath));
      if (d.type != type) damaged(src->group(setPath), "set of the wrong kind");
      return d;
    }));
    repo.insert(names[i], odb_Set(names[i], type, std::move(members)));
  }
  return repo;
}

}  // namespace

std::vector<SetData> loadSetList(const h5::Group& g) {
  SetListData d = loadSetListData(g);
  std::vector<SetData> out;
  for (size_t i = 0; i < d.names.size(); ++i) out.push_back(sliceSet(d, i));
  return out;
}

std::shared_ptr<Lazy<SetListData>> lazySetListData(const SourcePtr& src, const std::string& path,
                                                   odb_Enum::odb_SetTypeEnum type) {
  if (src->version < 3) return nullptr;
  return std::make_shared<Lazy<SetListData>>(std::function<SetListData()>([src, path, type] {
    SetListData d = loadSetListData(src->group(path));
    for (uint32_t i : keyOrder(d.names)) {
      SetListData::Keyed k;
      k.index = i;
      k.sound = d.types[i] == type && setFault(d, i) == nullptr;
      k.together = k.sound;
      for (int64_t g = d.groupOffsets[i]; k.sound && g < d.groupOffsets[i + 1]; ++g) {
        if (g == d.groupOffsets[i]) k.start = d.starts[g];
        k.together = k.together && d.starts[g] == k.start + k.count;
        k.count += d.counts[g];
      }
      d.byKey.push_back(k);
    }
    return d;
  }));
}

odb_SetRepository lazySetList(const SourcePtr& src, const std::string& path,
                              odb_Enum::odb_SetTypeEnum type,
                              const std::shared_ptr<Lazy<SetListData>>& list) {
  if (!list) return lazySetGroups(src, path, type);
  odb_SetRepository repo;
  h5::Group g = src->group(path);
  std::vector<std::string> names = g.readStrings(name::kNames);
  // The members of every set of the list load together on the first look at any of them.
  for (size_t i = 0; i < names.size(); ++i) {
    odb::Lazy<SetData> members(std::function<SetData()>([list, i, type] {
      const SetListData& d = list->get();
      if (i >= d.names.size()) h5::fail("damaged database: " + d.path + ": set names changed");
      SetData s = sliceSet(d, i);
      if (s.type != type)
        h5::fail("damaged database: " + d.path + ": set '" + s.name + "' of the wrong kind");
      return s;
    }));
    repo.insert(names[i], odb_Set(names[i], type, std::move(members)));
  }
  return repo;
}

void storeConnectorOrientations(const h5::Group& assembly,
                                const std::vector<ConnectorOrientationData>& v) {
  h5::Group g = assembly.create(name::kConnectorOrientations);
  g.setInt(name::kCount, static_cast<int64_t>(v.size()));
  for (size_t i = 0; i < v.size(); ++i) {
    h5::Group o = g.create(std::to_string(i));
    o.setInt(name::kHasCsys1, v[i].hasCsys1);
    o.setString(name::kCsys1, v[i].csys1);
    o.setInt(name::kHasCsys2, v[i].hasCsys2);
    o.setString(name::kCsys2, v[i].csys2);
    storeSet(o.create(name::kRegion), v[i].region);
  }
}

std::vector<ConnectorOrientationData> loadConnectorOrientations(const h5::Group& assembly) {
  if (!assembly.has(name::kConnectorOrientations)) return {};
  h5::Group g = assembly.open(name::kConnectorOrientations);
  int64_t count = g.getInt(name::kCount);
  if (count < 0 || count > 100000000) damaged(g, "bad count");
  std::vector<ConnectorOrientationData> out(static_cast<size_t>(count));
  for (int64_t i = 0; i < count; ++i) {
    h5::Group o = g.open(std::to_string(i));
    ConnectorOrientationData& c = out[static_cast<size_t>(i)];
    c.hasCsys1 = o.getInt(name::kHasCsys1) != 0;
    c.csys1 = o.getString(name::kCsys1);
    c.hasCsys2 = o.getInt(name::kHasCsys2) != 0;
    c.csys2 = o.getString(name::kCsys2);
    c.region = loadSet(o.open(name::kRegion));
  }
  return out;
}

void storeRegionPairs(const h5::Group& assembly, const std::vector<RegionPairData>& v) {
  if (v.empty()) return;  // a model without pairs keeps the layout of older files
  h5::Group g = assembly.create(name::kRegionPairs);
  std::vector<std::string> names, first, second;
  std::vector<int32_t> kinds;
  for (const RegionPairData& p : v) {
    names.push_back(p.name);
    kinds.push_back(p.kind);
    first.push_back(p.first);
    second.push_back(p.second);
  }
  g.writeStrings(name::kNames, names);
  g.write(name::kKinds, kinds);
  g.writeStrings(name::kFirstRegions, first);
  g.writeStrings(name::kSecondRegions, second);
}

std::vector<RegionPairData> loadRegionPairs(const h5::Group& assembly) {
  if (!assembly.has(name::kRegionPairs)) return {};
  h5::Group g = assembly.open(name::kRegionPairs);
  std::vector<std::string> names = g.readStrings(name::kNames);
  auto count = static_cast<int64_t>(names.size());
  std::vector<int32_t> kinds = g.read<int32_t>(name::kKinds, count);
  std::vector<std::string> first = g.readStrings(name::kFirstRegions, count);
  std::vector<std::string> second = g.readStrings(name::kSecondRegions, count);
  std::vector<RegionPairData> out(names.size());
  for (size_t i = 0; i < out.size(); ++i) {
    if (kinds[i] != kContactPair && kinds[i] != kTie) damaged(g, "bad region pair kind");
    out[i] = {names[i], kinds[i], first[i], second[i]};
  }
  return out;
}

}  // namespace odb
