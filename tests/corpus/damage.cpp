#include "tests/corpus/damage.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "wire/coding.h"

namespace odbs::test {

namespace {

// ---- Reading the file format's object headers ----------------------------------------
//
// Version 2 object headers: "OHDR", version 2, flags, optional times (flag 0x20) and
// attribute phase limits (flag 0x10), the size of the first chunk in 1, 2, 4 or 8 bytes
// (flag bits 0-1), the messages, a checksum over everything before it. Continuation chunks
// ("OCHK") hold more messages and end in their own checksum; the continuation message
// (type 0x10) gives their address and length. A message: type, 2-byte size, flags, a 2-byte
// creation order when the header's flag 0x04 is set, then its data.

constexpr uint8_t kDataspaceMessage = 0x01;
constexpr uint8_t kDatatypeMessage = 0x03;
constexpr uint8_t kAttributeMessage = 0x0C;
constexpr uint8_t kContinuationMessage = 0x10;

uint64_t readLe(const std::vector<uint8_t>& b, size_t at, size_t n) {
  uint64_t v = 0;
  for (size_t i = 0; i < n; ++i) v |= uint64_t(b[at + i]) << (8 * i);
  return v;
}

void writeLe(std::vector<uint8_t>& b, size_t at, size_t n, uint64_t v) {
  for (size_t i = 0; i < n; ++i) b[at + i] = uint8_t(v >> (8 * i));
}

// One chunk of messages and the checksum that covers it.
struct Chunk {
  size_t start = 0;     // first byte covered by the checksum (the signature)
  size_t messages = 0;  // first message
  size_t end = 0;       // end of the messages: the checksum follows
  bool creationOrder = false;
};

struct Message {
  uint8_t type = 0;
  size_t data = 0;  // offset of the message's data in the file
  size_t size = 0;
  size_t chunk = 0;  // index into the chunk list
};

struct Layout {
  std::vector<Chunk> chunks;
  std::vector<Message> messages;
};

bool hasSignature(const std::vector<uint8_t>& b, size_t at, const char* sig) {
  return at + 4 <= b.size() && std::memcmp(b.data() + at, sig, 4) == 0;
}

void readMessages(const std::vector<uint8_t>& b, size_t chunkIndex, Layout* layout) {
  const Chunk& c = layout->chunks[chunkIndex];
  size_t header = c.creationOrder ? 6 : 4;
  for (size_t p = c.messages; p + header <= c.end;) {
    Message m{b[p], p + header, size_t(readLe(b, p + 1, 2)), chunkIndex};
    if (m.data + m.size > c.end) break;
    layout->messages.push_back(m);
    p = m.data + m.size;
  }
}

// Every version 2 object header and its continuation chunks whose checksum is right.
Layout readLayout(const std::vector<uint8_t>& b) {
  Layout layout;
  for (size_t at = 0; at + 8 < b.size(); ++at) {
    if (!hasSignature(b, at, "OHDR") || b[at + 4] != 2) continue;
    uint8_t flags = b[at + 5];
    size_t p = at + 6 + ((flags & 0x20) ? 16 : 0) + ((flags & 0x10) ? 4 : 0);
    size_t width = size_t(1) << (flags & 3);
    if (p + width > b.size()) continue;
    uint64_t size = readLe(b, p, width);
    p += width;
    if (size > b.size() || p + size + 4 > b.size()) continue;
    Chunk c{at, p, p + size_t(size), (flags & 0x04) != 0};
    if (metadataChecksum(b.data() + c.start, c.end - c.start) != readLe(b, c.end, 4)) continue;
    layout.chunks.push_back(c);
    size_t first = layout.messages.size();
    readMessages(b, layout.chunks.size() - 1, &layout);
    for (size_t i = first; i < layout.messages.size(); ++i) {
      const Message m = layout.messages[i];
      if (m.type != kContinuationMessage || m.size < 16) continue;
      uint64_t where = readLe(b, m.data, 8), length = readLe(b, m.data + 8, 8);
      if (length < 8 || where + length > b.size() || !hasSignature(b, size_t(where), "OCHK"))
        continue;
      Chunk k{size_t(where), size_t(where) + 4, size_t(where + length) - 4, c.creationOrder};
      if (metadataChecksum(b.data() + k.start, k.end - k.start) != readLe(b, k.end, 4)) continue;
      layout.chunks.push_back(k);
      readMessages(b, layout.chunks.size() - 1, &layout);
    }
  }
  return layout;
}

void resum(std::vector<uint8_t>& b, const Chunk& c) {
  writeLe(b, c.end, 4, metadataChecksum(b.data() + c.start, c.end - c.start));
}

// Where an attribute message keeps its datatype and dataspace.
struct AttributeParts {
  size_t type = 0, typeSize = 0, space = 0, spaceSize = 0;
};

bool attributeParts(const std::vector<uint8_t>& b, const Message& m, AttributeParts* out) {
  if (m.size < 8) return false;
  uint8_t version = b[m.data];
  size_t name = readLe(b, m.data + 2, 2), type = readLe(b, m.data + 4, 2),
         space = readLe(b, m.data + 6, 2);
  auto pad = [version](size_t n) { return version == 1 ? (n + 7) / 8 * 8 : n; };
  size_t at = m.data + 8 + (version == 3 ? 1 : 0);
  if (version < 1 || version > 3) return false;
  out->type = at + pad(name);
  out->typeSize = type;
  out->space = out->type + pad(type);
  out->spaceSize = space;
  return out->space + space <= m.data + m.size && type >= 8;
}

// The offset of the first dimension in a dataspace, or 0 when it has none.
size_t firstDimension(const std::vector<uint8_t>& b, size_t space, size_t size) {
  if (size < 4) return 0;
  uint8_t version = b[space], rank = b[space + 1];
  size_t dims = space + (version == 1 ? 8 : 4);
  return rank > 0 && dims + 8 <= space + size ? dims : 0;
}

// One crafted change: where and what, in a header whose checksum is then recomputed.
struct Craft {
  std::string kind;
  size_t chunk = 0;
  size_t at = 0;
  int width = 0;  // bytes written at `at`; 0 changes the type class nibble
  uint64_t value = 0;
};

std::vector<Craft> crafts(const std::vector<uint8_t>& b, const Layout& layout) {
  std::vector<Craft> out;
  constexpr uint64_t kHugeSize = 0xfffffff0u;
  constexpr uint64_t kHugeExtent = uint64_t(1) << 40;
  auto typeCrafts = [&](const std::string& owner, size_t chunk, size_t type) {
    out.push_back({owner + " type size", chunk, type + 4, 4, kHugeSize});
    out.push_back({owner + " type class", chunk, type, 0, 0});
  };
  auto spaceCrafts = [&](const std::string& owner, size_t chunk, size_t dim) {
    if (dim == 0) return;
    out.push_back({owner + " huge extent", chunk, dim, 8, kHugeExtent});
    out.push_back({owner + " empty extent", chunk, dim, 8, 0});
  };
  for (const Message& m : layout.messages) {
    if (m.type == kAttributeMessage) {
      AttributeParts a;
      if (!attributeParts(b, m, &a)) continue;
      typeCrafts("attribute", m.chunk, a.type);
      spaceCrafts("attribute", m.chunk, firstDimension(b, a.space, a.spaceSize));
    } else if (m.type == kDatatypeMessage && m.size >= 8) {
      typeCrafts("dataset", m.chunk, m.data);
    } else if (m.type == kDataspaceMessage) {
      spaceCrafts("dataset", m.chunk, firstDimension(b, m.data, m.size));
    }
  }
  return out;
}

void apply(std::vector<uint8_t>& b, const Layout& layout, const Craft& c) {
  if (c.width == 0) {
    // Swap the class between integer-like and text-like: 0 fixed point <-> 3 string,
    // anything else becomes 6 (compound).
    uint8_t cls = b[c.at] & 0x0F;
    uint8_t to = cls == 0 ? 3 : cls == 3 ? 0 : 6;
    b[c.at] = uint8_t((b[c.at] & 0xF0) | to);
  } else {
    writeLe(b, c.at, size_t(c.width), c.value);
  }
  resum(b, layout.chunks[c.chunk]);
}

// Picks up to n entries spread over the whole list.
template <typename T>
std::vector<T> spread(const std::vector<T>& all, int n) {
  std::vector<T> out;
  if (all.empty() || n <= 0) return out;
  size_t count = std::min(all.size(), size_t(n));
  for (size_t i = 0; i < count; ++i) out.push_back(all[i * all.size() / count]);
  return out;
}

bool insideMetadata(const Layout& layout, size_t at) {
  for (const Chunk& c : layout.chunks)
    if (at + 8 > c.start && at < c.end + 4) return true;
  return at < 512;  // the superblock and the root group's first header
}

}  // namespace

uint32_t metadataChecksum(const uint8_t* k, size_t length) {
  auto rot = [](uint32_t x, int r) { return (x << r) ^ (x >> (32 - r)); };
  uint32_t a, b, c;
  a = b = c = 0xdeadbeef + uint32_t(length);
  while (length > 12) {
    a += loadU32(k);
    b += loadU32(k + 4);
    c += loadU32(k + 8);
    a -= c, a ^= rot(c, 4), c += b;
    b -= a, b ^= rot(a, 6), a += c;
    c -= b, c ^= rot(b, 8), b += a;
    a -= c, a ^= rot(c, 16), c += b;
    b -= a, b ^= rot(a, 19), a += c;
    c -= b, c ^= rot(b, 4), b += a;
    length -= 12;
    k += 12;
  }
  if (length == 0) return c;
  // The last 1 to 12 bytes, as words padded with zero bytes.
  uint8_t tail[12] = {};
  std::memcpy(tail, k, length);
  a += loadU32(tail);
  b += loadU32(tail + 4);
  c += loadU32(tail + 8);
  c ^= b, c -= rot(b, 14);
  a ^= c, a -= rot(c, 11);
  b ^= a, b -= rot(a, 25);
  c ^= b, c -= rot(b, 16);
  a ^= c, a -= rot(c, 4);
  b ^= a, b -= rot(a, 14);
  c ^= b, c -= rot(b, 24);
  return c;
}

std::vector<DamagedCopy> damagedCopies(const std::vector<uint8_t>& file, int perKind,
                                       uint32_t seed) {
  std::vector<DamagedCopy> out;
  const size_t size = file.size();
  for (size_t cut : {size_t(0), size_t(512), size / 8, size / 4, size / 2, size - 1}) {
    if (cut >= size) continue;
    out.push_back({"cut at " + std::to_string(cut),
                   std::vector<uint8_t>(file.begin(), file.begin() + long(cut))});
  }

  const Layout layout = readLayout(file);
  std::mt19937 random(seed);
  for (const Message& m : spread(layout.messages, perKind)) {
    if (m.size == 0) continue;
    DamagedCopy c{"metadata byte at " + std::to_string(m.data), file};
    size_t at = m.data + random() % m.size;
    c.bytes[at] = uint8_t(c.bytes[at] ^ (1 + random() % 255));
    out.push_back(std::move(c));
  }
  for (int n = 0, tries = 0; n < perKind && tries < 100 * perKind; ++tries) {
    size_t at = random() % (size > 8 ? size - 8 : 1);
    if (insideMetadata(layout, at)) continue;
    DamagedCopy c{"data bytes at " + std::to_string(at), file};
    for (size_t i = 0; i < 8; ++i) c.bytes[at + i] = uint8_t(random());
    out.push_back(std::move(c));
    ++n;
  }

  std::vector<Craft> all = crafts(file, layout);
  std::vector<std::string> kinds;
  for (const Craft& c : all)
    if (std::find(kinds.begin(), kinds.end(), c.kind) == kinds.end()) kinds.push_back(c.kind);
  for (const std::string& kind : kinds) {
    std::vector<Craft> ofKind;
    for (const Craft& c : all)
      if (c.kind == kind) ofKind.push_back(c);
    int number = 0;
    for (const Craft& c : spread(ofKind, perKind)) {
      DamagedCopy copy{"crafted " + kind + " #" + std::to_string(++number), file};
      apply(copy.bytes, layout, c);
      out.push_back(std::move(copy));
    }
  }
  return out;
}

}  // namespace odbs::test
