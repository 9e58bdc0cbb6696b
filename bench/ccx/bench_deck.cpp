// ccx_bench_deck: writes a CalculiX deck of a block of about n linear bricks, clamped at
// its base and pulled at its top, for the import benchmark.
//   ccx_bench_deck <elements> <deck.inp> [binary|text] [results.frd [increments]]
// "binary" asks the solver for a binary result file (*NODE OUTPUT, *ELEMENT OUTPUT). With
// results.frd it also writes, without running the solver, an ASCII result file of the
// deck in the solver's own layout: per increment displacements, stresses and forces at
// every node (made-up values of every magnitude and sign).
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// A result block header and its component lines, as the solver writes them.
void blockHead(FILE* f, const char* name, long nodes, double time, int increment,
               const std::vector<std::string>& components, int type) {
  std::fprintf(f, "    1PSTEP%26d%12d%12d\n", increment, increment, 1);
  std::fprintf(f, "  100CL%5d%12.9f%12ld%20s%2d%5d%10s%2d\n", 100 + increment, time, nodes, "", 0,
               increment, "", 1);
  std::fprintf(f, " -4  %-8s%4zu    1\n", name, components.size() + (type == 2 ? 1 : 0));
  int i = 0;
  for (const std::string& c : components) {
    ++i;
    std::fprintf(f, " -5  %-8s%5d%5d%5d%5d\n", c.c_str(), 1, type, type == 4 ? (i - 1) % 3 + 1 : i,
                 type == 4 ? (i > 3 ? i % 3 + 1 : i) : 0);
  }
  if (type == 2) std::fprintf(f, " -5  ALL         1    2    0    0    1ALL\n");
}

bool writeResults(const char* path, long nx, long nz, long elements, int increments) {
  FILE* f = std::fopen(path, "w");
  if (!f) return false;
  const long nodes = (nx + 1) * (nx + 1) * (nz + 1);
  std::fprintf(f, "    1C\n    1UImport benchmark\n");
  std::fprintf(f, "    2C%30ld%37d\n", nodes, 1);
  long n = 0;
  for (long k = 0; k <= nz; ++k)
    for (long j = 0; j <= nx; ++j)
      for (long i = 0; i <= nx; ++i)
        std::fprintf(f, " -1%10ld%12.5E%12.5E%12.5E\n", ++n, double(i), double(j), double(k));
  std::fprintf(f, " -3\n    3C%30ld%37d\n", elements, 1);
  long e = 0;
  auto id = [&](long i, long j, long k) { return 1 + i + (nx + 1) * (j + (nx + 1) * k); };
  for (long k = 0; k < nz; ++k)
    for (long j = 0; j < nx; ++j)
      for (long i = 0; i < nx; ++i) {
        std::fprintf(f, " -1%10ld%5d%5d%5d\n -2%10ld%10ld%10ld%10ld%10ld%10ld%10ld%10ld\n", ++e,
                     1, 0, 1, id(i, j, k), id(i + 1, j, k), id(i + 1, j + 1, k), id(i, j + 1, k),
                     id(i, j, k + 1), id(i + 1, j, k + 1), id(i + 1, j + 1, k + 1),
                     id(i, j + 1, k + 1));
      }
  std::fprintf(f, " -3\n");
  auto value = [](long node, int c, int inc) {
    double v = std::sin(0.001 * node + c) * std::pow(10.0, (node + c) % 9 - 4) * inc;
    return v;
  };
  for (int inc = 1; inc <= increments; ++inc) {
    double time = double(inc) / increments;
    struct Block {
      const char* name;
      std::vector<std::string> components;
      int type;
    } blocks[] = {{"DISP", {"D1", "D2", "D3"}, 2},
                  {"STRESS", {"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"}, 4},
                  {"FORC", {"F1", "F2", "F3"}, 2}};
    for (const Block& b : blocks) {
      blockHead(f, b.name, nodes, time, inc, b.components, b.type);
      for (long node = 1; node <= nodes; ++node) {
        std::fprintf(f, " -1%10ld", node);
        for (size_t c = 0; c < b.components.size(); ++c) {
          std::fprintf(f, "%12.5E", value(node, static_cast<int>(c), inc));
        }
        std::fputc('\n', f);
      }
      std::fprintf(f, " -3\n");
    }
  }
  std::fprintf(f, " 9999\n");
  return std::fclose(f) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: ccx_bench_deck <elements> <deck.inp> [binary]\n");
    return 2;
  }
  long wanted = std::atol(argv[1]);
  bool binary = argc > 3 && std::string(argv[3]) == "binary";
  const char* frd = argc > 4 ? argv[4] : nullptr;
  int increments = argc > 5 ? std::max(1, std::atoi(argv[5])) : 2;
  // A block of nx * nx * nz bricks, four times as wide as high.
  long nz = std::max(1L, std::lround(std::cbrt(wanted / 16.0)));
  long nx = std::max(1L, std::lround(std::sqrt(static_cast<double>(wanted) / nz)));
  FILE* f = std::fopen(argv[2], "w");
  if (!f) {
    std::perror(argv[2]);
    return 1;
  }
  auto id = [&](long i, long j, long k) { return 1 + i + (nx + 1) * (j + (nx + 1) * k); };
  std::fprintf(f, "*HEADING\nImport benchmark: %ld x %ld x %ld bricks\n*NODE, NSET=NALL\n", nx, nx,
               nz);
  for (long k = 0; k <= nz; ++k)
    for (long j = 0; j <= nx; ++j)
      for (long i = 0; i <= nx; ++i)
        std::fprintf(f, "%ld, %ld., %ld., %ld.\n", id(i, j, k), i, j, k);
  std::fprintf(f, "*ELEMENT, TYPE=C3D8, ELSET=EALL\n");
  long e = 0;
  for (long k = 0; k < nz; ++k)
    for (long j = 0; j < nx; ++j)
      for (long i = 0; i < nx; ++i)
        std::fprintf(f, "%ld, %ld, %ld, %ld, %ld, %ld, %ld, %ld, %ld\n", ++e, id(i, j, k),
                     id(i + 1, j, k), id(i + 1, j + 1, k), id(i, j + 1, k), id(i, j, k + 1),
                     id(i + 1, j, k + 1), id(i + 1, j + 1, k + 1), id(i, j + 1, k + 1));
  std::fprintf(f, "*NSET, NSET=BASE, GENERATE\n1, %ld\n", id(nx, nx, 0));
  std::fprintf(f, "*NSET, NSET=TOP, GENERATE\n%ld, %ld\n", id(0, 0, nz), id(nx, nx, nz));
  std::fprintf(f,
               "*MATERIAL, NAME=STEEL\n*ELASTIC\n210000., 0.3\n"
               "*SOLID SECTION, ELSET=EALL, MATERIAL=STEEL\n*BOUNDARY\nBASE, 1, 3\n"
               "*STEP\n*STATIC, SOLVER=ITERATIVE CHOLESKY\n*BOUNDARY\nTOP, 3, 3, 0.01\n"
               "%s\nU\n%s\nS\n*END STEP\n",
               binary ? "*NODE OUTPUT" : "*NODE FILE", binary ? "*ELEMENT OUTPUT" : "*EL FILE");
  std::fclose(f);
  if (frd && !writeResults(frd, nx, nz, e, increments)) {
    std::perror(frd);
    return 1;
  }
  std::printf("%ld\n", e);
  return 0;
}
