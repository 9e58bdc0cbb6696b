// Time to open a database and read its whole step and frame catalogue, for a database of
// many steps and frames (each frame holding one small field output). Prints figures.
//
//   odb_catalogue_bench [steps] [frames per step]      default 100 steps of 1,000 frames
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "platform/platform.h"

namespace {

using odbs::bench::since;
using Clock = std::chrono::steady_clock;
}  // namespace

int main(int argc, char** argv) {
  const int steps = argc > 1 ? std::atoi(argv[1]) : 100,
            frames = argc > 2 ? std::atoi(argv[2]) : 1000;
  const std::string path = "/tmp/odb_catalogue_bench.odb";
  odb_initializeAPI();
  auto t = Clock::now();
  {
    odb::Writer w(path);
    w.addInstance("PART-1-1").addNodes({1}, {0.f, 0.f, 0.f});
    odb::FieldBlockData b;
    b.instance = "PART-1-1";
    b.nodeLabels = {1};
    for (int s = 0; s < steps; ++s) {
      w.addStep({"Step-" + std::to_string(s + 1), "", "*STATIC", odb_Enum::TIME, double(s)});
      for (int f = 0; f < frames; ++f) {
        w.addFrame(
            {-1, odb_Enum::TIME, 0, (f + 1.0) / frames, 0.0, "Increment " + std::to_string(f + 1)});
        w.addFieldOutput({"U1", "", odb_Enum::SCALAR, {"U1"}, false, 0, {}});
        b.data = {float(f)};
        w.addFieldBlock(b);
      }
    }
    w.close();
  }
  std::printf("wrote %d steps of %d frames in %.1f s\n", steps, frames, since(t));
  std::vector<double> times;
  long count = 0;
  for (int r = 0; r < 5; ++r) {
    t = Clock::now();
    odb_Odb& odb = openOdb(path, true);
    for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next())
      for (const odb_Frame& f : it.currentValue().frames()) count += f.frameIndex() >= 0;
    times.push_back(since(t));
    closeOdb(odb);
  }
  std::sort(times.begin(), times.end());
  std::printf("open + whole step and frame catalogue (%ld frames): %.1f ms (median of 5)\n",
              count / 5, times[2] * 1e3);
  odbs::platform::removeFile(path);
  return 0;
}
