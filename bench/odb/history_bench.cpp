// History storage: the size of a database holding the history of many regions against the
// solver's own text print of the same values, and the time to read one region's history
// against reading every region's.
//
//   odb_history_bench [regions] [samples] [outputs]   (defaults 801 40 4, as an imported
//                                                      contact model; try 1000 10000 1)
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/bench_util.h"
#include "odb/odb.h"
#include "odb/writer.h"
#include "platform/platform.h"

namespace {

// The print of the solver: one line per region and sample with the label, the time and
// the outputs, each written as %13.6E (the text output a database should not exceed).
long textSize(int regions, int samples, int outputs) {
  long bytes = 0;
  char line[512];
  for (int r = 0; r < regions; ++r)
    for (int s = 0; s < samples; ++s) {
      int n = std::snprintf(line, sizeof line, "%10d %13.6E", r + 1, 0.01 * s);
      for (int o = 0; o < outputs; ++o)
        n += std::snprintf(line + n, sizeof line - n, " %13.6E", 1e-3 * (r + s + o));
      bytes += n + 1;
    }
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  const int regions = argc > 1 ? std::atoi(argv[1]) : 801;
  const int samples = argc > 2 ? std::atoi(argv[2]) : 40;
  const int outputs = argc > 3 ? std::atoi(argv[3]) : 4;
  const std::string path = "/tmp/odb_history_bench_" +
                           std::to_string(odbs::platform::processId()) + ".odb";
  odb_initializeAPI();
  auto t0 = odbs::bench::Clock::now();
  {
    odb::Writer w(path);
    w.addStep({"Step-1", "", "*STATIC", odb_Enum::TIME, 0.0});
    for (int r = 0; r < regions; ++r) {
      odb::HistoryRegionData region;
      region.name = "Element PART-1-1." + std::to_string(r + 1) + " Face 1";
      region.point.position = odb_Enum::ELEMENT_FACE;
      region.point.elementLabel = r + 1;
      region.point.elementType = "C3D8";
      for (int o = 0; o < outputs; ++o) {
        odb::HistoryOutputData out;
        out.name = "C" + std::to_string(o);
        for (int s = 0; s < samples; ++s) {
          out.frameValues.push_back(0.01 * s);
          out.data.push_back(static_cast<float>(0.01 * s));
          out.data.push_back(static_cast<float>(1e-3 * (r + s + o)));
        }
        region.outputs.push_back(std::move(out));
      }
      w.addHistoryRegion(region);
    }
    w.close();
  }
  double writeS = odbs::bench::since(t0);
  odbs::platform::FileStat st;
  odbs::platform::statFile(path, &st);
  long text = textSize(regions, samples, outputs);

  std::vector<double> one, all;
  for (int round = 0; round < 5; ++round) {
    odb_Odb& odb = openOdb(path, true);
    const odb_Step& step = odb.steps()["Step-1"];
    auto t = odbs::bench::Clock::now();
    const odb_HistoryRegion& r = step.historyRegions()["Element PART-1-1." +
                                                      std::to_string(regions / 2) + " Face 1"];
    for (odb_HistoryOutputRepositoryIT it(r.historyOutputs()); !it.isDone(); it.next())
      it.currentValue().data();
    one.push_back(odbs::bench::since(t));
    closeOdb(odb);
    odb_Odb& again = openOdb(path, true);
    t = odbs::bench::Clock::now();
    const odb_HistoryRegionRepository& repo = again.steps()["Step-1"].historyRegions();
    for (odb_HistoryRegionRepositoryIT it(repo); !it.isDone(); it.next())
      for (odb_HistoryOutputRepositoryIT o(it.currentValue().historyOutputs()); !o.isDone();
           o.next())
        o.currentValue().data();
    all.push_back(odbs::bench::since(t));
    closeOdb(again);
  }
  std::printf("history of %d regions x %d outputs x %d samples\n", regions, outputs, samples);
  std::printf("database size          %10.3f MB\n", st.size / 1e6);
  std::printf("solver text print      %10.3f MB  (database / text = %.2f, goal <= 1)\n",
              text / 1e6, double(st.size) / double(text));
  std::printf("write                  %10.3f s\n", writeS);
  std::printf("read one region        %10.3f ms (catalogue included)\n", odbs::bench::median(one) * 1e3);
  std::printf("read every region      %10.3f ms\n", odbs::bench::median(all) * 1e3);
  odbs::platform::removeFile(path);
  return 0;
}
