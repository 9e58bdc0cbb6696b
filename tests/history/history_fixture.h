// Building the history and contact databases of the tests: in memory (steps, regions and
// outputs made directly, with loaders that can throw) and on disk through the writer.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "odb/odb.h"
#include "odb/writer.h"
#include "tests/support/bytes.h"

namespace odbs::test {

// A history output whose samples load from data (width floats per sample).
odb_HistoryOutput historyOutput(const std::string& name, std::vector<float> data,
                                std::vector<float> conjugate = {}, int width = 2);
// A history output whose samples cannot be read: loading them throws.
odb_HistoryOutput unreadableOutput(const std::string& name);

odb::HistoryPointData pointAt(int position, int node = -1, int element = -1, int ip = 0,
                              int sectionPoint = -1, const std::string& set = "");

odb_HistoryRegion historyRegion(const std::string& name, const odb::HistoryPointData& point,
                                const std::vector<odb_HistoryOutput>& outputs);
// A region whose output repository cannot be read.
odb_HistoryRegion unreadableRegion(const std::string& name);

odb_Step historyStep(const std::string& name, int domain,
                     const std::vector<odb_HistoryRegion>& regions);

// A database written by fill into a fresh temporary file and opened; closed and removed
// with the object.
class WrittenDatabase {
 public:
  explicit WrittenDatabase(const std::function<void(odb::Writer&)>& fill);
  ~WrittenDatabase();
  WrittenDatabase(const WrittenDatabase&) = delete;
  WrittenDatabase& operator=(const WrittenDatabase&) = delete;
  odb_Odb& odb() { return *odb_; }
  const std::string& path() const { return path_; }

 private:
  std::string path_;
  odb_Odb* odb_ = nullptr;
};

// Expected frames, record after record, built field by field (by hand, not with the
// encoders under test).
class Frames {
 public:
  Frames& begin(uint8_t type) {  // starts a new record
    records_.push_back({type, {}});
    return *this;
  }
  Frames& u32(uint32_t v) { return add(le32(v)); }
  Frames& i32(int32_t v) { return u32(static_cast<uint32_t>(v)); }
  Frames& f32(float v) { return add(leF32(v)); }
  Frames& f64(double v) { return add(leF64(v)); }
  Frames& text(const std::string& s) { return add(textBody(s)); }
  // One frame per value: a record of type holding that one f32.
  Frames& values(uint8_t type, const std::vector<float>& vs) {
    for (float v : vs) begin(type).f32(v);
    return *this;
  }
  Bytes bytes() const {
    Bytes all;
    for (const auto& [type, body] : records_) {
      Bytes one = frame(type, body);
      all.insert(all.end(), one.begin(), one.end());
    }
    return all;
  }

 private:
  Frames& add(const Bytes& b) {
    records_.back().second.insert(records_.back().second.end(), b.begin(), b.end());
    return *this;
  }
  std::vector<std::pair<uint8_t, Bytes>> records_;
};

}  // namespace odbs::test
