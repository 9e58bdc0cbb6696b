// The cache base name that command T sets for the next f, shared with the parent watchdog
// (which removes the catalogue's temporary companions when the parent ends). Thread-safe.
#pragma once

#include <functional>
#include <string>

namespace odbs {

// The base name set by the last T, or "" when none is set.
std::string catalogueBaseName();

// Forgets the base name: every f that is to use a catalogue needs its own T.
void clearCatalogueBaseName();

// Runs create (which makes a cache file's "_tmp" and "_lock" companions) under the lock
// that removeCatalogueTemp holds, and returns true; once the watchdog has removed the
// companions (the process is ending) returns false without running it.
bool createCatalogueCompanions(const std::function<void()>& create);

// Clears the base name when one f is done, however it ends. Until then the watchdog can
// still find the companions of a file being written.
struct BaseNameClearer {
  BaseNameClearer() = default;
  BaseNameClearer(const BaseNameClearer&) = delete;
  BaseNameClearer& operator=(const BaseNameClearer&) = delete;
  ~BaseNameClearer() { clearCatalogueBaseName(); }
};

}  // namespace odbs
