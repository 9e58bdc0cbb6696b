#include "model/material_record.h"

namespace odbs {

namespace {

constexpr uint32_t kFailStrainTag = 0;
constexpr uint32_t kFailStressTag = 1;
constexpr int32_t kElasticEnd = -1;

// Columns 0 .. columns-1 of the table's first row; a missing row or column gives 0.
void putFirstRow(RecordBuilder& rec, const kmaO_Table& table, size_t columns) {
  const odb::TableData& rows = table.rows();
  for (size_t c = 0; c < columns; ++c) {
    rec.f32(!rows.empty() && c < rows[0].size() ? rows[0][c] : 0.f);
  }
}

}  // namespace

void queueMaterialRecord(const kmaO_Material& material, ReplyChannel& out) {
  RecordBuilder rec(kRecMaterial);
  rec.text(material.name());
  const kmaO_Density* density = material.density();
  rec.f32(density != nullptr && !density->rows().empty() && !density->rows()[0].empty()
              ? density->rows()[0][0]
              : 0.f);
  const kmaO_Elastic* elastic = material.elastic();
  if (elastic == nullptr) {
    rec.u32(0);
  } else {
    rec.text(elastic->type());
    putFirstRow(rec, *elastic, 6);
    if (const kmaO_FailStrain* strain = elastic->failStrain()) {
      rec.u32(kFailStrainTag);
      putFirstRow(rec, *strain, 5);
    }
    if (const kmaO_FailStress* stress = elastic->failStress()) {
      rec.u32(kFailStressTag);
      putFirstRow(rec, *stress, 7);
    }
    rec.i32(kElasticEnd);
  }
  rec.i32(material.acousticMedium() != nullptr ? 1 : 0);
  out.queue(rec);
}

void sendMaterials(odb_Odb& odb, ReplyChannel& out, const std::set<std::string>* only) {
  const auto& api = static_cast<kmaO_ApiExtension&>(odb.extendApi(odb_Enum::MATERIAL_API));
  out.discardPending();
  for (kmaO_MaterialContainerIT it(api.materials()); !it.isDone(); it.next()) {
    const kmaO_Material& material = it.currentValue();
    if (only && !only->count(material.name())) continue;
    queueMaterialRecord(material, out);
  }
  out.flush();
}

}  // namespace odbs
