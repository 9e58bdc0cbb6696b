#include "tools/cli/cli_options.h"

#include <cstdlib>
#include <stdexcept>

namespace odbs::cli {

CliOptions parseOptions(int argc, char** argv, int first) {
  CliOptions o;
  int i = first;
  auto value = [&](const std::string& name) -> std::string {
    if (i + 1 >= argc) throw std::invalid_argument(name + " needs a value");
    return argv[++i];
  };
  for (; i < argc; ++i) {
    std::string a = argv[i];
    if (a == "--") {
      ++i;
      break;
    }
    if (a == "--server") {
      o.serverPath = value(a);
    } else if (a == "--format") {
      std::string f = value(a);
      if (f == "text") {
        o.format = OutputFormat::kText;
      } else if (f == "json") {
        o.format = OutputFormat::kJson;
      } else {
        throw std::invalid_argument("unknown output format '" + f + "' (text, json)");
      }
    } else if (a == "--timeout") {
      std::string t = value(a);
      char* end = nullptr;
      long ms = std::strtol(t.c_str(), &end, 10);
      if (end == t.c_str() || *end != '\0' || ms <= 0 || ms > (1L << 30)) {
        throw std::invalid_argument("--timeout needs a positive number of milliseconds");
      }
      o.timeoutMs = static_cast<int>(ms);
    } else if (a.size() > 2 && a.compare(0, 2, "--") == 0) {
      throw std::invalid_argument("unknown option " + a);
    } else {
      break;
    }
  }
  for (; i < argc; ++i) o.args.push_back(argv[i]);
  return o;
}

std::string resolveServerPath(const CliOptions& options, const char* argv0) {
  if (!options.serverPath.empty()) return options.serverPath;
  std::string self = argv0 != nullptr ? argv0 : "";
  size_t slash = self.find_last_of("/\\");  // either separator: Windows uses both
  if (slash == std::string::npos) return "./odb_server";
  return self.substr(0, slash + 1) + "odb_server";
}

}  // namespace odbs::cli
