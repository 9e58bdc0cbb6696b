// The server's own bookkeeping for each open database, kept beside the database library's
// repository under the same key (the path as first used).
//
// One record per database replaces a family of parallel tables: what the file looked like
// when it was opened (to notice changes on disk), its serial number, the context handed to
// handlers, and the per-database data that later commands build and keep. The record is
// dropped whole when the database is closed, forgotten or re-opened, so nothing of an old
// file survives into the new one. The answers of the upgrade check are kept apart, since
// they concern a file whether or not it is open.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "access/registry.h"
#include "platform/platform.h"

namespace odbs {

// Per step of a database: what the step and frame catalogue sends about it.
struct CatalogueStepEntry {
  int32_t stepNumber = 0;  // 1-based, in step order
  int32_t frameCount = 0;
};

struct DatabaseRecord {
  platform::FileStat openedStat;  // size and modification time at open
  int32_t serial = 0;             // value of the open counter when it was opened
  OdbContext context;
  std::vector<CatalogueStepEntry> catalogueSteps;  // filled by the catalogue on first use
};

struct UpgradeCheck {
  platform::FileStat stat;  // the file as it was when checked
  bool required = false;
};

struct DatabaseBook {
  std::map<std::string, DatabaseRecord> records;
  std::map<std::string, UpgradeCheck> upgradeChecks;
  int32_t openCounter = 1;  // incremented before each open: the first database gets 2
};

// The process-wide book. Used by the main thread only, except that the parent watchdog
// may close databases at the very end of the process.
DatabaseBook& databaseBook();

// The serial number recorded for the database under key, or 0 when it is not open.
int32_t databaseSerial(const std::string& key);

}  // namespace odbs
