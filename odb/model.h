// Read API of the model: nodes, elements, sets, section assignments, connector orientations,
// section categories, part instances and the root assembly.
//
// Objects are owned by their odb_Odb and stay valid until closeOdb. Node and element
// arrays, set catalogues and set members are loaded from the file on first use (one read
// per array) and kept. Reading a damaged file throws std::runtime_error; indexing out of
// range or a missing key throws std::out_of_range.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "odb/containers.h"
#include "odb/enums.h"
#include "odb/lazy.h"
#include "odb/model_data.h"

// A read-only view of count values owned elsewhere.
template <typename T>
class odb_View {
 public:
  odb_View() = default;
  odb_View(const T* p, int n) : p_(p), n_(n) {}
  int size() const { return n_; }
  bool empty() const { return n_ == 0; }
  const T& operator[](int i) const {
    if (i < 0 || i >= n_)
      throw std::out_of_range("odb: index " + std::to_string(i) + " out of range");
    return p_[i];
  }
  const T* data() const { return p_; }
  const T* begin() const { return p_; }
  const T* end() const { return p_ + n_; }

 private:
  const T* p_ = nullptr;
  int n_ = 0;
};

class odb_SectionPoint {
 public:
  odb_SectionPoint() = default;
  explicit odb_SectionPoint(odb::SectionPointData d) : d_(std::move(d)) {}
  int number() const { return d_.number; }
  const std::string& description() const { return d_.description; }

 private:
  odb::SectionPointData d_;
};

// A section category: the section points through the thickness of a group of elements.
class odb_SectionCategory {
 public:
  odb_SectionCategory() = default;
  explicit odb_SectionCategory(const odb::SectionCategoryData& d);
  const std::string& name() const { return name_; }
  const std::string& description() const { return description_; }
  const odb_Sequence<odb_SectionPoint>& sectionPoints() const { return points_; }

 private:
  std::string name_, description_;
  odb_Sequence<odb_SectionPoint> points_;
};
using odb_SectionCategoryRepository = odb_Repository<odb_SectionCategory>;
using odb_SectionCategoryRepositoryIT = odb_RepositoryIterator<odb_SectionCategory>;

class odb_Node {
 public:
  odb_Node(int label, const float* coords, int dim) : label_(label), c_(coords), dim_(dim) {}
  int label() const { return label_; }
  // The coordinates as stored (single precision), dimension() of them.
  odb_View<float> coordinates() const { return odb_View<float>(c_, dim_); }

 private:
  int label_;
  const float* c_;
  int dim_;
};

class odb_SequenceNode {
 public:
  explicit odb_SequenceNode(const odb::NodeData& d) : d_(&d) {}
  int size() const { return static_cast<int>(d_->labels.size()); }
  odb_Node operator[](int i) const;
  int dimension() const { return d_->dimension; }
  // The whole arrays, for bulk use: labels, and coordinates size()*dimension().
  const std::vector<int32_t>& labels() const { return d_->labels; }
  const std::vector<float>& coordinateData() const { return d_->coordinates; }

 private:
  const odb::NodeData* d_;
};

class odb_Element {
 public:
  odb_Element(const odb::ElementData& d, int i, const std::vector<odb_SectionCategory>* cats)
      : d_(&d), i_(i), cats_(cats) {}
  int label() const { return d_->labels[i_]; }
  const std::string& type() const { return d_->typeNames[d_->typeIndex[i_]]; }
  odb_View<int> connectivity() const;
  // The element's section category; an empty category when the element has none.
  const odb_SectionCategory& sectionCategory() const;

 private:
  const odb::ElementData* d_;
  int i_;
  const std::vector<odb_SectionCategory>* cats_;
};

class odb_SequenceElement {
 public:
  odb_SequenceElement(const odb::ElementData& d, const std::vector<odb_SectionCategory>* cats)
      : d_(&d), cats_(cats) {}
  int size() const { return static_cast<int>(d_->labels.size()); }
  odb_Element operator[](int i) const;
  const odb::ElementData& data() const { return *d_; }

 private:
  const odb::ElementData* d_;
  const std::vector<odb_SectionCategory>* cats_;
};

// A node set, element set or surface. Members are labels local to their instance; an
// assembly-level set holds members of several instances, reached per instance name.
// nodes() is empty unless the set is a node set; elements() holds the element labels of an
// element set or surface; faces() the odb_ElementFaceEnum value of each surface element.
// The forms with an instance name throw std::out_of_range when the set has no members in
// that instance.
class odb_Set {
 public:
  odb_Set() = default;
  explicit odb_Set(odb::SetData d);
  odb_Set(std::string name, odb_Enum::odb_SetTypeEnum type, odb::Lazy<odb::SetData> members);
  const std::string& name() const { return name_; }
  odb_Enum::odb_SetTypeEnum type() const { return type_; }
  odb_SequenceString instanceNames() const;
  odb_View<int> nodes() const;
  odb_View<int> nodes(const std::string& instanceName) const;
  odb_View<int> elements() const;
  odb_View<int> elements(const std::string& instanceName) const;
  odb_View<int> faces() const;
  odb_View<int> faces(const std::string& instanceName) const;
  const odb::SetData& data() const { return members_.get(); }

 private:
  odb_View<int> part(const std::vector<int32_t>& v, const std::string* instance) const;
  std::string name_;
  odb_Enum::odb_SetTypeEnum type_ = odb_Enum::NODE_SET;
  odb::Lazy<odb::SetData> members_;
};
using odb_SetRepository = odb_Repository<odb_Set>;
using odb_SetRepositoryIT = odb_RepositoryIterator<odb_Set>;

class odb_SectionAssignment {
 public:
  explicit odb_SectionAssignment(const odb::SectionAssignmentData& d)
      : sectionName_(d.sectionName), region_(d.region), placement_(d.placement) {}
  const std::string& sectionName() const { return sectionName_; }
  const odb_Set& region() const { return region_; }
  // Offset and thickness of the assignment, each with a flag that says whether it is given.
  const odb::SectionPlacement& placement() const { return placement_; }

 private:
  std::string sectionName_;
  odb_Set region_;
  odb::SectionPlacement placement_;
};
using odb_SequenceSectionAssignment = odb_Sequence<odb_SectionAssignment>;

class odb_DatumCsys {
 public:
  explicit odb_DatumCsys(std::string name = "") : name_(std::move(name)) {}
  const std::string& name() const { return name_; }

 private:
  std::string name_;
};

class odb_ConnectorOrientation {
 public:
  explicit odb_ConnectorOrientation(const odb::ConnectorOrientationData& d);
  const odb_Set& region() const { return region_; }
  bool hasCsys1() const { return has1_; }
  bool hasCsys2() const { return has2_; }
  const odb_DatumCsys& csys1() const { return c1_; }
  const odb_DatumCsys& csys2() const { return c2_; }

 private:
  odb_Set region_;
  bool has1_, has2_;
  odb_DatumCsys c1_, c2_;
};
using odb_SequenceConnectorOrientation = odb_Sequence<odb_ConnectorOrientation>;

// The parts of an instance or of the root assembly, each loaded on first use.
struct odb_EntityParts {
  odb::Lazy<odb::NodeData> nodes;
  odb::Lazy<odb::ElementData> elements;
  odb::Lazy<odb_SetRepository> nodeSets, elementSets, surfaces;
  // The same sets as stored, one list per kind (null when the file keeps a group per set).
  std::shared_ptr<odb::Lazy<odb::SetListData>> nodeSetList, elementSetList, surfaceList;
  odb::Lazy<odb_SequenceSectionAssignment> sectionAssignments;
  std::shared_ptr<const std::vector<odb_SectionCategory>> categories;
};

class odb_DiscreteEntity {
 public:
  odb_DiscreteEntity(std::string name, odb_EntityParts parts)
      : name_(std::move(name)), p_(std::move(parts)) {}
  const std::string& name() const { return name_; }
  odb_SequenceNode nodes() const { return odb_SequenceNode(p_.nodes.get()); }
  odb_SequenceElement elements() const {
    return odb_SequenceElement(p_.elements.get(), p_.categories.get());
  }
  const odb_SetRepository& nodeSets() const { return p_.nodeSets.get(); }
  const odb_SetRepository& elementSets() const { return p_.elementSets.get(); }
  const odb_SetRepository& surfaces() const { return p_.surfaces.get(); }
  // The sets of one kind as stored, every member in one array, read in one go on first use
  // and shared with the sets of the repository of that kind: for walking every set without
  // a look-up or a copy per set. nullptr when the file keeps one group per set (format
  // version 2 and older). Throws std::runtime_error when the list cannot be read.
  const odb::SetListData* setList(odb_Enum::odb_SetTypeEnum kind) const;
  const odb_SequenceSectionAssignment& sectionAssignments() const {
    return p_.sectionAssignments.get();
  }

 private:
  std::string name_;
  odb_EntityParts p_;
};

class odb_Instance : public odb_DiscreteEntity {
 public:
  using odb_DiscreteEntity::odb_DiscreteEntity;
};
using odb_InstanceRepository = odb_Repository<odb_Instance>;
using odb_InstanceRepositoryIT = odb_RepositoryIterator<odb_Instance>;

class odb_Assembly : public odb_DiscreteEntity {
 public:
  odb_Assembly(std::string name, odb_EntityParts parts, odb_InstanceRepository instances,
               odb::Lazy<odb_SequenceConnectorOrientation> orientations)
      : odb_DiscreteEntity(std::move(name), std::move(parts)),
        instances_(std::move(instances)),
        orientations_(std::move(orientations)) {}
  const odb_InstanceRepository& instances() const { return instances_; }
  const odb_SequenceConnectorOrientation& connectorOrientations() const {
    return orientations_.get();
  }

 private:
  odb_InstanceRepository instances_;
  odb::Lazy<odb_SequenceConnectorOrientation> orientations_;
};
