#include "tools/cli/cli_options.h"

namespace odbs::cli {

std::string resolveServerPath(const CliOptions& options, const char* argv0) {
  if (!options.serverPath.empty()) return options.serverPath;
  std::string self = argv0 != nullptr ? argv0 : "";
  size_t slash = self.find_last_of("/\\");  // either separator: Windows uses both
  if (slash == std::string::npos) return "./odb_server";
  return self.substr(0, slash + 1) + "odb_server";
}

}  // namespace odbs::cli
