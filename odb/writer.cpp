#include "odb/writer.h"

#include <atomic>
#include <set>
#include <stdexcept>
#include <utility>

#include "odb/format.h"
#include "odb/h5.h"
#include "odb/model_store.h"
#include "odb/names.h"
#include "odb/results_store.h"
#include "platform/file_safety.h"
#include "platform/joinable_thread.h"
#include "platform/platform.h"

namespace odb {
namespace {

[[noreturn]] void bad(const std::string& what) {
  throw std::invalid_argument("odb writer: " + what);
}

void checkSet(const SetData& s) {
  if (s.type < odb_Enum::NODE_SET || s.type > odb_Enum::SURFACE_SET)
    bad("set '" + s.name + "' has an unknown type");
  if (s.counts.size() != s.instanceNames.size())
    bad("set '" + s.name + "': counts do not match instances");
  int64_t total = 0;
  for (int64_t c : s.counts) {
    if (c < 0) bad("set '" + s.name + "': negative count");
    total += c;
  }
  if (total != static_cast<int64_t>(s.labels.size()))
    bad("set '" + s.name + "': counts do not match labels");
  if (s.type == odb_Enum::SURFACE_SET && s.faces.size() != s.labels.size())
    bad("surface '" + s.name + "' needs one face per element");
  if (s.type != odb_Enum::SURFACE_SET && !s.faces.empty())
    bad("set '" + s.name + "' is not a surface");
}

void checkUnique(std::set<std::string>& seen, const std::string& kind, const std::string& name) {
  if (!seen.insert(name).second) bad("duplicate " + kind + " '" + name + "'");
}

void checkSets(const std::vector<SetData>& sets, odb_Enum::odb_SetTypeEnum type,
               const std::string& kind) {
  std::set<std::string> seen;
  for (const auto& s : sets) {
    checkSet(s);
    if (s.type != type) bad(kind + " '" + s.name + "' has the wrong type");
    checkUnique(seen, kind, s.name);
  }
}

void checkRegionPair(std::set<std::string>& seen, const RegionPairData& p) {
  if (p.name.empty()) bad("a region pair needs a name");
  checkUnique(seen, "region pair", p.name);
  if (p.kind != kContactPair && p.kind != kTie)
    bad("region pair '" + p.name + "' has an unknown kind");
  if (p.first.empty() || p.second.empty())
    bad("region pair '" + p.name + "' needs two region names");
}

void checkEntity(const EntityData& e, size_t categories) {
  const NodeData& n = e.nodes;
  if (n.dimension < 1 || n.dimension > 3) bad("nodes of '" + e.name + "' need 1 to 3 coordinates");
  if (n.coordinates.size() != n.labels.size() * size_t(n.dimension))
    bad("nodes of '" + e.name + "': coordinates do not match labels");
  const ElementData& el = e.elements;
  if (el.typeIndex.size() != el.size() || el.categoryIndex.size() != el.size() ||
      el.offsets.size() != el.size() + 1 || el.offsets.back() != int64_t(el.connectivity.size()))
    bad("elements of '" + e.name + "' are inconsistent");
  for (int32_t c : el.categoryIndex)
    if (c < -1 || (c >= 0 && size_t(c) >= categories))
      bad("an element of '" + e.name + "' names an unknown section category");
  checkSets(e.nodeSets, odb_Enum::NODE_SET, "node set");
  checkSets(e.elementSets, odb_Enum::ELEMENT_SET, "element set");
  checkSets(e.surfaces, odb_Enum::SURFACE_SET, "surface");
  for (const auto& a : e.sectionAssignments) checkSet(a.region);
}

}  // namespace

void validateModel(const ModelData& m) {
  std::set<std::string> seen;
  for (const auto& i : m.instances) checkUnique(seen, "instance", i.name);
  seen.clear();
  for (const auto& c : m.sectionCategories) checkUnique(seen, "section category", c.name);
  seen.clear();
  for (const auto& s : m.sections) {
    checkUnique(seen, "section", s.name);
    if (s.kind < kseO_OTHER_SECTION || s.kind > kseO_LAST_SECTION_KIND)
      bad("section '" + s.name + "' has an unknown kind");
  }
  seen.clear();
  for (const auto& mat : m.materials) checkUnique(seen, "material", mat.name);
  checkEntity(m.assembly, m.sectionCategories.size());
  for (const auto& i : m.instances) checkEntity(i, m.sectionCategories.size());
  for (const auto& c : m.connectorOrientations) checkSet(c.region);
  seen.clear();
  for (const auto& p : m.regionPairs) checkRegionPair(seen, p);
}

void EntityWriter::addNodes(const std::vector<int32_t>& labels,
                            const std::vector<float>& coordinates, int dimension) {
  if (dimension < 1 || dimension > 3) bad("nodes need 1 to 3 coordinates");
  if (!e_->nodes.labels.empty() && dimension != e_->nodes.dimension)
    bad("nodes of '" + e_->name + "' must all have the same dimension");
  if (coordinates.size() != labels.size() * size_t(dimension))
    bad("coordinates do not match labels");
  e_->nodes.dimension = dimension;
  e_->nodes.labels.insert(e_->nodes.labels.end(), labels.begin(), labels.end());
  e_->nodes.coordinates.insert(e_->nodes.coordinates.end(), coordinates.begin(), coordinates.end());
}

void EntityWriter::addElements(const std::string& type, const std::vector<int32_t>& labels,
                               int nodesPerElement, const std::vector<int32_t>& connectivity,
                               int32_t sectionCategory) {
  if (nodesPerElement < 0 || connectivity.size() != labels.size() * size_t(nodesPerElement))
    bad("connectivity of " + type + " elements does not match their labels");
  for (size_t i = 0; i < labels.size(); ++i)
    e_->elements.add(type, labels[i], connectivity.data() + i * size_t(nodesPerElement),
                     nodesPerElement, sectionCategory);
}

void EntityWriter::addElement(const std::string& type, int32_t label,
                              const std::vector<int32_t>& nodes, int32_t sectionCategory) {
  e_->elements.add(type, label, nodes.data(), static_cast<int>(nodes.size()), sectionCategory);
}

void EntityWriter::addNodeSet(const std::string& name, const std::vector<int32_t>& labels) {
  SetData s;
  s.name = name;
  s.type = odb_Enum::NODE_SET;
  s.addMembers(e_->name, labels);
  addSet(std::move(s));
}

void EntityWriter::addElementSet(const std::string& name, const std::vector<int32_t>& labels) {
  SetData s;
  s.name = name;
  s.type = odb_Enum::ELEMENT_SET;
  s.addMembers(e_->name, labels);
  addSet(std::move(s));
}

void EntityWriter::addSurface(const std::string& name, const std::vector<int32_t>& elementLabels,
                              const std::vector<int32_t>& faces) {
  SetData s;
  s.name = name;
  s.type = odb_Enum::SURFACE_SET;
  s.addMembers(e_->name, elementLabels, faces);
  addSet(std::move(s));
}

void EntityWriter::addSet(SetData set) {
  checkSet(set);
  std::vector<SetData>& list = set.type == odb_Enum::NODE_SET      ? e_->nodeSets
                               : set.type == odb_Enum::ELEMENT_SET ? e_->elementSets
                                                                   : e_->surfaces;
  for (const auto& s : list)
    if (s.name == set.name) bad("duplicate set '" + set.name + "' in '" + e_->name + "'");
  list.push_back(std::move(set));
}

void EntityWriter::addSectionAssignment(const std::string& sectionName, SetData region,
                                        const SectionPlacement& placement) {
  checkSet(region);
  e_->sectionAssignments.push_back({sectionName, std::move(region), placement});
}

namespace {

namespace os = odbs::platform;

// Refuses an output that would destroy something: a folder, a device, a FIFO or any
// other file that is not a regular one, or one of the writer's own inputs.
void checkOutput(const std::string& path, const std::vector<std::string>& inputs) {
  os::FileKind kind = os::fileKind(path);
  if (kind == os::FileKind::kDirectory || kind == os::FileKind::kOther)
    throw std::runtime_error("odb writer: '" + path +
                             "' is not a regular file; refusing to replace it");
  for (const auto& in : inputs)
    if (kind == os::FileKind::kRegular && os::sameFile(path, in))
      throw std::runtime_error("odb writer: the output '" + path + "' is the input '" + in +
                               "'; refusing to replace it");
}

// Removes the temporaries of writers of path whose process is gone (killed before they
// could clean up): path.tmp<pid> beside it.
void removeStaleTemporaries(const std::string& path) {
  std::string dir = os::directoryOf(path);
  std::string prefix = path.substr(path.find_last_of('/') + 1) + ".tmp";
  for (const auto& name : os::listDirectory(dir)) {
    if (name.size() <= prefix.size() || name.compare(0, prefix.size(), prefix) != 0) continue;
    std::string digits = name.substr(prefix.size());
    if (digits.size() > 9 || digits.find_first_not_of("0123456789") != std::string::npos) continue;
    int pid = std::stoi(digits);
    if (pid == os::processId() || os::processAlive(pid)) continue;
    std::string stale = dir + "/" + name;
    if (os::fileKind(stale) == os::FileKind::kRegular) os::removeFile(stale);
  }
}

}  // namespace

Writer::Writer(const std::string& path, const std::vector<std::string>& inputs)
    : path_(path), tmpPath_(path + ".tmp" + std::to_string(odbs::platform::processId())) {
  checkOutput(path, inputs);
  removeStaleTemporaries(path);
  os::removeOnSignal(tmpPath_);
  try {
    file_ = std::make_unique<h5::File>(h5::File::create(tmpPath_));
    h5::Group root = file_->root();
    root.setString(name::kFormat, kFormatTag);
    root.setInt(name::kFormatVersion, kFormatVersion);
    assembly_.name = "ASSEMBLY";
    results_ = std::make_unique<ResultsWriter>(std::move(root));
  } catch (...) {
    file_.reset();
    os::removeFile(tmpPath_);
    os::forgetOnSignal(tmpPath_);
    throw;
  }
}

// A sync of the temporary file on a thread of its own; done is set when it has returned.
struct Writer::BackgroundSync {
  std::atomic<bool> done{false};
  os::JoinableThread thread;
};

Writer::~Writer() {
  joinSync();
  if (closed_) return;
  try {
    results_.reset();
    file_.reset();
  } catch (...) {
  }
  os::removeFile(tmpPath_);
  os::forgetOnSignal(tmpPath_);
}

void Writer::checkOpen() const {
  if (closed_) throw std::logic_error("odb writer: the database is already closed");
}

void Writer::checkModelOpen() const {
  checkOpen();
  if (modelWritten_) throw std::logic_error("odb writer: the model is already written");
}

void Writer::setName(const std::string& name) {
  checkModelOpen();
  header_.name = name;
}
void Writer::setTitle(const std::string& title) {
  checkModelOpen();
  header_.title = title;
}
void Writer::setDescription(const std::string& d) {
  checkModelOpen();
  header_.description = d;
}
void Writer::setAnalysisCode(int code) {
  checkModelOpen();
  header_.analysisCode = code;
}
void Writer::setAssemblyName(const std::string& name) {
  checkModelOpen();
  assembly_.name = name;
}

void Writer::setAnnotation(const std::string& key, const std::string& text) {
  checkModelOpen();
  for (auto& [k, t] : header_.annotations)
    if (k == key) {
      t = text;
      return;
    }
  header_.annotations.emplace_back(key, text);
}

EntityWriter Writer::addInstance(const std::string& name) {
  checkOpen();
  for (const auto& i : instances_)
    if (i.name == name) bad("duplicate instance '" + name + "'");
  for (const auto& written : writtenInstances_)
    if (written == name) bad("duplicate instance '" + name + "'");
  checkModelOpen();
  instances_.emplace_back();
  instances_.back().name = name;
  return EntityWriter(&instances_.back());
}

int32_t Writer::addSectionCategory(const SectionCategoryData& category) {
  checkModelOpen();
  for (const auto& c : header_.sectionCategories)
    if (c.name == category.name) bad("duplicate section category '" + category.name + "'");
  header_.sectionCategories.push_back(category);
  return static_cast<int32_t>(header_.sectionCategories.size() - 1);
}

void Writer::addSection(const SectionData& section) {
  checkModelOpen();
  header_.sections.push_back(section);
}
void Writer::addMaterial(const MaterialData& material) {
  checkModelOpen();
  header_.materials.push_back(material);
}
void Writer::addConnectorOrientation(const ConnectorOrientationData& o) {
  checkModelOpen();
  checkSet(o.region);
  header_.connectorOrientations.push_back(o);
}

void Writer::addRegionPair(const RegionPairData& pair) {
  checkModelOpen();
  header_.regionPairs.push_back(pair);
}

void Writer::addStep(const StepData& step) {
  checkOpen();
  results_->addStep(step);
}
void Writer::addFrame(const FrameData& frame) {
  checkOpen();
  results_->addFrame(frame);
}
void Writer::addFieldOutput(const FieldOutputData& field) {
  checkOpen();
  results_->addFieldOutput(field);
}
void Writer::addFieldBlock(const FieldBlockData& block) {
  checkOpen();
  results_->addFieldBlock(block);
  startWriteback(4 * (block.data.size() + block.conjugateData.size() + block.nodeLabels.size() +
                      block.elementLabels.size() + block.integrationPoints.size()) +
                 8 * (block.dataDouble.size() + block.conjugateDataDouble.size()));
}
void Writer::addHistoryRegion(const HistoryRegionData& region) {
  checkOpen();
  results_->addHistoryRegion(region);
  size_t bytes = 0;
  for (const HistoryOutputData& output : region.outputs) {
    bytes += 4 * (output.data.size() + output.conjugateData.size()) + 8 * output.frameValues.size();
  }
  startWriteback(bytes);
}

void Writer::startWriteback(size_t bytes) {
  // The file is looked at only once the arrays handed over since the last look could have
  // grown it by a step: not once per block or region.
  constexpr int64_t kStep = int64_t(8) << 20;
  handedOver_ += bytes;
  if (handedOver_ < static_cast<size_t>(kStep)) return;
  handedOver_ = 0;
  os::FileStat st;
  if (!os::statFile(tmpPath_, &st) || st.size - writebackFrom_ < kStep) return;
  writebackFrom_ = st.size;
  if (sync_ && !sync_->done) {
    os::startWriteback(tmpPath_);
    return;
  }
  joinSync();
  sync_ = std::make_unique<BackgroundSync>();
  BackgroundSync* sync = sync_.get();
  // The thread only reads the path's copy and sets its own flag; the writer joins it before
  // it closes, renames or removes the file. A failed sync here is repeated by close().
  if (!sync->thread.start([sync, path = tmpPath_] {
        os::syncFile(path);
        sync->done = true;
      })) {
    sync_.reset();
    os::startWriteback(tmpPath_);
  }
}

void Writer::joinSync() {
  if (!sync_) return;
  sync_->thread.join();
  sync_.reset();
}

ModelData Writer::model() const {
  ModelData m = header_;
  m.assembly = assembly_;
  m.instances.assign(instances_.begin(), instances_.end());
  return m;
}

ModelData Writer::takeValidModel() {
  ModelData m = std::move(header_);
  m.assembly = std::move(assembly_);
  m.instances.assign(std::make_move_iterator(instances_.begin()),
                     std::make_move_iterator(instances_.end()));
  instances_.clear();
  try {
    validateModel(m);
  } catch (...) {
    // Nothing written: the writer holds the model as before.
    assembly_ = std::move(m.assembly);
    instances_.assign(std::make_move_iterator(m.instances.begin()),
                      std::make_move_iterator(m.instances.end()));
    m.instances.clear();
    header_ = std::move(m);
    throw;
  }
  return m;
}

void Writer::writeModel() {
  checkOpen();
  if (modelWritten_) return;
  ModelData m = takeValidModel();
  storeModel(file_->root(), m);
  modelWritten_ = true;
  startWriteback(SIZE_MAX / 2);  // the model's size is not counted: look at the file
  // The header fields stay for model().
  header_ = ModelData();
  header_.name = m.name;
  header_.title = m.title;
  header_.description = m.description;
  header_.analysisCode = m.analysisCode;
  header_.annotations = std::move(m.annotations);
  assembly_ = EntityData();
  assembly_.name = m.assembly.name;
  for (const EntityData& instance : m.instances) writtenInstances_.push_back(instance.name);
}

void Writer::close() {
  checkOpen();
  if (!modelWritten_) {
    // Checked before the results are finished: a bad model writes nothing more.
    ModelData m = takeValidModel();
    results_->finish();
    results_.reset();
    storeModel(file_->root(), m);
  } else {
    results_->finish();
    results_.reset();
  }
  file_->close();
  file_.reset();
  joinSync();
  // The data reaches the disk before the new name does, and the new name after the rename:
  // a power loss leaves the old file or the whole new one, never an empty one.
  std::string failure;
  if (!os::syncFile(tmpPath_)) {
    failure = "cannot write '" + tmpPath_ + "' to the disk";
  } else if (int err = os::renameFile(tmpPath_, path_); err != 0) {
    failure =
        "cannot rename '" + tmpPath_ + "' to '" + path_ + "' (error " + std::to_string(err) + ")";
  } else {
    os::syncDirectory(os::directoryOf(path_));
  }
  closed_ = true;
  if (!failure.empty()) os::removeFile(tmpPath_);
  os::forgetOnSignal(tmpPath_);
  if (!failure.empty()) throw std::runtime_error("odb writer: " + failure);
}

void writeModel(const std::string& path, const ModelData& m) {
  Writer w(path);
  addModel(w, m);
  w.close();
}

void addModel(Writer& w, const ModelData& m) {
  w.setName(m.name);
  w.setTitle(m.title);
  w.setDescription(m.description);
  w.setAnalysisCode(m.analysisCode);
  for (const auto& [k, t] : m.annotations) w.setAnnotation(k, t);
  for (const auto& c : m.sectionCategories) w.addSectionCategory(c);
  for (const auto& s : m.sections) w.addSection(s);
  for (const auto& mat : m.materials) w.addMaterial(mat);
  for (const auto& c : m.connectorOrientations) w.addConnectorOrientation(c);
  for (const auto& p : m.regionPairs) w.addRegionPair(p);
  w.setAssemblyName(m.assembly.name);
  *w.rootAssembly().data() = m.assembly;
  for (const auto& i : m.instances) *w.addInstance(i.name).data() = i;
}

}  // namespace odb
