// Sets: one set group, the set lists of an entity, section assignments and connector
// orientations (which hold a set each); store and load side by side.
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

void storeSetList(const h5::Group& entity, const std::string& list,
                  const std::vector<SetData>& sets) {
  h5::Group g = entity.create(list);
  std::vector<std::string> names;
  for (size_t i = 0; i < sets.size(); ++i) {
    names.push_back(sets[i].name);
    storeSet(g.create(std::to_string(i)), sets[i]);
  }
  g.writeStrings(name::kNames, names);
}

odb_SetRepository lazySetList(const SourcePtr& src, const std::string& path,
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

void storeSectionAssignments(const h5::Group& entity, const std::vector<SectionAssignmentData>& v) {
  h5::Group g = entity.create(name::kSectionAssignments);
  std::vector<std::string> names;
  for (size_t i = 0; i < v.size(); ++i) {
    names.push_back(v[i].sectionName);
    storeSet(g.create(std::to_string(i)), v[i].region);
  }
  g.writeStrings(name::kSectionNames, names);
}

odb_SequenceSectionAssignment loadSectionAssignments(const SourcePtr& src,
                                                     const std::string& entityPath) {
  odb_SequenceSectionAssignment seq;
  std::string path = entityPath + "/" + name::kSectionAssignments;
  if (!src->file.root().has(path)) return seq;
  h5::Group g = src->group(path);
  std::vector<std::string> names = g.readStrings(name::kSectionNames);
  for (size_t i = 0; i < names.size(); ++i)
    seq.append(odb_SectionAssignment({names[i], loadSet(g.open(std::to_string(i)))}));
  return seq;
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

}  // namespace odb
