// Builds bulk data blocks from arbitrary bytes (random widths, row counts, labels, section
// points, precisions, missing and short arrays, local coordinate systems) and runs every
// path of the value extraction over them: result mode 1, the general, section-point and
// surface paths, with and without the set of places and orientations. The sanitizers
// catch any read past an array.
#include <fcntl.h>
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <cstdint>
#include <vector>

#include "odb/odb.h"
#include "results/field_values.h"
#include "results/field_walk.h"

namespace {

int devNull() {
  static int fd = ::open("/dev/null", O_WRONLY);
  return fd;
}

template <typename T>
std::vector<T> values(FuzzedDataProvider& in, size_t n) {
  std::vector<T> v(n);
  for (T& x : v)
    x = in.ConsumeIntegral<uint8_t>() % 4 == 0 ? T(in.ConsumeIntegral<int16_t>()) : T(x);
  return v;
}

std::vector<int32_t> labels(FuzzedDataProvider& in, size_t n) {
  std::vector<int32_t> v(n);
  for (int32_t& x : v) x = in.ConsumeIntegralInRange<int32_t>(-2, 6);
  return v;
}

// An array of about n entries: absent, short, exact or long.
size_t lengthNear(FuzzedDataProvider& in, size_t n) {
  const size_t lengths[] = {0, n / 2, n + 1, n};
  return lengths[in.ConsumeIntegralInRange<int>(0, 3)];
}

odb::FieldBlockData block(FuzzedDataProvider& in, bool complex) {
  odb::FieldBlockData b;
  b.instance = in.ConsumeBool() ? "A" : "B";
  b.elementType = in.ConsumeRandomLengthString(12);
  b.type = in.ConsumeIntegralInRange<int32_t>(0, 10);
  b.width = in.ConsumeIntegralInRange<int32_t>(-1, 7);
  b.doublePrecision = in.ConsumeBool();
  size_t rows = in.ConsumeIntegralInRange<size_t>(0, 12);
  size_t n = rows * size_t(b.width > 0 ? b.width : 1);
  if (b.doublePrecision) {
    b.dataDouble = values<double>(in, lengthNear(in, n));
    if (complex) b.conjugateDataDouble = values<double>(in, lengthNear(in, n));
  } else {
    b.data = values<float>(in, lengthNear(in, n));
    if (complex) b.conjugateData = values<float>(in, lengthNear(in, n));
  }
  b.elementLabels = labels(in, lengthNear(in, rows));
  b.nodeLabels = labels(in, lengthNear(in, rows));
  b.integrationPoints = labels(in, lengthNear(in, rows));
  b.numberOfElements = in.ConsumeIntegralInRange<int32_t>(-1, int32_t(rows) + 1);
  b.sectionPoint.number = in.ConsumeBool() ? -1 : in.ConsumeIntegralInRange<int32_t>(-2, 100);
  b.csysWidth = in.ConsumeIntegralInRange<int32_t>(0, 6);
  b.localCsys = values<float>(in, lengthNear(in, rows * size_t(b.csysWidth)));
  return b;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  odb::FieldOutputData d;
  d.name = "F";
  d.type = in.ConsumeIntegralInRange<int32_t>(0, 10);
  d.isComplex = in.ConsumeBool();
  std::vector<odb_FieldBulkData> blocks;
  int count = in.ConsumeIntegralInRange<int>(0, 8);
  for (int i = 0; i < count; ++i) blocks.emplace_back(block(in, d.isComplex));
  odb_FieldOutput field(d, [blocks](int) { return blocks; });

  odbs::InstanceNumbering instances(in.ConsumeBool() ? std::vector<std::string>{"A", "B"}
                                                     : std::vector<std::string>{"A"});
  odbs::ReplyChannel out(devNull());
  odbs::FieldRequest r;
  r.upperCase = in.ConsumeBool();
  r.requestDefined = in.ConsumeBool();
  odbs::sendFieldValues(instances, field, out, r.upperCase, r.requestDefined);
  for (int mode : {0, -1, -2, -3}) {
    r.resultMode = mode;
    r.sectionPoints = {-1, -1};
    odbs::sendFieldPath(instances, field, r, out);
  }
  r.resultMode = 0;
  r.sectionPoints = {in.ConsumeIntegralInRange<int32_t>(-1, 6),
                     in.ConsumeIntegralInRange<int32_t>(-1, 6)};
  odbs::sendFieldPath(instances, field, r, out);
  out.flush();
  return 0;
}
