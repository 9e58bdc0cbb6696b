#include "access/catalogue_base.h"

#include <functional>
#include <mutex>

#include "access/catalogue.h"
#include "platform/platform.h"

namespace odbs {

namespace {

std::mutex baseMutex;
std::string baseName;
bool baseSet = false;
// Set once the watchdog has removed the companions: the process is ending, and no cache
// file may be started after that (it would outlive the process).
bool companionsRemoved = false;

}  // namespace

void setCatalogueBaseName(const std::string& base) {
  std::lock_guard<std::mutex> lock(baseMutex);
  baseName = base;
  baseSet = true;
}

std::string catalogueBaseName() {
  std::lock_guard<std::mutex> lock(baseMutex);
  return baseSet ? baseName : std::string();
}

void clearCatalogueBaseName() {
  std::lock_guard<std::mutex> lock(baseMutex);
  baseName.clear();
  baseSet = false;
}

bool createCatalogueCompanions(const std::function<void()>& create) {
  std::lock_guard<std::mutex> lock(baseMutex);
  if (companionsRemoved) return false;
  create();
  return true;
}

void removeCatalogueTemp() {
  // Held while removing, so that a writer creating its companions right now either
  // finishes first (and its files are removed here) or never starts.
  std::lock_guard<std::mutex> lock(baseMutex);
  companionsRemoved = true;
  if (!baseSet) return;
  // A cache file still open for writing is left to the process's end; removing its name
  // is enough.
  platform::removeFile(baseName + "_tmp");
  platform::removeFile(baseName + "_lock");
}

}  // namespace odbs
