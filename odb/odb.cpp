// Opening a database: format check, catalogue read, lazy parts; the API entry points.
#include "odb/odb.h"

#include <mutex>
#include <set>
#include <stdexcept>

#include "odb/model_store.h"
#include "odb/names.h"
#include "odb/repository.h"
#include "odb/results_store.h"
#include "platform/file_safety.h"

namespace odb {

int checkFormat(const h5::Group& root, const std::string& path) {
  if (!root.hasAttr(name::kFormat) || root.getString(name::kFormat) != kFormatTag)
    h5::fail("'" + path + "' is an HDF5 file but not a results database (no format tag)");
  int64_t v = root.getInt(name::kFormatVersion);
  if (v > kFormatVersion)
    h5::fail("'" + path + "' has format version " + std::to_string(v) +
             ", newer than this library's " + std::to_string(kFormatVersion));
  if (v < kOldestFormatVersion)
    h5::fail("'" + path + "' has unknown format version " + std::to_string(v));
  return static_cast<int>(v);
}

namespace {

std::shared_ptr<Source> openSource(const std::string& path) {
  // Only regular files are opened: a FIFO would block the open forever, a device could
  // be read without end.
  switch (odbs::platform::fileKind(path)) {
    case odbs::platform::FileKind::kMissing:
      h5::fail("cannot open '" + path + "': no such file");
    case odbs::platform::FileKind::kDirectory:
      h5::fail("cannot open '" + path + "': it is a folder");
    case odbs::platform::FileKind::kOther:
      h5::fail("cannot open '" + path + "': not a regular file");
    case odbs::platform::FileKind::kRegular:
      break;
  }
  if (!h5::isHdf5(path))
    h5::fail("'" + path + "' is not a results database (not an HDF5 file, or truncated)");
  auto src = std::make_shared<Source>();
  src->file = h5::File::open(path, true);
  src->version = checkFormat(src->file.root(), path);
  return src;
}

std::string baseName(const std::string& path) {
  size_t slash = path.find_last_of('/');
  std::string n = slash == std::string::npos ? path : path.substr(slash + 1);
  size_t dot = n.rfind('.');
  return dot == std::string::npos || dot == 0 ? n : n.substr(0, dot);
}

std::mutex& liveMutex() {
  static std::mutex m;
  return m;
}
std::set<odb_Odb*>& liveOdbs() {
  static std::set<odb_Odb*> s;
  return s;
}

}  // namespace
}  // namespace odb

odb_Odb::odb_Odb(const std::string& path, bool readOnly, bool allowOldVersion)
    : path_(path), readOnly_(readOnly) {
  try {
    std::shared_ptr<odb::Source> src = odb::openSource(path);
    if (src->version < odb::kFormatVersion && !allowOldVersion)
      odb::h5::fail("'" + path + "' has format version " + std::to_string(src->version) +
                    " and needs an upgrade (upgradeOdb)");
    src_ = src;
    odb::h5::Group root = src_->file.root();
    name_ = root.getStringOr(odb::name::kName, "");
    if (name_.empty()) name_ = odb::baseName(path);
    title_ = root.getStringOr(odb::name::kTitle, "");
    description_ = root.getStringOr(odb::name::kDescription, "");
    jobData_ =
        odb_JobData(static_cast<int>(root.getIntOr(odb::name::kAnalysisCode, odb_Enum::IMPLICIT)));
    for (auto& [key, text] : odb::loadAnnotations(root))
      userData_.mutableTexts().insert(key, odb_Text(std::move(text)));
    auto cats = std::make_shared<std::vector<odb_SectionCategory>>();
    for (const auto& c : odb::loadSectionCategories(root)) {
      cats->emplace_back(c);
      categoryRepo_.insert(c.name, odb_SectionCategory(c));
    }
    categories_ = cats;
    odb::h5::Group a = root.open(odb::name::kAssembly);
    odb_InstanceRepository instances;
    if (a.has(odb::name::kInstances)) {
      odb::h5::Group ig = a.open(odb::name::kInstances);
      std::vector<std::string> names = ig.readStrings(odb::name::kNames);
      for (size_t i = 0; i < names.size(); ++i) {
        std::string p = std::string(odb::name::kAssembly) + "/" + odb::name::kInstances + "/" +
                        std::to_string(i);
        instances.insert(names[i],
                         odb_Instance(names[i], odb::lazyEntityParts(src_, p, categories_)));
      }
    }
    odb::SourcePtr s = src_;
    odb::Lazy<odb_SequenceConnectorOrientation> orientations(
        std::function<odb_SequenceConnectorOrientation()>([s] {
          odb_SequenceConnectorOrientation seq;
          for (const auto& c : odb::loadConnectorOrientations(s->group(odb::name::kAssembly)))
            seq.append(odb_ConnectorOrientation(c));
          return seq;
        }));
    assembly_ = std::make_unique<odb_Assembly>(
        a.getStringOr(odb::name::kName, "ASSEMBLY"),
        odb::lazyEntityParts(src_, odb::name::kAssembly, categories_), std::move(instances),
        std::move(orientations));
    regionPairs_ = odb::Lazy<std::vector<odb::RegionPairData>>(
        std::function<std::vector<odb::RegionPairData>()>(
            [s] { return odb::loadRegionPairs(s->group(odb::name::kAssembly)); }));
    steps_ = odb::Lazy<odb_StepRepository>(
        std::function<odb_StepRepository()>([s] { return odb::loadSteps(s); }));
  } catch (const std::out_of_range& e) {
    throw std::runtime_error(std::string("odb: damaged database '") + path + "': " + e.what());
  }
}

odb_Odb::~odb_Odb() = default;

void odb_Odb::closeFiles() {
  if (!filesClosed_.exchange(true)) src_->file.closeFromAnotherThread();
}

odb_ApiExtension& odb_Odb::extendApi(int apiType) {
  if (apiType == odb_Enum::SECTION_API) {
    if (!sectionApi_) {
      kseO_SectionContainer c;
      for (auto& d : odb::loadSections(src_->file.root())) {
        std::string n = d.name;
        c.insert(n, std::shared_ptr<const odb_Section>(kseO_makeSection(std::move(d))));
      }
      sectionApi_ = std::make_unique<kseO_ApiExtension>(std::move(c));
    }
    return *sectionApi_;
  }
  if (apiType == odb_Enum::MATERIAL_API) {
    if (!materialApi_) {
      kmaO_MaterialContainer c;
      for (auto& d : odb::loadMaterials(src_->file.root())) {
        std::string n = d.name;
        c.insert(n, std::make_shared<const kmaO_Material>(std::move(d)));
      }
      materialApi_ = std::make_unique<kmaO_ApiExtension>(std::move(c));
    }
    return *materialApi_;
  }
  throw std::invalid_argument("odb: unknown API extension type " + std::to_string(apiType));
}

void odb_initializeAPI() {
  odb::h5::silenceErrors();
}

void odb_finalizeAPI() {
  std::set<odb_Odb*> live;
  {
    std::lock_guard<std::mutex> lock(odb::liveMutex());
    live = odb::liveOdbs();
  }
  odb_OdbRepository::instance().clear();
  for (odb_Odb* o : live) delete o;
}

odb_Odb& openOdb(const std::string& path, bool readOnly) {
  auto odb = std::make_unique<odb_Odb>(path, readOnly);
  std::lock_guard<std::mutex> lock(odb::liveMutex());
  odb::liveOdbs().insert(odb.get());
  return *odb.release();
}

void closeOdb(odb_Odb& odb) {
  odb_OdbRepository::instance().forget(&odb);
  {
    std::lock_guard<std::mutex> lock(odb::liveMutex());
    if (odb::liveOdbs().erase(&odb) == 0) return;  // not opened by openOdb, or closed already
  }
  delete &odb;
}

bool isUpgradeRequiredForOdb(const std::string& path) {
  std::shared_ptr<odb::Source> src = odb::openSource(path);
  return src->version < odb::kFormatVersion;
}
