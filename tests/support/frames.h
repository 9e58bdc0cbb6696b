// Expected replies written out by hand, record after record, field by field, without the
// encoders under test: Frames('$').i32(1).text("A").bytes() is one frame; begin(type)
// starts the next record.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "client/record.h"
#include "tests/support/bytes.h"

namespace odbs::test {

class Frames {
 public:
  Frames() = default;
  explicit Frames(uint8_t type) { begin(type); }

  Frames& begin(uint8_t type) {  // starts a new record
    records_.push_back({type, {}});
    return *this;
  }
  Frames& u32(uint32_t v) { return add(le32(v)); }
  Frames& i32(int32_t v) { return u32(static_cast<uint32_t>(v)); }
  Frames& f32(float v) { return add(leF32(v)); }
  Frames& f64(double v) { return add(leF64(v)); }
  Frames& text(const std::string& s) { return add(textBody(s)); }
  Frames& raw(const std::string& s) { return add(Bytes(s.begin(), s.end())); }
  // One record per value: a record of type holding that one f32.
  Frames& values(uint8_t type, const std::vector<float>& vs) {
    for (float v : vs) begin(type).f32(v);
    return *this;
  }

  // Every frame: count, type, body.
  Bytes bytes() const {
    Bytes all;
    for (const auto& [type, body] : records_) {
      Bytes one = frame(type, body);
      all.insert(all.end(), one.begin(), one.end());
    }
    return all;
  }
  // The last record, as the client's frame reader returns it.
  client::Record record() const {
    return client::Record{records_.back().first, records_.back().second};
  }

 private:
  Frames& add(const Bytes& b) {
    records_.back().second.insert(records_.back().second.end(), b.begin(), b.end());
    return *this;
  }
  std::vector<std::pair<uint8_t, Bytes>> records_;
};

}  // namespace odbs::test
