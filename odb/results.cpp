#include "odb/results.h"

#include <stdexcept>

odb_FieldLocation::odb_FieldLocation(const odb::FieldLocationData& d)
    : position_(static_cast<odb_Enum::odb_ResultPositionEnum>(d.position)) {
  for (const auto& p : d.sectionPoints) points_.append(odb_SectionPoint(p));
}

odb_FieldBulkData::odb_FieldBulkData(odb::FieldBlockData d)
    : d_(std::move(d)), rows_(d_.rows()), sectionPoint_(d_.sectionPoint), instance_(d_.instance) {}

const odb_FieldBulkData& odb_SequenceFieldBulkData::operator[](int i) const {
  const std::vector<odb_FieldBulkData>& v = blocks_->get();
  if (i < 0 || static_cast<size_t>(i) >= v.size())
    throw std::out_of_range("odb: block index " + std::to_string(i) + " out of range");
  return v[static_cast<size_t>(i)];
}

namespace {
std::shared_ptr<odb::Lazy<std::vector<odb_FieldBulkData>>> lazyBlocks(
    const odb_FieldOutput::BlockLoader& load, int position) {
  return std::make_shared<odb::Lazy<std::vector<odb_FieldBulkData>>>(
      std::function<std::vector<odb_FieldBulkData>()>([load, position] { return load(position); }));
}
}  // namespace

odb_FieldOutput::odb_FieldOutput(odb::FieldOutputData d, BlockLoader loadBlocks)
    : d_(std::move(d)), labels_(d_.componentLabels), load_(std::move(loadBlocks)) {
  for (const auto& l : d_.locations) locations_.append(odb_FieldLocation(l));
  blocks_ = lazyBlocks(load_, -1);
}

odb_FieldOutput odb_FieldOutput::getSubset(int position) const {
  odb_FieldOutput sub = *this;
  sub.locations_ = odb_Sequence<odb_FieldLocation>();
  sub.d_.locations.clear();
  for (const auto& l : d_.locations)
    if (l.position == position) {
      sub.d_.locations.push_back(l);
      sub.locations_.append(odb_FieldLocation(l));
    }
  sub.blocks_ = lazyBlocks(load_, position);
  return sub;
}

odb_HistoryPoint::odb_HistoryPoint(const odb::HistoryPointData& d)
    : position_(static_cast<odb_Enum::odb_ResultPositionEnum>(d.position)),
      node_(d.nodeLabel),
      element_(d.elementLabel, d.elementType),
      ip_(d.integrationPoint),
      sectionPoint_(d.sectionPoint),
      region_(d.region),
      instance_(d.instance) {}

odb_HistoryOutput::odb_HistoryOutput(std::string name, std::string description, int type,
                                     odb::Lazy<odb::HistoryOutputData> samples)
    : name_(std::move(name)),
      description_(std::move(description)),
      type_(type),
      raw_(std::move(samples)) {}

const odb_HistoryOutput::Samples& odb_HistoryOutput::samples() const {
  if (!samples_) {
    const odb::HistoryOutputData& r = raw_.get();
    auto s = std::make_shared<Samples>();
    size_t w = r.width > 0 ? static_cast<size_t>(r.width) : 1;
    for (size_t i = 0; i + w <= r.data.size(); i += w)
      s->data.append(odb_SequenceFloat(
          std::vector<float>(r.data.begin() + long(i), r.data.begin() + long(i + w))));
    for (size_t i = 0; i + w <= r.conjugateData.size(); i += w)
      s->conjugate.append(odb_SequenceFloat(std::vector<float>(
          r.conjugateData.begin() + long(i), r.conjugateData.begin() + long(i + w))));
    samples_ = s;
  }
  return *samples_;
}

const odb_SequenceSequenceFloat& odb_HistoryOutput::data() const {
  return samples().data;
}
const odb_SequenceSequenceFloat& odb_HistoryOutput::conjugateData() const {
  return samples().conjugate;
}

const odb_Step& odb_StepRepository::get(const std::string& name) const {
  auto it = index_.find(name);
  if (it == index_.end()) throw std::out_of_range("odb: no step '" + name + "'");
  return *steps_[it->second];
}

const odb_Step& odb_StepRepository::at(int i) const {
  if (i < 0 || static_cast<size_t>(i) >= steps_.size())
    throw std::out_of_range("odb: step index " + std::to_string(i) + " out of range");
  return *steps_[static_cast<size_t>(i)];
}

void odb_StepRepository::add(std::unique_ptr<odb_Step> s) {
  if (isMember(s->name())) throw std::invalid_argument("odb: duplicate step '" + s->name() + "'");
  index_[s->name()] = steps_.size();
  names_.append(s->name());
  steps_.push_back(std::move(s));
}
