// odb_gen: writes a synthetic database for benchmarks.
//   odb_gen output.odb [--elements N] [--instances K] [--shells] [--steps S] [--frames F]
//                      [--complex] [--history R] [--double]
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>

#include "bench/gen/generator.h"
#include "odb/odb.h"
#include "tools/common/program.h"

int main(int argc, char** argv) {
  CLI::App app{"Writes a synthetic database for benchmarks.", "odb_gen"};
  odbs::tools::setUpProgram(app);
  odbgen::Options o;
  std::string output;
  app.add_option("output", output, "The database to write")->required();
  app.add_option("--elements", o.elements, "Elements per instance (default 1000)")
      ->check(CLI::Range(int64_t{1}, int64_t{1} << 40));
  app.add_option("--instances", o.instances, "Part instances (default 1)")
      ->check(CLI::Range(1, 1 << 20));
  app.add_flag("--shells", o.shells, "Shell elements with section points");
  app.add_option("--steps", o.steps, "Steps (default 1)")->check(CLI::Range(0, 1 << 20));
  app.add_option("--frames", o.frames, "Frames per step (default 2)")
      ->check(CLI::Range(0, 1 << 24));
  app.add_flag("--complex", o.complexStep, "Add a frequency step with a complex U");
  app.add_option("--history", o.historyRegions, "Node history regions per step (default 0)")
      ->check(CLI::Range(0, 1 << 24));
  app.add_flag("--double", o.doublePrecision, "Double-precision field values");
  if (int code = odbs::tools::parseCommandLine(app, argc, argv); code >= 0) return code;
  try {
    odb_initializeAPI();
    odbgen::Summary s = odbgen::generate(output, o);
    std::printf("%s: %lld nodes, %lld elements, %lld frames, largest field output %.1f MB\n",
                output.c_str(), (long long)s.nodes, (long long)s.elements, (long long)s.frames,
                s.largestFieldBytes / 1e6);
    // Peak memory of the whole run: the writer keeps one field output, not the frames.
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
      if (line.rfind("VmHWM:", 0) == 0)
        std::printf("peak memory while writing: %s\n", line.c_str() + 6);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "odb_gen: %s\n", e.what());
    return 1;
  }
  return 0;
}
