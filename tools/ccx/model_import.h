// Writes the model of a parsed CalculiX deck through the database writer: one part
// instance holding every node, element, set and surface of the deck, one section (and
// section category) per section keyword, and the materials.
//
// Names follow the conventions that readers of the database rely on: the section of
// element set X is "Section-X" and its category "<kind> < elset = X >"; shell categories
// list two section points per layer ("Layer = k, bottom" and "Layer = k, top").
#pragma once

#include <string>

#include "odb/writer.h"
#include "tools/ccx/inp_model.h"
#include "tools/ccx/warnings.h"

namespace odbs::ccx {

// The name of the one part instance of an imported deck.
extern const char* const kInstanceName;
// The instance of the solver's expanded 3D form of shells and beams.
extern const char* const kExpandedInstanceName;

// Adds the deck's model to writer (which must not hold a model yet). The deck must have
// passed checkDeck. Node-based surfaces become node sets (one warning each).
void addModel(const Deck& deck, odb::Writer& writer, Warnings& warnings);

// The section point of an integration point of a shell, solid-expanded by the solver into
// a 20-node brick per shell: points 8(k-1)+1..4 lie at the bottom of layer k, the next
// four at its top. Returns 0 for an integration point beyond the layup.
int shellSectionPoint(int integrationPoint, int layers);

}  // namespace odbs::ccx
