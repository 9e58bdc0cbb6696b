// Damaged copies of a database file, made from its bytes: the corpus with which the server
// and the tools are tried on hostile files.
//
// Kinds of damage:
//   cut          the file truncated (at the start, inside the metadata, half-way, one byte
//                short)
//   metadata     one byte of an object header changed; the checksum then no longer fits
//   data         bytes changed in the raw data between the object headers
//   crafted      one field of an attribute or a dataset header changed to a value the format
//                allows no database to have (an element size of 0xfffffff0, a huge or empty
//                extent, another type class), with the header's checksum recomputed so that
//                the file library reads the lie instead of refusing the header
// Every copy is made deterministically from the input bytes and a seed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace odbs::test {

struct DamagedCopy {
  std::string name;  // kind and detail, for messages: "crafted attribute type size #2"
  std::vector<uint8_t> bytes;
};

// Up to perKind copies of each kind of damage of the file's bytes.
std::vector<DamagedCopy> damagedCopies(const std::vector<uint8_t>& file, int perKind,
                                       uint32_t seed);

// The checksum of the file format's metadata (Bob Jenkins' lookup3 hash, initial value 0).
uint32_t metadataChecksum(const uint8_t* data, size_t size);

}  // namespace odbs::test
