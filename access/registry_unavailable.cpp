// Registry for a server built without a database library: every look-up fails with
// "Error openOdb", so each database command answers with its end record alone.
#include <stdexcept>

#include "access/registry.h"

namespace odbs {

void initializeDatabases() {}

OdbContext& lookupOrOpen(const std::string&, ReplyChannel&) {
  throw std::runtime_error("Error openOdb");
}

void closeDatabase(const std::string&, ReplyChannel&) {}

bool upgradeOutstanding(const std::string&) {
  return false;
}

void visitOpenDatabases() {}

void shutdownAll() {}

void finalizeDatabases() {}

}  // namespace odbs
