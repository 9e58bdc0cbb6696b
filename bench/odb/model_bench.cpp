// Open time, peak memory and read time of a large generated model, beside a plain HDF5
// read of the same arrays. Prints figures; never fails on timing.
//
//   odb_model_bench            a 50x50x50-hexahedron model (125,000 elements)
//   odb_model_bench --full     100x100x100 (1,000,000 elements, 1,030,301 nodes)
//   odb_model_bench --n N      N x N x N
// Measurements run in a fresh child process so that generating the file does not count
// towards the peak memory.
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
#include "odb/writer.h"
#include "platform/platform.h"

namespace {

using odbs::bench::median;
using odbs::bench::peakMb;

using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point a, Clock::time_point b) {
  return std::chrono::duration<double>(b - a).count();
}

void generate(const std::string& path, int n) {
  odb::Writer w(path);
  w.setTitle("benchmark model");
  odbgen::addBlockMesh(w.addInstance("PART-1-1"), n, false, -1);
  w.close();
}

template <typename T>
void plainRead(hid_t file, const char* name, std::vector<T>& out, hid_t type) {
  hid_t ds = H5Dopen2(file, name, H5P_DEFAULT);
  hid_t space = H5Dget_space(ds);
  out.resize(size_t(H5Sget_simple_extent_npoints(space)));
  H5Dread(ds, type, H5S_ALL, H5S_ALL, H5P_DEFAULT, out.data());
  H5Sclose(space);
  H5Dclose(ds);
}

// Reads the same arrays the library reads for nodes and elements, with bare HDF5 calls.
double plainHdf5(const std::string& path) {
  auto t0 = Clock::now();
  hid_t f = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
  std::vector<int32_t> labels, elabels, types, conn, cats;
  std::vector<float> coords;
  std::vector<int64_t> offsets;
  const std::string p = "/assembly/instances/0/";
  plainRead(f, (p + "nodes/labels").c_str(), labels, H5T_NATIVE_INT32);
  plainRead(f, (p + "nodes/coordinates").c_str(), coords, H5T_NATIVE_FLOAT);
  plainRead(f, (p + "elements/labels").c_str(), elabels, H5T_NATIVE_INT32);
  plainRead(f, (p + "elements/type_index").c_str(), types, H5T_NATIVE_INT32);
  plainRead(f, (p + "elements/offsets").c_str(), offsets, H5T_NATIVE_INT64);
  plainRead(f, (p + "elements/connectivity").c_str(), conn, H5T_NATIVE_INT32);
  plainRead(f, (p + "elements/section_category").c_str(), cats, H5T_NATIVE_INT32);
  H5Fclose(f);
  return seconds(t0, Clock::now());
}

double apiRead(const std::string& path, long* checksum) {
  auto t0 = Clock::now();
  odb_Odb& odb = openOdb(path, true);
  const odb_Instance& inst = odb.rootAssembly().instances()["PART-1-1"];
  odb_SequenceNode nodes = inst.nodes();
  odb_SequenceElement elements = inst.elements();
  double t = seconds(t0, Clock::now());
  *checksum += nodes.size() + elements.size() + elements[elements.size() - 1].connectivity()[7];
  closeOdb(odb);
  return t;
}

int measure(const std::string& path) {
  odb_initializeAPI();
  std::vector<double> opens;
  for (int i = 0; i < 7; ++i) {
    auto t0 = Clock::now();
    odb_Odb& odb = openOdb(path, true);
    opens.push_back(seconds(t0, Clock::now()));
    closeOdb(odb);
  }
  double openPeak = peakMb();
  std::vector<double> api, plain;
  long checksum = 0;
  plainHdf5(path);  // warm the page cache
  for (int i = 0; i < 5; ++i) {
    api.push_back(apiRead(path, &checksum));
    plain.push_back(plainHdf5(path));
  }
  odbs::platform::FileStat st;
  odbs::platform::statFile(path, &st);
  std::printf("file size                      %10.1f MB\n", st.size / 1e6);
  std::printf("open (median of 7)             %10.2f ms\n", median(opens) * 1e3);
  std::printf("peak memory after opening      %10.1f MB\n", openPeak);
  std::printf("read nodes+elements, library   %10.1f ms (median of 5)\n", median(api) * 1e3);
  std::printf("read same arrays, plain HDF5   %10.1f ms (median of 5)\n", median(plain) * 1e3);
  std::printf("library / plain HDF5           %10.2f\n", median(api) / median(plain));
  std::printf("peak memory after reading      %10.1f MB\n", peakMb());
  return checksum > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  int n = 50;
  std::string path = "/tmp/odb_model_bench.odb";
  for (int i = 1; i < argc; ++i) {
    if (!std::strcmp(argv[i], "--full"))
      n = 100;
    else if (!std::strcmp(argv[i], "--n") && i + 1 < argc)
      n = std::atoi(argv[++i]);
    else if (!std::strcmp(argv[i], "--measure") && i + 1 < argc)
      return measure(argv[++i]);
    else
      path = argv[i];
  }
  odb_initializeAPI();
  std::printf("model: %d x %d x %d hexahedra, %ld nodes\n", n, n, n,
              long(n + 1) * (n + 1) * (n + 1));
  auto t0 = Clock::now();
  generate(path, n);
  std::printf("generate and write             %10.1f ms\n", seconds(t0, Clock::now()) * 1e3);
  std::fflush(stdout);
  std::string self = odbs::platform::canonicalPath("/proc/self/exe");
  pid_t child = odbs::platform::spawnProcess({self, "--measure", path}, {1, 2});
  int status = 1;
  odbs::platform::waitChild(child, -1, &status);
  odbs::platform::removeFile(path);
  return status;
}
