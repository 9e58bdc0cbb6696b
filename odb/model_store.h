// Storing and loading the model side of a database in the HDF5 layout of docs/format.md,
// one table at a time, each table's store and load side by side in one file:
// store_properties.cpp (annotations, section categories, sections, materials),
// store_sets.cpp (sets, set lists, connector orientations), store_assignments.cpp (section
// assignments),
// store_entity.cpp (nodes, elements, entity groups, the model root).
//
// Store functions take data that odb::Writer has validated and throw std::runtime_error on
// HDF5 failures. Load functions check everything they read (counts, indexes, offsets)
// and throw std::runtime_error naming the damaged object.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "odb/format.h"
#include "odb/model.h"
#include "odb/model_data.h"

namespace odb {

void storeModel(const h5::Group& root, const ModelData& m);

void storeAnnotations(const h5::Group& root,
                      const std::vector<std::pair<std::string, std::string>>& annotations);
std::vector<std::pair<std::string, std::string>> loadAnnotations(const h5::Group& root);
void storeSectionCategories(const h5::Group& root, const std::vector<SectionCategoryData>& cats);
std::vector<SectionCategoryData> loadSectionCategories(const h5::Group& root);
void storeSections(const h5::Group& root, const std::vector<SectionData>& sections);
std::vector<SectionData> loadSections(const h5::Group& root);
void storeMaterials(const h5::Group& root, const std::vector<MaterialData>& materials);
std::vector<MaterialData> loadMaterials(const h5::Group& root);

void storeSet(const h5::Group& g, const SetData& s);
SetData loadSet(const h5::Group& g);
// A set list group named list in parent: every set's members in one array per list.
void storeSetList(const h5::Group& parent, const std::string& list,
                  const std::vector<SetData>& sets);
// Every set of the set list group g (format version 3), read in one go.
std::vector<SetData> loadSetList(const h5::Group& g);
// The set list at path of sets of type, loading on first use; nullptr when the file is
// older than version 3 (one set group per set).
std::shared_ptr<Lazy<SetListData>> lazySetListData(const SourcePtr& src, const std::string& path,
                                                   odb_Enum::odb_SetTypeEnum type);
// The sets of the list at path (a catalogue; the members of all sets of the list load
// together from list on first use; list null: one set group per set, loaded per set).
odb_SetRepository lazySetList(const SourcePtr& src, const std::string& path,
                              odb_Enum::odb_SetTypeEnum type,
                              const std::shared_ptr<Lazy<SetListData>>& list);
void storeSectionAssignments(const h5::Group& entity, const std::vector<SectionAssignmentData>& v);
// Files older than version 4 hold no placements: every assignment loads without offset and
// thickness.
odb_SequenceSectionAssignment loadSectionAssignments(const SourcePtr& src,
                                                     const std::string& entityPath);
void storeConnectorOrientations(const h5::Group& assembly,
                                const std::vector<ConnectorOrientationData>& v);
std::vector<ConnectorOrientationData> loadConnectorOrientations(const h5::Group& assembly);

// Region pairs: an optional group of the root assembly (absent: none).
void storeRegionPairs(const h5::Group& assembly, const std::vector<RegionPairData>& v);
std::vector<RegionPairData> loadRegionPairs(const h5::Group& assembly);

void storeNodes(const h5::Group& entity, const NodeData& n);
NodeData loadNodes(const h5::Group& entity);
void storeElements(const h5::Group& entity, const ElementData& e);
ElementData loadElements(const h5::Group& entity, int version, size_t categoryCount);
void storeEntity(const h5::Group& g, const EntityData& e);
// The parts of the entity stored at groupPath, each loading from src on first use.
odb_EntityParts lazyEntityParts(const SourcePtr& src, const std::string& groupPath,
                                std::shared_ptr<const std::vector<odb_SectionCategory>> cats);

}  // namespace odb
