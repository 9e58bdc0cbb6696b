// odb_cli: the command-line client of odb_server. `odb_cli --help` lists the subcommands;
// each lives in files of its own (cli_app.h).
#include <iostream>
#include <string>
#include <vector>

#include "tools/cli/cli_app.h"

int main(int argc, char** argv) {
  return odbs::cli::runCli(std::vector<std::string>(argv, argv + argc), std::cin, std::cout,
                           std::cerr);
}
