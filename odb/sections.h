// Sections, reached through the section extension:
//   kseO_ApiExtension& ext = static_cast<kseO_ApiExtension&>(odb.extendApi(odb_Enum::SECTION_API));
//   for (kseO_SectionContainerIT it(ext.sections()); !it.isDone(); it.next()) ...
// Every section is an odb_Section; subTypeIdentifier() tells its class, whose static
// typeIdentifier() it equals, and T::cast(section) gives the class's view of it or throws
// std::runtime_error when the object is not of class T.
#pragma once

#include <memory>
#include <string>

#include "odb/containers.h"
#include "odb/enums.h"
#include "odb/model_data.h"

class odb_Section {
 public:
  explicit odb_Section(odb::SectionData d) : d_(std::move(d)) {}
  virtual ~odb_Section() = default;
  const std::string& name() const { return d_.name; }
  int subTypeIdentifier() const { return d_.kind; }
  static int typeIdentifier() { return kseO_OTHER_SECTION; }
  const odb::SectionData& data() const { return d_; }

 protected:
  odb::SectionData d_;
};

[[noreturn]] void kseO_throwBadCast(const odb_Section& s, const char* className);

// Defines section class C with kind K; the members it adds follow in its body.
#define KSEO_SECTION_CLASS_BEGIN(C, K)                            \
  class C : public odb_Section {                                  \
   public:                                                        \
    explicit C(odb::SectionData d) : odb_Section(std::move(d)) {} \
    static int typeIdentifier() { return K; }                     \
    static const C& cast(const odb_Section& s) {                  \
      const C* p = dynamic_cast<const C*>(&s);                    \
      if (!p) kseO_throwBadCast(s, #C);                           \
      return *p;                                                  \
    }

KSEO_SECTION_CLASS_BEGIN(kseO_ConnectorSection, kseO_CONNECTOR)
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_PointSection, kseO_POINT)
float mass() const {
  return d_.mass;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_HomogeneousShellSection, kseO_HOMOGENEOUS_SHELL)
float thickness() const {
  return d_.thickness;
}
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_HomogeneousSolidSection, kseO_HOMOGENEOUS_SOLID)
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_TrussSection, kseO_TRUSS)
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_PEGSection, kseO_PEG)
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_MembraneSection, kseO_MEMBRANE)
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_GasketSection, kseO_GASKET)
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_CohesiveSection, kseO_COHESIVE)
const std::string& material() const {
  return d_.material;
}
}
;
KSEO_SECTION_CLASS_BEGIN(kseO_BeamSection, kseO_BEAM)
const std::string& material() const {
  return d_.material;
}
}
;

class kseO_SectionLayer {
 public:
  explicit kseO_SectionLayer(const odb::LayerData& d) : d_(d) {}
  const std::string& material() const { return d_.material; }
  float thickness() const { return d_.thickness; }
  const odb_Union& orientAngle() const { return d_.orientAngle; }

 private:
  odb::LayerData d_;
};
using kseO_SequenceSectionLayer = odb_Sequence<kseO_SectionLayer>;

KSEO_SECTION_CLASS_BEGIN(kseO_CompositeShellSection, kseO_COMPOSITE_SHELL)
kseO_SequenceSectionLayer layup() const {
  kseO_SequenceSectionLayer s;
  for (const auto& l : d_.layers) s.append(kseO_SectionLayer(l));
  return s;
}
}
;

#undef KSEO_SECTION_CLASS_BEGIN

// Makes the object of the right class for the section's kind.
std::unique_ptr<odb_Section> kseO_makeSection(odb::SectionData d);

using kseO_SectionContainer = odb_Repository<std::shared_ptr<const odb_Section>>;

// Walks the sections in name order; currentValue() is the section itself.
class kseO_SectionContainerIT {
 public:
  explicit kseO_SectionContainerIT(const kseO_SectionContainer& c) : it_(c) {}
  void first() { it_.first(); }
  void next() { it_.next(); }
  bool isDone() const { return it_.isDone(); }
  const std::string& currentKey() const { return it_.currentKey(); }
  const odb_Section& currentValue() const { return *it_.currentValue(); }

 private:
  odb_RepositoryIterator<std::shared_ptr<const odb_Section>> it_;
};
