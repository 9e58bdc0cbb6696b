// odb_server: started by a parent application as
//   odb_server <parent pid> <command descriptor> <reply descriptor>
// It reads command lines from the command descriptor, writes reply records to the reply
// descriptor, and ends with status 0 on q, at end of input, or when the parent ends.
#include <cstdlib>

#include "access/registry.h"
#include "platform/platform.h"
#include "server/dispatcher.h"
#include "server/watchdog.h"

int main(int argc, char** argv) {
  // Arguments are read like atoi: missing or malformed ones become 0.
  auto arg = [&](int i) { return i < argc ? std::atoi(argv[i]) : 0; };
  odbs::platform::ignoreBrokenPipe();
  odbs::startParentWatchdog(arg(1));
  odbs::initializeDatabases();
  // Handler families that keep per-database tables register their set-up at open here
  // (odbs::registerOpenSetUp, context/odb_context.h), before the first command.
  odbs::runCommandLoop(arg(2), arg(3));
}
