// Materials, reached through the material extension:
//   kmaO_ApiExtension& ext =
//   static_cast<kmaO_ApiExtension&>(odb.extendApi(odb_Enum::MATERIAL_API)); for
//   (kmaO_MaterialContainerIT it(ext.materials()); !it.isDone(); it.next()) ...
// A behaviour accessor returns nullptr when the material (or elastic behaviour) has none.
// Tables are rows of floats, as written.
#pragma once

#include <memory>
#include <string>

#include "odb/containers.h"
#include "odb/model_data.h"

class kmaO_Table {
 public:
  explicit kmaO_Table(const odb::TableData& t) : t_(&t) {}
  odb_SequenceSequenceFloat table() const;
  const odb::TableData& rows() const { return *t_; }

 private:
  const odb::TableData* t_;
};

class kmaO_Density : public kmaO_Table {
  using kmaO_Table::kmaO_Table;
};
class kmaO_FailStrain : public kmaO_Table {
  using kmaO_Table::kmaO_Table;
};
class kmaO_FailStress : public kmaO_Table {
  using kmaO_Table::kmaO_Table;
};
class kmaO_AcousticMedium : public kmaO_Table {
  using kmaO_Table::kmaO_Table;
};

class kmaO_Elastic : public kmaO_Table {
 public:
  explicit kmaO_Elastic(const odb::MaterialData& m);
  const std::string& type() const { return m_->elasticType; }
  const kmaO_FailStrain* failStrain() const { return m_->hasFailStrain ? &strain_ : nullptr; }
  const kmaO_FailStress* failStress() const { return m_->hasFailStress ? &stress_ : nullptr; }

 private:
  const odb::MaterialData* m_;
  kmaO_FailStrain strain_;
  kmaO_FailStress stress_;
};

class kmaO_Material {
 public:
  explicit kmaO_Material(odb::MaterialData d);
  kmaO_Material(const kmaO_Material&) = delete;
  kmaO_Material& operator=(const kmaO_Material&) = delete;
  const std::string& name() const { return d_.name; }
  const kmaO_Density* density() const { return d_.hasDensity ? &density_ : nullptr; }
  const kmaO_Elastic* elastic() const { return d_.hasElastic ? &elastic_ : nullptr; }
  const kmaO_AcousticMedium* acousticMedium() const {
    return d_.hasAcousticMedium ? &acoustic_ : nullptr;
  }
  const odb::MaterialData& data() const { return d_; }

 private:
  odb::MaterialData d_;
  kmaO_Density density_;
  kmaO_Elastic elastic_;
  kmaO_AcousticMedium acoustic_;
};

using kmaO_MaterialContainer = odb_Repository<std::shared_ptr<const kmaO_Material>>;

// Walks the materials in name order; currentValue() is the material itself.
class kmaO_MaterialContainerIT {
 public:
  explicit kmaO_MaterialContainerIT(const kmaO_MaterialContainer& c) : it_(c) {}
  void first() { it_.first(); }
  void next() { it_.next(); }
  bool isDone() const { return it_.isDone(); }
  const std::string& currentKey() const { return it_.currentKey(); }
  const kmaO_Material& currentValue() const { return *it_.currentValue(); }

 private:
  odb_RepositoryIterator<std::shared_ptr<const kmaO_Material>> it_;
};
