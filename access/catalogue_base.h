// The cache base name that command T sets for the next f, shared with the parent watchdog
// (which removes the catalogue's temporary companions when the parent ends). Thread-safe.
#pragma once

#include <string>

namespace odbs {

// The base name set by the last T, or "" when none is set.
std::string catalogueBaseName();

// Forgets the base name: every f that is to use a catalogue needs its own T.
void clearCatalogueBaseName();

// Clears the base name when one f is done, however it ends. Until then the watchdog can
// still find the companions of a file being written.
struct BaseNameClearer {
  BaseNameClearer() = default;
  BaseNameClearer(const BaseNameClearer&) = delete;
  BaseNameClearer& operator=(const BaseNameClearer&) = delete;
  ~BaseNameClearer() { clearCatalogueBaseName(); }
};

}  // namespace odbs
