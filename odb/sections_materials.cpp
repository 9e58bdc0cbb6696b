// Section class factory and cast failure; material behaviour views.
#include <stdexcept>

#include "odb/materials.h"
#include "odb/sections.h"

void kseO_throwBadCast(const odb_Section& s, const char* className) {
  throw std::runtime_error("odb: section '" + s.name() + "' (kind " +
                           std::to_string(s.subTypeIdentifier()) + ") is not a " + className);
}

std::unique_ptr<odb_Section> kseO_makeSection(odb::SectionData d) {
  switch (d.kind) {
    case kseO_COMPOSITE_SHELL:
      return std::make_unique<kseO_CompositeShellSection>(std::move(d));
    case kseO_CONNECTOR:
      return std::make_unique<kseO_ConnectorSection>(std::move(d));
    case kseO_POINT:
      return std::make_unique<kseO_PointSection>(std::move(d));
    case kseO_HOMOGENEOUS_SHELL:
      return std::make_unique<kseO_HomogeneousShellSection>(std::move(d));
    case kseO_HOMOGENEOUS_SOLID:
      return std::make_unique<kseO_HomogeneousSolidSection>(std::move(d));
    case kseO_TRUSS:
      return std::make_unique<kseO_TrussSection>(std::move(d));
    case kseO_PEG:
      return std::make_unique<kseO_PEGSection>(std::move(d));
    case kseO_MEMBRANE:
      return std::make_unique<kseO_MembraneSection>(std::move(d));
    case kseO_GASKET:
      return std::make_unique<kseO_GasketSection>(std::move(d));
    case kseO_COHESIVE:
      return std::make_unique<kseO_CohesiveSection>(std::move(d));
    case kseO_BEAM:
      return std::make_unique<kseO_BeamSection>(std::move(d));
    default:
      d.kind = kseO_OTHER_SECTION;
      return std::make_unique<odb_Section>(std::move(d));
  }
}

odb_SequenceSequenceFloat kmaO_Table::table() const {
  odb_SequenceSequenceFloat s;
  for (const auto& row : *t_) s.append(odb_SequenceFloat(row));
  return s;
}

kmaO_Elastic::kmaO_Elastic(const odb::MaterialData& m)
    : kmaO_Table(m.elastic), m_(&m), strain_(m.failStrain), stress_(m.failStress) {}

kmaO_Material::kmaO_Material(odb::MaterialData d)
    : d_(std::move(d)), density_(d_.density), elastic_(d_), acoustic_(d_.acousticMedium) {}
