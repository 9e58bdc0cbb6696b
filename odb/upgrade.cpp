// Version upgrade: reads a database of an older format version and writes a copy in the
// current version.
#include <stdexcept>

#include "odb/model_copy.h"
#include "odb/model_store.h"
#include "odb/odb.h"
#include "odb/writer.h"

void upgradeOdb(const std::string& path, const std::string& copyPath) {
  odb_Odb old(path, true, /*allowOldVersion=*/true);
  odb::Writer w(copyPath);
  odb::addModel(w, odb::readModel(old));
  odb::copyResults(old, w);
  w.close();
}
