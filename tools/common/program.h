// What every command-line program of the project shares: --help and --version, and how a
// command line that cannot be parsed ends the program.
//
//   CLI::App app{"what the program does", "odb_fields"};
//   odbs::tools::setUpProgram(app);
//   app.add_option(...);
//   if (int code = odbs::tools::parseCommandLine(app, argc, argv); code >= 0) return code;
//
// --help prints the usage on standard output and ends with status 0; --version prints the
// program name and the project version the same way. A bad command line prints the reason
// and a pointer to --help on standard error and ends with status 2.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace odbs::tools {

// Exit status of a command line that could not be parsed.
constexpr int kUsageError = 2;

// The project version, e.g. "0.1.0".
const char* projectVersion();

// Adds --version and the conventions above to app (call before adding options).
void setUpProgram(CLI::App& app);

// Parses argv[1..argc). Returns -1 when the program should go on, else the exit status
// (0 after --help or --version, kUsageError after a bad command line) with the text
// written to out or err.
int parseCommandLine(CLI::App& app, int argc, const char* const* argv, std::ostream& out,
                     std::ostream& err);
int parseCommandLine(CLI::App& app, int argc, const char* const* argv);

// The same for arguments held in a vector (args[0] is the program name).
int parseCommandLine(CLI::App& app, const std::vector<std::string>& args, std::ostream& out,
                     std::ostream& err);

}  // namespace odbs::tools
