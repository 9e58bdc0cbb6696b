#include "odb/model.h"

namespace {
const odb_SectionCategory& emptyCategory() {
  static const odb_SectionCategory c;
  return c;
}
}  // namespace

odb_SectionCategory::odb_SectionCategory(const odb::SectionCategoryData& d)
    : name_(d.name), description_(d.description) {
  for (const auto& p : d.sectionPoints) points_.append(odb_SectionPoint(p));
}

odb_Node odb_SequenceNode::operator[](int i) const {
  if (i < 0 || i >= size())
    throw std::out_of_range("odb: node index " + std::to_string(i) + " out of range");
  return odb_Node(d_->labels[i], d_->coordinates.data() + size_t(i) * d_->dimension, d_->dimension);
}

odb_View<int> odb_Element::connectivity() const {
  int64_t b = d_->offsets[i_], e = d_->offsets[i_ + 1];
  return odb_View<int>(d_->connectivity.data() + b, static_cast<int>(e - b));
}

const odb_SectionCategory& odb_Element::sectionCategory() const {
  int c = d_->categoryIndex[i_];
  if (!cats_ || c < 0 || static_cast<size_t>(c) >= cats_->size()) return emptyCategory();
  return (*cats_)[c];
}

odb_Element odb_SequenceElement::operator[](int i) const {
  if (i < 0 || i >= size())
    throw std::out_of_range("odb: element index " + std::to_string(i) + " out of range");
  return odb_Element(*d_, i, cats_);
}

odb_Set::odb_Set(odb::SetData d) : name_(d.name), type_(d.type), members_(std::move(d)) {}

odb_Set::odb_Set(std::string name, odb_Enum::odb_SetTypeEnum type, odb::Lazy<odb::SetData> members)
    : name_(std::move(name)), type_(type), members_(std::move(members)) {}

odb_SequenceString odb_Set::instanceNames() const {
  return odb_SequenceString(members_.get().instanceNames);
}

odb_View<int> odb_Set::part(const std::vector<int32_t>& v, const std::string* instance) const {
  const odb::SetData& d = members_.get();
  if (!instance) return odb_View<int>(v.data(), static_cast<int>(v.size()));
  int64_t start = 0;
  for (size_t k = 0; k < d.instanceNames.size(); ++k) {
    if (d.instanceNames[k] == *instance)
      return odb_View<int>(v.data() + start, static_cast<int>(d.counts[k]));
    start += d.counts[k];
  }
  throw std::out_of_range("odb: set '" + name_ + "' has no members in instance '" + *instance +
                          "'");
}

odb_View<int> odb_Set::nodes() const {
  return type_ == odb_Enum::NODE_SET ? part(members_.get().labels, nullptr) : odb_View<int>();
}
odb_View<int> odb_Set::nodes(const std::string& instanceName) const {
  return type_ == odb_Enum::NODE_SET ? part(members_.get().labels, &instanceName) : odb_View<int>();
}
odb_View<int> odb_Set::elements() const {
  return type_ != odb_Enum::NODE_SET ? part(members_.get().labels, nullptr) : odb_View<int>();
}
odb_View<int> odb_Set::elements(const std::string& instanceName) const {
  return type_ != odb_Enum::NODE_SET ? part(members_.get().labels, &instanceName) : odb_View<int>();
}
odb_View<int> odb_Set::faces() const {
  return type_ == odb_Enum::SURFACE_SET ? part(members_.get().faces, nullptr) : odb_View<int>();
}
odb_View<int> odb_Set::faces(const std::string& instanceName) const {
  return type_ == odb_Enum::SURFACE_SET ? part(members_.get().faces, &instanceName)
                                        : odb_View<int>();
}

const odb::SetListData* odb_DiscreteEntity::setList(odb_Enum::odb_SetTypeEnum kind) const {
  const auto& list = kind == odb_Enum::NODE_SET      ? p_.nodeSetList
                     : kind == odb_Enum::ELEMENT_SET ? p_.elementSetList
                                                     : p_.surfaceList;
  return list ? &list->get() : nullptr;
}

odb_ConnectorOrientation::odb_ConnectorOrientation(const odb::ConnectorOrientationData& d)
    : region_(d.region), has1_(d.hasCsys1), has2_(d.hasCsys2), c1_(d.csys1), c2_(d.csys2) {}
