#include "model/model_filter.h"

#include <algorithm>
#include <cstdlib>
#include <exception>

#include "model/element_section_numbers.h"

namespace odbs {

namespace {

enum CriterionKind : int32_t {
  kInstance = 1,
  kNodeSet = 2,
  kSection = 3,
  kMaterial = 4,
  kElementType = 5,
  kElementLabels = 6,
  kElementSet = 7,
  kNodeLabels = 8,
};

constexpr char kSectionPrefix[] = "Section-";

bool namesMaterial(const odb::SectionData& s, const std::string& material) {
  if (s.material == material) return true;
  return std::any_of(s.layers.begin(), s.layers.end(),
                     [&](const odb::LayerData& l) { return l.material == material; });
}

bool typeMatches(const std::string& type, const std::string& pattern) {
  if (!pattern.empty() && pattern.back() == '*') {
    return type.compare(0, pattern.size() - 1, pattern, 0, pattern.size() - 1) == 0;
  }
  return type == pattern;
}

template <typename R>
bool inRanges(int32_t label, const std::vector<R>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [label](const R& r) { return label >= r.first && label <= r.last; });
}

// Adds the members of set that lie in the entity named instance (per-instance form), or all
// of them (instance == nullptr); members that cannot be read add nothing.
void addMembers(const odb_Set& set, const std::string* instance, bool nodeSet,
                std::unordered_set<int32_t>& out) {
  try {
    odb_View<int> v = nodeSet ? (instance ? set.nodes(*instance) : set.nodes())
                              : (instance ? set.elements(*instance) : set.elements());
    out.insert(v.begin(), v.end());
  } catch (const std::exception&) {
    // no members in that entity, or a damaged file
  }
}

const odb_SetRepository& setsOf(const odb_DiscreteEntity& e, bool nodeSets) {
  return nodeSets ? e.nodeSets() : e.elementSets();
}

}  // namespace

ModelFilter::ModelFilter(const std::vector<Criterion>& criteria, odb_Odb& odb,
                         const SectionTables& tables)
    : assembly_(odb.rootAssembly()), tables_(tables), multi_(assembly_.instances().size() > 1) {
  const auto& api = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
  for (const Criterion& c : criteria) {
    int32_t last = std::atoi(c.text.c_str());
    switch (c.kind) {
      case kInstance:
        instances_.push_back(c.text);
        break;
      case kNodeSet:
        nodeSets_.push_back(c.text);
        break;
      case kSection: {
        hasSection_ = true;
        int32_t n = c.value > 0 ? c.value : tables.numberOf(c.text);
        if (n == 0) n = tables.numberOf(kSectionPrefix + c.text);
        if (n != 0) sections_.insert(n);
        break;
      }
      case kMaterial:
        hasMaterial_ = true;
        for (kseO_SectionContainerIT it(api.sections()); !it.isDone(); it.next()) {
          const odb_Section& s = it.currentValue();
          if (namesMaterial(s.data(), c.text)) materialSections_.insert(tables.numberOf(s.name()));
        }
        break;
      case kElementType:
        types_.push_back(c.text);
        break;
      case kElementLabels:
        elementRanges_.push_back({c.value, last});
        break;
      case kElementSet:
        elementSets_.push_back(c.text);
        break;
      case kNodeLabels:
        nodeRanges_.push_back({c.value, last});
        break;
      default:
        break;
    }
  }
}

std::unordered_set<int32_t> ModelFilter::setMembers(const odb_DiscreteEntity& entity,
                                                    const std::vector<std::string>& names,
                                                    bool nodeSets) const {
  std::unordered_set<int32_t> out;
  const bool isAssembly = &entity == &assembly_;
  for (const std::string& name : names) {
    size_t dot = name.find('.');
    std::string owner = dot == std::string::npos ? std::string() : name.substr(0, dot);
    std::string setName = dot == std::string::npos ? name : name.substr(dot + 1);
    if (dot == std::string::npos || owner == assembly_.name()) {
      if (const odb_Set* s = setsOf(assembly_, nodeSets).find(setName)) {
        addMembers(*s, &entity.name(), nodeSets, out);
      }
      if (dot != std::string::npos || multi_ || isAssembly) continue;
    } else if (owner != entity.name() || isAssembly) {
      continue;
    }
    try {
      if (const odb_Set* s = setsOf(entity, nodeSets).find(setName)) {
        addMembers(*s, nullptr, nodeSets, out);
      }
    } catch (const std::exception&) {
      // a set list that cannot be read holds no set
    }
  }
  return out;
}

bool ModelFilter::elementPasses(const odb::ElementData& d, size_t i, int32_t section,
                                const std::unordered_set<int32_t>& setMembers,
                                const std::unordered_set<int32_t>* nodes) const {
  const int32_t label = d.labels[i];
  if (hasSection_ && !sections_.count(section)) return false;
  if (hasMaterial_ && !materialSections_.count(section)) return false;
  if (!types_.empty()) {
    const std::string& type = d.typeNames[size_t(d.typeIndex[i])];
    if (std::none_of(types_.begin(), types_.end(),
                     [&](const std::string& t) { return typeMatches(type, t); })) {
      return false;
    }
  }
  if (!elementRanges_.empty() && !inRanges(label, elementRanges_)) return false;
  if (!elementSets_.empty() && !setMembers.count(label)) return false;
  if (nodes) {
    for (int64_t k = d.offsets[i]; k < d.offsets[i + 1]; ++k) {
      if (!nodes->count(d.connectivity[size_t(k)])) return false;
    }
  }
  return true;
}

EntitySelection ModelFilter::select(const odb_DiscreteEntity& entity,
                                    const ElementSectionMap& sections) const {
  const odb_SequenceNode nodeSeq = entity.nodes();
  const odb_SequenceElement elementSeq = entity.elements();
  const std::vector<int32_t>& nodeLabels = nodeSeq.labels();
  const odb::ElementData& d = elementSeq.data();
  EntitySelection sel;
  sel.nodes.assign(nodeLabels.size(), 0);
  sel.elements.assign(d.labels.size(), 0);
  if (!instances_.empty() &&
      std::find(instances_.begin(), instances_.end(), entity.name()) == instances_.end()) {
    return sel;
  }

  const bool nodeCriteria = !nodeSets_.empty() || !nodeRanges_.empty();
  const bool elementCriteria = hasSection_ || hasMaterial_ || !types_.empty() ||
                               !elementRanges_.empty() || !elementSets_.empty();
  std::unordered_set<int32_t> chosenNodes;
  if (nodeCriteria) {
    std::unordered_set<int32_t> inSets = setMembers(entity, nodeSets_, true);
    for (size_t i = 0; i < nodeLabels.size(); ++i) {
      int32_t label = nodeLabels[i];
      if (!nodeSets_.empty() && !inSets.count(label)) continue;
      if (!nodeRanges_.empty() && !inRanges(label, nodeRanges_)) continue;
      sel.nodes[i] = 1;
      chosenNodes.insert(label);
    }
  }

  std::unordered_set<int32_t> inSets = setMembers(entity, elementSets_, false);
  ElementSectionNumbers numbers(elementSeq, sections, tables_);
  std::unordered_set<int32_t> usedNodes;
  for (size_t i = 0; i < d.labels.size(); ++i) {
    int32_t section = numbers.of(i);
    if (!elementPasses(d, i, section, inSets, nodeCriteria ? &chosenNodes : nullptr)) continue;
    sel.elements[i] = 1;
    if (section != 0) sel.sectionsUsed.insert(section);
    if (!nodeCriteria && elementCriteria) {
      usedNodes.insert(d.connectivity.begin() + d.offsets[i],
                       d.connectivity.begin() + d.offsets[i + 1]);
    }
  }
  if (!nodeCriteria) {
    for (size_t i = 0; i < nodeLabels.size(); ++i) {
      sel.nodes[i] = !elementCriteria || usedNodes.count(nodeLabels[i]) ? 1 : 0;
    }
  }
  return sel;
}

}  // namespace odbs
