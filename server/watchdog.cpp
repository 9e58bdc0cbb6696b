#include "server/watchdog.h"

#include "access/catalogue.h"
#include "access/registry.h"
#include "platform/platform.h"

namespace odbs {

namespace {

// Enough for closing databases through the database library; far below a default stack.
constexpr size_t kWatchdogStack = 256 * 1024;

}  // namespace

bool startParentWatchdog(int parentPid) {
  return platform::startThread(
      [parentPid] {
        platform::waitForProcessExit(parentPid);
        // The main thread may be anywhere; nothing here waits for it, and the process ends
        // right after. Unlike q, this path removes the catalogue's companions and does not
        // finalise the database library.
        try {
          removeCatalogueTemp();
          shutdownAll();
        } catch (...) {
        }
        platform::exitProcess();
      },
      kWatchdogStack);
}

}  // namespace odbs
