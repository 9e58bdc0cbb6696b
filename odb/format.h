// Constants of the database file layout (docs/format.md describes every group, dataset and
// attribute) and the shared handle of an open file from which objects load lazily.
#pragma once

#include <memory>
#include <string>

#include "odb/h5.h"

namespace odb {

// Value of the root attribute "format" that marks a file as ours.
inline constexpr const char* kFormatTag = "odb-hdf5";
// The version this library writes and reads. Versions 1 to 3 need an upgrade (the
// library still reads them to make the upgraded copy).
inline constexpr int kFormatVersion = 4;
inline constexpr int kOldestFormatVersion = 1;

// An open database file shared by every object that loads from it.
struct Source {
  h5::File file;
  int version = kFormatVersion;
  h5::Group group(const std::string& path) const { return file.root().open(path); }
};
using SourcePtr = std::shared_ptr<const Source>;

// Reads the root attributes "format" and "format_version" of an open file and returns the
// version. Throws std::runtime_error when the file is not a database of ours.
int checkFormat(const h5::Group& root, const std::string& path);

}  // namespace odb
