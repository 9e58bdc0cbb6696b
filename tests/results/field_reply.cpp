#include "tests/results/field_reply.h"

#include <sstream>

#include "client/core_records.h"
#include "client/field_records.h"
#include "client/model_records.h"
#include "results/results.h"
#include "tests/model/model_fixture.h"
#include "wire/record_types.h"

namespace odbs::test {

FieldRequest fieldRequest(int step, int frame, const std::string& name, int mode,
                          bool requestDefined, bool upperCase, SectionPointPair pair) {
  FieldRequest r;
  r.param1 = step;
  r.param2 = frame;
  r.text = name;
  r.resultMode = mode;
  r.requestDefined = requestDefined;
  r.upperCase = upperCase;
  r.sectionPoints = pair;
  r.positionCode = 3;
  return r;
}

std::vector<client::Record> walk(OdbContext& ctx, const FieldRequest& r, ResultCache* cache) {
  ResultCache own;
  return splitRecords(
      capture([&](ReplyChannel& out) { walkField(ctx, r, cache ? *cache : own, out); }));
}

namespace {

std::string floats(const float* v, size_t n) {
  std::ostringstream s;
  s << "[";
  for (size_t i = 0; i < n; ++i) s << (i ? " " : "") << v[i];
  s << "]";
  return s.str();
}

std::string line(const client::Record& rec) {
  std::ostringstream s;
  if (client::isFieldValueType(rec.type)) {
    client::FieldValueRecord v = client::decodeFieldValue(rec);
    s << int(rec.type);
    if (v.hasElement) s << " e" << v.element;
    if (v.hasNode) s << " n" << v.node;
    if (v.hasPoint) s << " p" << v.point;
    s << " " << floats(v.components.data(), v.components.size());
    return s.str();
  }
  switch (rec.type) {
    case kRecDataClass:
      s << "% " << client::decodeDataClass(rec);
      break;
    case kRecElementType: {
      client::ElementTypeRecord e = client::decodeElementType(rec);
      s << "30 " << e.type << " " << e.surfaceTag << " " << e.sectionPoint;
      break;
    }
    case kRecOrientation: {
      auto o = client::decodeOrientation(rec);
      s << "' " << floats(o.data(), o.size());
      break;
    }
    case kRecInstanceHeader:
      s << "H " << client::decodeInstanceHeader(rec);
      break;
    case kRecRegion: {
      client::RegionRecord g = client::decodeRegion(rec);
      s << "` " << g.side << " " << g.code << " " << g.kind << " " << g.name << " "
        << (g.instance.empty() ? "-" : g.instance) << " " << (g.pair.empty() ? "-" : g.pair) << " "
        << g.pairKind;
      break;
    }
    case kRecMessage:
      s << "| " << client::decodeMessage(rec).text;
      break;
    default:
      s << "type " << int(rec.type);
  }
  return s.str();
}

}  // namespace

std::vector<std::string> describe(const std::vector<client::Record>& records) {
  std::vector<std::string> lines;
  for (size_t i = 2; i < records.size(); ++i) lines.push_back(line(records[i]));
  return lines;
}

}  // namespace odbs::test
