// The reply frame, shared by the server and the client library.
//
// Frame: a 16-bit little-endian count of the bytes that follow, then the record: one type
// byte and a body laid out by the type (wire/record_types.h). The count includes the type
// byte and is never 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "wire/record_types.h"

namespace odbs {

constexpr size_t kFrameHeaderSize = 2;  // the 16-bit count

// The end record as it appears on the wire.
constexpr uint8_t kEndFrame[3] = {0x01, 0x00, kRecEnd};

}  // namespace odbs
