// The deck parser's dispatch and its step keywords: *STEP, the procedures, the output
// requests and *END STEP.
#include "tools/ccx/inp_parser.h"

#include <set>

#include "tools/ccx/inp_builder.h"
#include "tools/ccx/parse_error.h"
#include "tools/ccx/text.h"

namespace odbs::ccx {
namespace {

struct Procedure {
  const char* keyword;
  StepDomain domain;
  bool hasTimePeriod;  // the second number of its data line is the step time
};

const Procedure kProcedures[] = {
    {"STATIC", StepDomain::Time, true},
    {"DYNAMIC", StepDomain::Time, true},
    {"MODAL DYNAMIC", StepDomain::Time, true},
    {"VISCO", StepDomain::Time, true},
    {"HEAT TRANSFER", StepDomain::Time, true},
    {"COUPLED TEMPERATURE-DISPLACEMENT", StepDomain::Time, true},
    {"UNCOUPLED TEMPERATURE-DISPLACEMENT", StepDomain::Time, true},
    {"ELECTROMAGNETICS", StepDomain::Time, true},
    {"CFD", StepDomain::Time, true},
    {"FREQUENCY", StepDomain::Frequency, false},
    {"STEADY STATE DYNAMICS", StepDomain::Frequency, false},
    {"COMPLEX FREQUENCY", StepDomain::Frequency, false},
    {"GREEN", StepDomain::Frequency, false},
    {"BUCKLE", StepDomain::Modal, false},
    {"SENSITIVITY", StepDomain::Time, false},
    {"NO ANALYSIS", StepDomain::Time, false},
    {"SUBSTRUCTURE GENERATE", StepDomain::Time, false},
};

const std::set<std::string>& outputKeywords() {
  static const std::set<std::string> keywords = {
      "NODE PRINT",   "EL PRINT",    "CONTACT PRINT",  "SECTION PRINT",  "NODE FILE", "EL FILE",
      "CONTACT FILE", "NODE OUTPUT", "ELEMENT OUTPUT", "CONTACT OUTPUT", "FACE PRINT"};
  return keywords;
}

// Keywords of the solver whose contents the database does not hold: loads, boundary
// conditions, constraints, interaction properties, solver controls. Passed over silently.
const std::set<std::string>& passedOver() {
  static const std::set<std::string> keywords = {"BOUNDARY",
                                                 "CLOAD",
                                                 "DLOAD",
                                                 "DSLOAD",
                                                 "DFLUX",
                                                 "CFLUX",
                                                 "FILM",
                                                 "RADIATE",
                                                 "TEMPERATURE",
                                                 "INITIAL CONDITIONS",
                                                 "AMPLITUDE",
                                                 "SURFACE INTERACTION",
                                                 "SURFACE BEHAVIOR",
                                                 "FRICTION",
                                                 "GAP CONDUCTANCE",
                                                 "GAP HEAT GENERATION",
                                                 "TIE",
                                                 "EQUATION",
                                                 "MPC",
                                                 "RIGID BODY",
                                                 "COUPLING",
                                                 "KINEMATIC",
                                                 "DISTRIBUTING",
                                                 "DISTRIBUTING COUPLING",
                                                 "TRANSFORM",
                                                 "PHYSICAL CONSTANTS",
                                                 "VALUES AT INFINITY",
                                                 "RESTART",
                                                 "OUTPUT",
                                                 "CONTROLS",
                                                 "TIME POINTS",
                                                 "MODAL DAMPING",
                                                 "SELECT CYCLIC SYMMETRY MODES",
                                                 "CYCLIC SYMMETRY MODEL",
                                                 "PRE-TENSION SECTION",
                                                 "SUBMODEL",
                                                 "CHANGE MATERIAL",
                                                 "CHANGE PLASTIC",
                                                 "CHANGE SOLID SECTION",
                                                 "CHANGE SURFACE BEHAVIOR",
                                                 "CHANGE FRICTION",
                                                 "NODAL THICKNESS",
                                                 "NORMAL",
                                                 "CLEARANCE",
                                                 "BASE MOTION",
                                                 "MASS FLOW",
                                                 "DESIGN VARIABLES",
                                                 "OBJECTIVE",
                                                 "CONSTRAINT",
                                                 "FILTER",
                                                 "REFINE MESH",
                                                 "USER ELEMENT",
                                                 "NETWORK MPC",
                                                 "DELOAD",
                                                 "HEADING"};
  return keywords;
}

}  // namespace

Step& DeckBuilder::currentStep(const Card& card) {
  if (currentStep_ < 0) {
    throw ParseError(card.where.file, card.where.line, "*STEP before *" + card.keyword);
  }
  return deck_.steps[currentStep_];
}

void DeckBuilder::readStep(const Card& card) {
  if (currentStep_ >= 0) {
    throw ParseError(card.where.file, card.where.line,
                     "*END STEP before the next *STEP (step " + std::to_string(currentStep_ + 1) +
                         " is still open)");
  }
  Step step;
  step.number = static_cast<int>(deck_.steps.size()) + 1;
  step.name = card.has("NAME") ? card.get("NAME") : "Step-" + std::to_string(step.number);
  step.where = card.where;
  // Geometric nonlinearity, once switched on, stays on for the later steps.
  bool previous = !deck_.steps.empty() && deck_.steps.back().nlgeom;
  std::string nlgeom = upper(card.get("NLGEOM", previous ? "YES" : "NO"));
  step.nlgeom = card.has("NLGEOM") ? nlgeom != "NO" : previous;
  DataLine line;
  if (reader_.nextData(line)) {
    std::string text;
    for (size_t i = 0; i < line.fields.size(); ++i) text += (i ? ", " : "") + line.fields[i];
    step.description = text;
    while (reader_.nextData(line)) {
    }
  }
  currentStep_ = static_cast<int>(deck_.steps.size());
  stepHasProcedure_ = false;
  deck_.steps.push_back(std::move(step));
}

void DeckBuilder::readProcedure(const Card& card) {
  Step& step = currentStep(card);
  if (stepHasProcedure_) {
    throw ParseError(card.where.file, card.where.line,
                     "one procedure in step " + std::to_string(step.number) + ", found a second",
                     "*" + card.keyword);
  }
  stepHasProcedure_ = true;
  const Procedure* info = nullptr;
  for (const Procedure& p : kProcedures) {
    if (card.keyword == p.keyword) info = &p;
  }
  step.procedure = card.keyword;
  step.procedureParameters = card.parameters;
  step.domain = info->domain;
  if (step.description.empty()) step.description = "*" + card.keyword;
  DataLine line;
  if (reader_.nextData(line)) {
    step.procedureData = numbers(line);
    while (reader_.nextData(line)) {
    }
  }
  if (info->hasTimePeriod && step.procedureData.size() >= 2 && step.procedureData[1] > 0) {
    step.timePeriod = step.procedureData[1];
  }
}

void DeckBuilder::readOutputRequest(const Card& card) {
  Step& step = currentStep(card);
  OutputRequest request;
  request.keyword = card.keyword;
  request.parameters = card.parameters;
  request.set = upper(card.has("NSET") ? card.get("NSET") : card.get("ELSET"));
  DataLine line;
  while (reader_.nextData(line)) {
    for (const std::string& field : line.fields) {
      if (!field.empty()) request.variables.push_back(upper(field));
    }
  }
  step.outputs.push_back(std::move(request));
}

void DeckBuilder::endStep(const Card& card) {
  Step& step = currentStep(card);
  if (!stepHasProcedure_) {
    throw ParseError(
        card.where.file, card.where.line,
        "a procedure (*STATIC, *FREQUENCY, ...) in step " + std::to_string(step.number));
  }
  currentStep_ = -1;
}

bool DeckBuilder::stepCard(const Card& card) {
  const std::string& k = card.keyword;
  if (k == "STEP") {
    readStep(card);
  } else if (k == "END STEP") {
    endStep(card);
  } else if (outputKeywords().count(k)) {
    readOutputRequest(card);
  } else {
    for (const Procedure& p : kProcedures) {
      if (k == p.keyword) {
        readProcedure(card);
        return true;
      }
    }
    return false;
  }
  return true;
}

Deck parseDeck(const std::string& path, Warnings& warnings, const Progress& progress) {
  Deck deck;
  deck.path = path;
  CardReader reader(path);
  DeckBuilder builder(deck, reader, warnings);
  Card card;
  int64_t lastReport = 0;
  while (reader.nextCard(card)) {
    if (!builder.propertyCard(card) && !builder.meshCard(card) && !builder.stepCard(card) &&
        !passedOver().count(card.keyword)) {
      warnings.warn("keyword:" + card.keyword, card.where.file + ":" +
                                                   std::to_string(card.where.line) + ": keyword *" +
                                                   card.keyword + " is not imported; skipped");
    }
    if (progress && reader.topOffset() - lastReport > (8 << 20)) {
      lastReport = reader.topOffset();
      progress(lastReport, reader.topSize());
    }
  }
  if (!deck.steps.empty() && deck.steps.back().procedure.empty()) {
    const Step& step = deck.steps.back();
    throw ParseError(
        step.where.file, step.where.line,
        "a procedure (*STATIC, *FREQUENCY, ...) in step " + std::to_string(step.number));
  }
  builder.finish();
  if (progress) progress(reader.topSize(), reader.topSize());
  return deck;
}

namespace {
template <typename T>
const T* findNamed(const std::vector<T>& items, const std::string& name) {
  for (const T& item : items) {
    if (item.name == name) return &item;
  }
  return nullptr;
}
}  // namespace

const LabelSet* Deck::nodeSet(const std::string& name) const {
  return findNamed(nodeSets, name);
}
const LabelSet* Deck::elementSet(const std::string& name) const {
  return findNamed(elementSets, name);
}
const Material* Deck::material(const std::string& name) const {
  return findNamed(materials, name);
}

}  // namespace odbs::ccx
