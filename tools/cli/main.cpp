// odb_cli: the command-line client of odb_server.
//
//   odb_cli raw [options] [line...]   send lines (else stdin's lines), print every record
//
// Options: --server PATH (default: odb_server beside odb_cli), --format text|json,
// --timeout MS (limit for one reply). Further subcommands (a database's model, steps,
// fields) are added to the table below, each in files of its own.
#include <cstring>
#include <iostream>
#include <stdexcept>

#include "tools/cli/cli_options.h"
#include "tools/cli/fields_command.h"
#include "tools/cli/model_command.h"
#include "tools/cli/raw_command.h"
#include "tools/cli/steps_command.h"

namespace {

const char kUsage[] =
    "usage: odb_cli <subcommand> [options] [arguments]\n"
    "\n"
    "subcommands:\n"
    "  raw [line...]   send command lines (from the arguments, else one per line of\n"
    "                  standard input) and print every reply record\n"
    "  model DATABASE [--records] [--nodes-only]\n"
    "                  the model: sections, materials, nodes and elements per instance\n"
    "  sets DATABASE [--records] [--surfaces] [--coupling] [--named NAME...]\n"
    "                  node sets, element sets and surfaces with their member counts\n"
    "  steps DATABASE [--records] [--all-frames] [--cache FILE]\n"
    "                  steps and frames; --cache keeps the catalogue in FILE\n"
    "  fields DATABASE --field NAME [--step N] [--frame N] [--form s|l|m|v|t|b]\n"
    "                  [--pair A B] [--position P] [--defined] [--orientations]\n"
    "                  [--values N] [--records]\n"
    "                  the values of one field output of one frame, one row per value\n"
    "\n"
    "options:\n"
    "  --server PATH     the odb_server program (default: beside odb_cli)\n"
    "  --format FORMAT   text (default) or json\n"
    "  --timeout MS      time limit for one reply (default 30000)\n";

struct Subcommand {
  const char* name;
  int (*run)(const odbs::cli::CliOptions&, const std::string& serverPath);
};

int runRawCommand(const odbs::cli::CliOptions& options, const std::string& serverPath) {
  return odbs::cli::runRaw(options, serverPath, std::cin, std::cout);
}

int runModelCommand(const odbs::cli::CliOptions& options, const std::string& serverPath) {
  return odbs::cli::runModel(options, serverPath, std::cout, std::cerr);
}

int runSetsCommand(const odbs::cli::CliOptions& options, const std::string& serverPath) {
  return odbs::cli::runSets(options, serverPath, std::cout, std::cerr);
}

int runStepsCommand(const odbs::cli::CliOptions& options, const std::string& serverPath) {
  return odbs::cli::runSteps(options, serverPath, std::cout, std::cerr);
}

int runFieldsCommand(const odbs::cli::CliOptions& options, const std::string& serverPath) {
  return odbs::cli::runFields(options, serverPath, std::cout, std::cerr);
}

const Subcommand kSubcommands[] = {
    {"raw", runRawCommand},     {"model", runModelCommand},   {"sets", runSetsCommand},
    {"steps", runStepsCommand}, {"fields", runFieldsCommand},
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
    std::cout << kUsage;
    return argc < 2 ? 2 : 0;
  }
  for (const Subcommand& sub : kSubcommands) {
    if (std::strcmp(argv[1], sub.name) != 0) continue;
    try {
      odbs::cli::CliOptions options = odbs::cli::parseOptions(argc, argv, 2);
      return sub.run(options, odbs::cli::resolveServerPath(options, argv[0]));
    } catch (const std::invalid_argument& e) {
      std::cerr << "odb_cli: " << e.what() << "\n\n" << kUsage;
      return 2;
    }
  }
  std::cerr << "odb_cli: unknown subcommand '" << argv[1] << "'\n\n" << kUsage;
  return 2;
}
