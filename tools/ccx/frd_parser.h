// Reads a CalculiX result file (.frd), ASCII or binary, block by block.
//
// The file is a header (user lines "1U..."), a node block ("2C"), an element block ("3C")
// and any number of result blocks ("1P..." parameter lines, a "100C" line, a "-4" name
// line, "-5" component lines, then one row per node, in text or binary), ending with
// "9999". Result blocks are handed to the visitor one at a time and not kept, so a file of
// any size is read in the memory of its largest block.
//
// A malformed or truncated file throws ParseError with the file, the line (or, inside
// binary data, the byte offset) and what was expected. Lines of unknown kinds in the text
// parts are skipped with one warning per kind.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tools/ccx/frd_model.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

class FrdVisitor {
 public:
  virtual ~FrdVisitor() = default;
  virtual void header(const FrdHeader&) {}
  // The nodes of a node block and the elements of an element block come in parts of at
  // most kFrdNodeChunk and kFrdElementChunk (so that a large mesh is never held twice),
  // then nodesEnd and elementsEnd.
  virtual void nodes(std::vector<FrdNode>&&) {}
  virtual void nodesEnd() {}
  virtual void elements(std::vector<FrdElement>&&) {}
  virtual void elementsEnd() {}
  virtual void block(FrdBlock&&) {}
  // Bytes of the file read so far and its size, after each block.
  virtual void progress(int64_t, int64_t) {}
};

void readFrd(const std::string& path, FrdVisitor& visitor, Warnings& warnings);

// The whole file in memory, for tests and small files.
struct FrdFile {
  FrdHeader header;
  std::vector<FrdNode> nodes;
  std::vector<FrdElement> elements;
  std::vector<FrdBlock> blocks;
};
FrdFile readFrdFile(const std::string& path, Warnings& warnings);

}  // namespace odbs::ccx
