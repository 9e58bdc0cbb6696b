// odb_gen: writes a synthetic database for benchmarks.
//   odb_gen output.odb [--elements N] [--instances K] [--shells] [--steps S] [--frames F]
//                      [--complex] [--history R] [--double]
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "bench/gen/generator.h"
#include "odb/odb.h"

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr,
                 "usage: odb_gen output.odb [--elements N] [--instances K] [--shells] [--steps S]\n"
                 "               [--frames F] [--complex] [--history R] [--double]\n");
    return 2;
  }
  odbgen::Options o;
  for (int i = 2; i < argc; ++i) {
    auto next = [&] { return i + 1 < argc ? std::atoll(argv[++i]) : 0; };
    if (!std::strcmp(argv[i], "--elements"))
      o.elements = next();
    else if (!std::strcmp(argv[i], "--instances"))
      o.instances = int(next());
    else if (!std::strcmp(argv[i], "--shells"))
      o.shells = true;
    else if (!std::strcmp(argv[i], "--steps"))
      o.steps = int(next());
    else if (!std::strcmp(argv[i], "--frames"))
      o.frames = int(next());
    else if (!std::strcmp(argv[i], "--complex"))
      o.complexStep = true;
    else if (!std::strcmp(argv[i], "--history"))
      o.historyRegions = int(next());
    else if (!std::strcmp(argv[i], "--double"))
      o.doublePrecision = true;
    else {
      std::fprintf(stderr, "odb_gen: unknown option %s\n", argv[i]);
      return 2;
    }
  }
  try {
    odb_initializeAPI();
    odbgen::Summary s = odbgen::generate(argv[1], o);
    std::printf("%s: %lld nodes, %lld elements, %lld frames, largest field output %.1f MB\n",
                argv[1], (long long)s.nodes, (long long)s.elements, (long long)s.frames,
                s.largestFieldBytes / 1e6);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "odb_gen: %s\n", e.what());
    return 1;
  }
  return 0;
}
