#include "tools/common/program.h"

#include <CLI/CLI.hpp>
#include <iostream>

namespace odbs::tools {

const char* projectVersion() {
  return ODB_PROJECT_VERSION;
}

void setUpProgram(CLI::App& app) {
  app.set_version_flag("--version", app.get_name() + " " + projectVersion(),
                       "Print the program name and version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  // Options start with '-' on every system: a path such as /data/job.odb is an argument,
  // never a Windows-style "/option".
  app.allow_windows_style_options(false);
}

int parseCommandLine(CLI::App& app, int argc, const char* const* argv, std::ostream& out,
                     std::ostream& err) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == 0) return app.exit(e, out, err);  // --help, --version
    err << app.get_name() << ": " << e.what() << "\n"
        << "Run '" << app.get_name() << " --help' for the usage.\n";
    return kUsageError;
  }
  return -1;
}

int parseCommandLine(CLI::App& app, int argc, const char* const* argv) {
  return parseCommandLine(app, argc, argv, std::cout, std::cerr);
}

int parseCommandLine(CLI::App& app, const std::vector<std::string>& args, std::ostream& out,
                     std::ostream& err) {
  std::vector<const char*> argv;
  for (const auto& a : args) argv.push_back(a.c_str());
  argv.push_back(nullptr);
  return parseCommandLine(app, static_cast<int>(args.size()), argv.data(), out, err);
}

}  // namespace odbs::tools
