// ccx_bench_deck: writes a CalculiX deck of a block of about n linear bricks, clamped at
// its base and pulled at its top, for the import benchmark.
//   ccx_bench_deck <elements> <deck.inp> [binary]
// "binary" asks the solver for a binary result file (*NODE OUTPUT, *ELEMENT OUTPUT).
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: ccx_bench_deck <elements> <deck.inp> [binary]\n");
    return 2;
  }
  long wanted = std::atol(argv[1]);
  bool binary = argc > 3 && std::string(argv[3]) == "binary";
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
  std::printf("%ld\n", e);
  return 0;
}
