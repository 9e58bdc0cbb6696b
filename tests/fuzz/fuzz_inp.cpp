// Fuzz target: the CalculiX deck parser and its reference check. Refusing input with
// ParseError or InputError is fine; any other exception, crash or sanitizer finding is not.
#include "tests/ccx/fuzz_input_file.h"
#include "tools/ccx/inp_parser.h"
#include "tools/ccx/parse_error.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path = odbs::fuzz::writeInputFile(data, size, ".inp");
  try {
    odbs::ccx::Warnings warnings;
    odbs::ccx::Deck deck = odbs::ccx::parseDeck(path, warnings);
    odbs::ccx::checkDeck(deck, warnings);
  } catch (const odbs::ccx::ParseError&) {
  } catch (const odbs::ccx::InputError&) {
  }
  return 0;
}
