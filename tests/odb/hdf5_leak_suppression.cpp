// The HDF5 library leaks a little memory on some error paths when it reads a file whose
// metadata was overwritten. Those leaks are in the library, not in ours: the leak checker
// ignores allocations made inside libhdf5 and still reports every other leak.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libhdf5\n";
}
