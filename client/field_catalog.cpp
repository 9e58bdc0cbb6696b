// Describers of the field value records for the record catalog (replies to r forms).
#include "client/field_records.h"
#include "client/model_records.h"
#include "wire/field_value_coding.h"
#include "wire/record_types.h"

namespace odbs::client {

namespace {

DescribedRecord describeValue(const RecordView& rec) {
  FieldValueRecord v = decodeFieldValue(rec);
  DescribedRecord d{"value", {}};
  if (v.hasElement) d.fields.push_back({"element", int64_t{v.element}});
  if (v.hasNode) d.fields.push_back({"node", int64_t{v.node}});
  if (v.hasPoint) d.fields.push_back({"point", int64_t{v.point}});
  d.fields.push_back({"components", std::vector<double>(v.components.begin(), v.components.end())});
  return d;
}

}  // namespace

void addFieldRecords(RecordCatalog& c) {
  c.add("r", kRecTitle, [](const RecordView& r) {
    return DescribedRecord{"title", {{"text", decodeTitle(r)}}};
  });
  c.add("r", kRecAnalysisCode, [](const RecordView& r) {
    return DescribedRecord{"analysis-code", {{"codeMinus1", int64_t{decodeAnalysisCode(r)}}}};
  });
  c.add("r", kRecInstanceHeader, [](const RecordView& r) {
    return DescribedRecord{"instance", {{"name", decodeInstanceHeader(r)}}};
  });
  c.add("r", kRecDataClass, [](const RecordView& r) {
    return DescribedRecord{"data-class", {{"code", int64_t{decodeDataClass(r)}}}};
  });
  c.add("r", kRecElementType, [](const RecordView& r) {
    ElementTypeRecord e = decodeElementType(r);
    return DescribedRecord{"element-type",
                           {{"type", e.type},
                            {"surfaceTag", int64_t{e.surfaceTag}},
                            {"sectionPoint", int64_t{e.sectionPoint}}}};
  });
  c.add("r", kRecOrientation, [](const RecordView& r) {
    std::array<float, 6> o = decodeOrientation(r);
    return DescribedRecord{"orientation", {{"rows", std::vector<double>(o.begin(), o.end())}}};
  });
  c.add("r", kRecRegion, [](const RecordView& r) {
    RegionRecord g = decodeRegion(r);
    return DescribedRecord{"region",
                           {{"side", int64_t{g.side}},
                            {"code", int64_t{g.code}},
                            {"kind", int64_t{g.kind}},
                            {"name", g.name},
                            {"instance", g.instance},
                            {"pair", g.pair},
                            {"pairKind", int64_t{g.pairKind}}}};
  });
  for (uint8_t type :
       {kRecValueSamePlace, kRecValueNewNode, kRecValueNewPoint, kRecValueNewPointNode,
        kRecValueNewAll, kRecValueNewElementPoint, kRecValueNewElementNode, kRecValueNewElement})
    c.add("r", type, describeValue);
}

}  // namespace odbs::client
