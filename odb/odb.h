// The database: odb_Odb and the process-wide entry points of the database API.
//
//   odb_initializeAPI();
//   odb_Odb& odb = openOdb("job.odb", true);     // reads the catalogue only
//   const odb_Assembly& a = odb.rootAssembly();  // arrays load on first use
//   closeOdb(odb);
//   odb_finalizeAPI();
//
// Every failure throws std::runtime_error (std::out_of_range for a bad index or key) with a
// message that names the file and what is wrong. A database must be used by one thread
// at a time; odb_Odb::closeFiles is the one call another thread may make meanwhile.
#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "odb/containers.h"
#include "odb/format.h"
#include "odb/lazy.h"
#include "odb/materials.h"
#include "odb/model.h"
#include "odb/repository.h"
#include "odb/results.h"
#include "odb/sections.h"

class odb_JobData {
 public:
  explicit odb_JobData(int code = odb_Enum::IMPLICIT) : code_(code) {}
  // The odb_AnalysisCodeEnum value of the solver run.
  int analysisCode() const { return code_; }

 private:
  int code_;
};

class odb_Text {
 public:
  explicit odb_Text(std::string t = "") : text_(std::move(t)) {}
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// Named annotation texts of the database (the key "xml" holds the annotation text).
class odb_UserData {
 public:
  const odb_Repository<odb_Text>& annotationObjects() const { return texts_; }
  // The text under key, or nullptr.
  const odb_Text* annotationObjects(const std::string& key) const { return texts_.find(key); }
  odb_Repository<odb_Text>& mutableTexts() { return texts_; }

 private:
  odb_Repository<odb_Text> texts_;
};

// Base of the objects that odb_Odb::extendApi returns.
class odb_ApiExtension {
 public:
  virtual ~odb_ApiExtension() = default;
};

class kseO_ApiExtension : public odb_ApiExtension {
 public:
  explicit kseO_ApiExtension(kseO_SectionContainer c) : sections_(std::move(c)) {}
  const kseO_SectionContainer& sections() const { return sections_; }

 private:
  kseO_SectionContainer sections_;
};

class kmaO_ApiExtension : public odb_ApiExtension {
 public:
  explicit kmaO_ApiExtension(kmaO_MaterialContainer c) : materials_(std::move(c)) {}
  const kmaO_MaterialContainer& materials() const { return materials_; }

 private:
  kmaO_MaterialContainer materials_;
};

class odb_Odb {
 public:
  // Opens path (see openOdb). allowOldVersion lets the upgrade read a previous version.
  odb_Odb(const std::string& path, bool readOnly, bool allowOldVersion = false);
  odb_Odb(const odb_Odb&) = delete;
  odb_Odb& operator=(const odb_Odb&) = delete;
  ~odb_Odb();

  const std::string& name() const { return name_; }
  const std::string& path() const { return path_; }
  const std::string& analysisTitle() const { return title_; }
  const std::string& description() const { return description_; }
  bool isReadOnly() const { return readOnly_; }
  int formatVersion() const { return src_->version; }
  const odb_JobData& jobData() const { return jobData_; }
  const odb_UserData& userData() const { return userData_; }
  const odb_Assembly& rootAssembly() const { return *assembly_; }
  // Section categories by name; elements refer to them (odb_Element::sectionCategory).
  const odb_SectionCategoryRepository& sectionCategories() const { return categoryRepo_; }
  // odb_Enum::SECTION_API gives a kseO_ApiExtension, MATERIAL_API a kmaO_ApiExtension;
  // the object lives as long as the database. Another type throws std::invalid_argument.
  odb_ApiExtension& extendApi(int apiType);
  // Region pairs (contact pairs, ties) in the order they were defined; loaded on first use.
  const std::vector<odb::RegionPairData>& regionPairs() const { return regionPairs_.get(); }
  // Steps in the order they were written.
  const odb_StepRepository& steps() const { return steps_.get(); }

  const odb::SourcePtr& source() const { return src_; }

  // Closes the database's file while the object stays alive: everything loaded so far
  // stays valid and a later load fails with std::runtime_error. Unlike closeOdb it may run
  // on another thread while this one is in use (the watchdog ending the process while a
  // command still reads). Only the first call acts.
  void closeFiles();

 private:
  std::string path_, name_, title_, description_;
  bool readOnly_;
  odb::SourcePtr src_;
  odb_JobData jobData_;
  odb_UserData userData_;
  std::shared_ptr<const std::vector<odb_SectionCategory>> categories_;
  odb_SectionCategoryRepository categoryRepo_;
  std::unique_ptr<odb_Assembly> assembly_;
  std::unique_ptr<kseO_ApiExtension> sectionApi_;
  std::unique_ptr<kmaO_ApiExtension> materialApi_;
  odb::Lazy<std::vector<odb::RegionPairData>> regionPairs_;
  odb::Lazy<odb_StepRepository> steps_;
  std::atomic<bool> filesClosed_{false};
};

// Process-wide set-up and tear-down. odb_finalizeAPI closes every database still open.
void odb_initializeAPI();
void odb_finalizeAPI();

// Opens a database and returns it; the caller closes it with closeOdb (which deletes it).
// Reads the catalogue only. Throws std::runtime_error when the file is missing, not a
// database, of a newer version, of an older version (upgrade it first), truncated or
// damaged. readOnly=false is accepted for compatibility; databases are changed only by
// odb::Writer.
odb_Odb& openOdb(const std::string& path, bool readOnly = true);
void closeOdb(odb_Odb& odb);

// True when path is a database of an older format version that upgradeOdb converts.
// Throws std::runtime_error when path is not a readable database.
bool isUpgradeRequiredForOdb(const std::string& path);

// Writes a current-version copy of the older database at path to copyPath (through a
// temporary file renamed into place, so copyPath is whole or unchanged). Throws
// std::runtime_error on failure.
void upgradeOdb(const std::string& path, const std::string& copyPath);
