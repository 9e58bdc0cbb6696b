// The catalogue walk for a database library without steps and frames: nothing is sent.
#include "access/catalogue.h"
#include "access/catalogue_base.h"

namespace odbs {

void sendCatalogue(OdbContext&, int, ReplyChannel&) {
  clearCatalogueBaseName();
}

}  // namespace odbs
