// Storing and loading the model side of a database in the HDF5 layout of docs/format.md.
// Store functions take data that odb::Writer has validated and throw std::runtime_error on
// HDF5 failures. Load functions check everything they read (counts, indexes, offsets)
// and throw std::runtime_error naming the damaged object.
#pragma once

#include <vector>

#include "odb/format.h"
#include "odb/model.h"
#include "odb/model_data.h"

namespace odb {

void storeModel(const h5::Group& root, const ModelData& m);
void storeSet(const h5::Group& g, const SetData& s);

SetData loadSet(const h5::Group& g);
NodeData loadNodes(const h5::Group& entity);
ElementData loadElements(const h5::Group& entity, int version, size_t categoryCount);
std::vector<SectionCategoryData> loadSectionCategories(const h5::Group& root);
std::vector<SectionData> loadSections(const h5::Group& root);
std::vector<MaterialData> loadMaterials(const h5::Group& root);
std::vector<ConnectorOrientationData> loadConnectorOrientations(const h5::Group& assembly);

// The parts of the entity stored at groupPath, each loading from src on first use.
odb_EntityParts lazyEntityParts(const SourcePtr& src, const std::string& groupPath,
                                std::shared_ptr<const std::vector<odb_SectionCategory>> cats);

}  // namespace odb
