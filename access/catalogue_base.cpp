#include "access/catalogue_base.h"

#include <mutex>

#include "access/catalogue.h"
#include "platform/platform.h"

namespace odbs {

namespace {

std::mutex baseMutex;
std::string baseName;
bool baseSet = false;

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

void removeCatalogueTemp() {
  std::string base;
  {
    std::lock_guard<std::mutex> lock(baseMutex);
    if (!baseSet) return;
    base = baseName;
  }
  // A cache file still open for writing is left to the process's end; removing its name
  // is enough.
  platform::removeFile(base + "_tmp");
  platform::removeFile(base + "_lock");
}

}  // namespace odbs
