// Fuzz targets of the CalculiX readers, one per reader as the build chooses: FUZZ_inp the
// deck parser and its reference check, FUZZ_frd the result file reader (text and binary),
// FUZZ_dat the print file reader. Refusing input with ParseError (or the deck check with
// InputError) is fine; any other exception, crash or sanitizer finding is not.
#include "tests/ccx/fuzz_input_file.h"
#include "tools/ccx/dat_parser.h"
#include "tools/ccx/frd_parser.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/parse_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace odbs::ccx;
  try {
    Warnings warnings;
#if defined(FUZZ_inp)
    Deck deck = parseDeck(odbs::fuzz::writeInputFile(data, size, ".inp"), warnings);
    checkDeck(deck, warnings);
#elif defined(FUZZ_frd)
    readFrdFile(odbs::fuzz::writeInputFile(data, size, ".frd"), warnings);
#else
    readDat(odbs::fuzz::writeInputFile(data, size, ".dat"), warnings);
#endif
  } catch (const ParseError&) {
#if defined(FUZZ_inp)
  } catch (const InputError&) {
#endif
  }
  return 0;
}
