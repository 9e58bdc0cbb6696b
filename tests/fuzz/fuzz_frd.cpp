// Fuzz target: the CalculiX result file reader, text and binary. Refusing input with
// ParseError is fine; any other exception, crash or sanitizer finding is not.
#include "tests/ccx/fuzz_input_file.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/parse_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = odbs::fuzz::writeInputFile(data, size, ".frd");
  try {
    odbs::ccx::Warnings warnings;
    odbs::ccx::readFrdFile(path, warnings);
  } catch (const odbs::ccx::ParseError&) {
  }
  return 0;
}
