// The one argument parser of the benchmark programs: every option is named, a value follows
// an option that takes one, and anything else prints the usage line and ends the program.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "bench/bench_util.h"

namespace odbs::bench {

struct BenchOption {
  const char* name;  // "--runs"
  bool takesValue;
  std::function<void(const char* value)> take;  // value is nullptr for an option without one
};

// An option whose value is an integer, raised to at least min.
inline BenchOption intOption(const char* name, int& target, int min = 1) {
  return {name, true, [&target, min](const char* v) { target = std::max(min, std::atoi(v)); }};
}

// Reads argv[1] to argv[argc - 1] against options. On an unknown option prints usage, on a
// missing value "<option> needs a value", both to standard error, and exits with status 2.
inline void parseBenchArgs(int argc, char** argv, const std::vector<BenchOption>& options,
                           const char* usage) {
  for (int i = 1; i < argc; ++i) {
    const BenchOption* found = nullptr;
    for (const BenchOption& o : options)
      if (std::strcmp(argv[i], o.name) == 0) found = &o;
    if (found == nullptr) {
      std::fprintf(stderr, "%s\n", usage);
      std::exit(2);
    }
    if (!found->takesValue) {
      found->take(nullptr);
      continue;
    }
    if (i + 1 >= argc) {
      std::fprintf(stderr, "%s needs a value\n", argv[i]);
      std::exit(2);
    }
    found->take(argv[++i]);
  }
}

// The same for a server benchmark: server starts as odb_server beside argv[0]; --server PATH
// and --runs N (at least 1) are read beside the benchmark's own options.
inline void parseServerBenchArgs(int argc, char** argv, std::string& server, int& runs,
                                 std::vector<BenchOption> options, const char* usage) {
  server = serverBeside(argv[0]);
  options.push_back({"--server", true, [&server](const char* v) { server = v; }});
  options.push_back(intOption("--runs", runs));
  parseBenchArgs(argc, argv, options, usage);
}

}  // namespace odbs::bench
