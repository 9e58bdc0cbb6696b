// Field output benchmarks; prints figures, never fails on timing.
//  1. Time to read one field output (S at integration points) through the library,
//     beside a plain HDF5 read of the same arrays.
//  2. Peak memory while reading every field output of every frame of a generated
//     database, beside the size of its largest single field output.
//
//   odb_results_bench           1,000,000 values; a database of about 0.8 GB
//   odb_results_bench --full    10,000,000 values; a database of about 4.3 GB
// Each measurement runs in a fresh child process so that its peak memory is its own.
#include <hdf5.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "bench/gen/generator.h"
#include "odb/odb.h"
#include "platform/platform.h"

namespace {

using odbs::bench::median;
using odbs::bench::peakMb;
using odbs::bench::since;

using Clock = std::chrono::steady_clock;

// Plain HDF5: the block catalogue's row count, then data, element labels and integration
// points of every block of field "S" in frame 0 of step 0, one read each.
double plainRead(const std::string& path) {
  auto t = Clock::now();
  hid_t f = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  const std::string field = "/steps/0/frames/0/1/";  // U is 0, S is 1
  hid_t cat = H5Dopen2(f, (field + "block_rows").c_str(), H5P_DEFAULT);
  hid_t space = H5Dget_space(cat);
  std::vector<long long> rows(size_t(H5Sget_simple_extent_npoints(space)));
  H5Dread(cat, H5T_NATIVE_LLONG, H5S_ALL, H5S_ALL, H5P_DEFAULT, rows.data());
  H5Sclose(space);
  H5Dclose(cat);
  std::vector<std::vector<char>> keep;
  for (size_t b = 0; b < rows.size(); ++b)
    for (const char* name : {"data", "element_labels", "integration_points"}) {
      hid_t ds =
          H5Dopen2(f, (field + "blocks/" + std::to_string(b) + "/" + name).c_str(), H5P_DEFAULT);
      hid_t t2 = H5Dget_type(ds);
      hid_t sp = H5Dget_space(ds);
      keep.emplace_back(size_t(H5Sget_simple_extent_npoints(sp)) * H5Tget_size(t2));
      H5Dread(ds, H5Tget_class(t2) == H5T_FLOAT ? H5T_NATIVE_FLOAT : H5T_NATIVE_INT, H5S_ALL,
              H5S_ALL, H5P_DEFAULT, keep.back().data());
      H5Sclose(sp);
      H5Tclose(t2);
      H5Dclose(ds);
    }
  H5Fclose(f);
  return since(t);
}

double libraryRead(const std::string& path, long* check) {
  auto t = Clock::now();
  odb_Odb& odb = openOdb(path, true);
  const odb_FieldOutput& s = odb.steps().at(0).frames()[0].fieldOutputs()["S"];
  odb_SequenceFieldBulkData blocks = s.bulkDataBlocks();
  for (int b = 0; b < blocks.size(); ++b) *check += blocks[b].length();
  double elapsed = since(t);
  closeOdb(odb);
  return elapsed;
}

int measureFieldRead(const std::string& path) {
  odb_initializeAPI();
  long check = 0;
  plainRead(path);  // warm the page cache
  std::vector<double> lib, plain;
  for (int i = 0; i < 5; ++i) {
    lib.push_back(libraryRead(path, &check));
    plain.push_back(plainRead(path));
  }
  std::printf("field S: %ld values\n", check / 5);
  std::printf("  library read (open + one field)  %9.1f ms (median of 5)\n", median(lib) * 1e3);
  std::printf("  plain HDF5 read of same arrays   %9.1f ms (median of 5)\n", median(plain) * 1e3);
  std::printf("  library / plain HDF5             %9.2f\n", median(lib) / median(plain));
  return 0;
}

int measureAllFields(const std::string& path, double largestMb) {
  odb_initializeAPI();
  auto t = Clock::now();
  double baseline = peakMb();
  odb_Odb& odb = openOdb(path, true);
  long fields = 0, values = 0;
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next())
    for (const odb_Frame& f : it.currentValue().frames()) {
      for (odb_FieldOutputRepositoryIT fi(f.fieldOutputs()); !fi.isDone(); fi.next()) {
        odb_SequenceFieldBulkData blocks = fi.currentValue().bulkDataBlocks();
        for (int b = 0; b < blocks.size(); ++b) values += blocks[b].length();
        blocks.clearAll();
        ++fields;
      }
    }
  double elapsed = since(t);
  closeOdb(odb);
  std::printf("all fields: %ld field outputs, %ld values in %.1f s\n", fields, values, elapsed);
  std::printf("  peak memory                      %9.1f MB (%.1f MB before opening)\n", peakMb(),
              baseline);
  std::printf("  largest single field output      %9.1f MB\n", largestMb);
  std::printf("  peak / largest field output      %9.2f\n", (peakMb() - baseline) / largestMb);
  return 0;
}

int runChild(const std::vector<std::string>& args) {
  std::fflush(stdout);
  std::vector<std::string> argv = {odbs::platform::canonicalPath("/proc/self/exe")};
  argv.insert(argv.end(), args.begin(), args.end());
  int status = 1;
  odbs::platform::waitChild(odbs::platform::spawnProcess(argv, {1, 2}), -1, &status);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 3 && !std::strcmp(argv[1], "--field")) return measureFieldRead(argv[2]);
  if (argc >= 4 && !std::strcmp(argv[1], "--all"))
    return measureAllFields(argv[2], std::atof(argv[3]));
  bool full = argc >= 2 && !std::strcmp(argv[1], "--full");
  odb_initializeAPI();
  const std::string one = "/tmp/odb_results_bench_field.odb",
                    all = "/tmp/odb_results_bench_all.odb";

  odbgen::Options o;
  o.elements = (full ? 10000000 : 1000000) / 8;  // 8 integration points per element
  o.frames = 1;
  auto t = Clock::now();
  odbgen::generate(one, o);
  std::printf("generated one-frame database in %.1f s\n", since(t));
  int status = runChild({"--field", one});
  odbs::platform::removeFile(one);

  odbgen::Options a;
  a.elements = full ? 500000 : 125000;
  a.instances = 2;
  a.frames = full ? 4 : 3;
  a.steps = 1;
  a.complexStep = true;
  a.historyRegions = 10;
  t = Clock::now();
  odbgen::Summary s = odbgen::generate(all, a);
  odbs::platform::FileStat st;
  odbs::platform::statFile(all, &st);
  std::printf("generated %lld frames, %.2f GB in %.1f s\n", (long long)s.frames, st.size / 1e9,
              since(t));
  status |= runChild({"--all", all, std::to_string(s.largestFieldBytes / 1e6)});
  odbs::platform::removeFile(all);
  return status;
}
