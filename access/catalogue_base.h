// The cache base name that command T sets for the next f, shared with the parent watchdog
// (which removes the catalogue's temporary companions when the parent ends). Thread-safe.
#pragma once

#include <string>

namespace odbs {

// The base name set by the last T, or "" when none is set.
std::string catalogueBaseName();

// Forgets the base name: every f that is to use a catalogue needs its own T.
void clearCatalogueBaseName();

}  // namespace odbs
