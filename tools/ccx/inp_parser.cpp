// The deck parser's dispatch and its step keywords: *STEP, the procedures, the output
// requests and *END STEP.
#include "tools/ccx/inp_parser.h"

#include <algorithm>
#include <map>
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

// Keywords of the solver whose contents the database does not hold, by what they are:
// loads, boundary conditions, constraints, interactions, solver controls. Each kind present
// in a deck is named in one warning.
const std::map<std::string, const char*>& passedOver() {
  static const char* const loads = "loads, boundary conditions and initial conditions";
  static const char* const amplitudes = "amplitudes and time points";
  static const char* const contact = "contact and gap definitions";
  static const char* const constraints = "equations and other constraints";
  static const char* const controls = "solver controls and analysis settings";
  static const std::map<std::string, const char*> keywords = {
      {"BOUNDARY", loads},
      {"CLOAD", loads},
      {"DLOAD", loads},
      {"DSLOAD", loads},
      {"DFLUX", loads},
      {"CFLUX", loads},
      {"FILM", loads},
      {"RADIATE", loads},
      {"TEMPERATURE", loads},
      {"INITIAL CONDITIONS", loads},
      {"BASE MOTION", loads},
      {"MASS FLOW", loads},
      {"DELOAD", loads},
      {"AMPLITUDE", amplitudes},
      {"TIME POINTS", amplitudes},
      {"SURFACE INTERACTION", contact},
      {"SURFACE BEHAVIOR", contact},
      {"FRICTION", contact},
      {"GAP CONDUCTANCE", contact},
      {"GAP HEAT GENERATION", contact},
      {"CLEARANCE", contact},
      {"CHANGE SURFACE BEHAVIOR", contact},
      {"CHANGE FRICTION", contact},
      {"EQUATION", constraints},
      {"MPC", constraints},
      {"RIGID BODY", constraints},
      {"COUPLING", constraints},
      {"KINEMATIC", constraints},
      {"DISTRIBUTING", constraints},
      {"DISTRIBUTING COUPLING", constraints},
      {"TRANSFORM", constraints},
      {"NETWORK MPC", constraints},
      {"PRE-TENSION SECTION", constraints},
      {"CYCLIC SYMMETRY MODEL", constraints},
      {"SELECT CYCLIC SYMMETRY MODES", constraints},
      {"SUBMODEL", constraints},
      {"PHYSICAL CONSTANTS", controls},
      {"VALUES AT INFINITY", controls},
      {"RESTART", controls},
      {"OUTPUT", controls},
      {"CONTROLS", controls},
      {"MODAL DAMPING", controls},
      {"DESIGN VARIABLES", controls},
      {"OBJECTIVE", controls},
      {"CONSTRAINT", controls},
      {"FILTER", controls},
      {"REFINE MESH", controls},
      {"USER ELEMENT", controls},
      {"NODAL THICKNESS", controls},
      {"NORMAL", controls},
      {"CHANGE MATERIAL", controls},
      {"CHANGE PLASTIC", controls},
      {"CHANGE SOLID SECTION", controls},
  };
  return keywords;
}

// The keywords of each kind a deck used, with how often and where first.
struct PassedOver {
  SourceRef first;
  std::map<std::string, int> keywords;
};

// A step without a procedure goes on with the procedure of the step before, as the solver
// does. Returns false for the first step.
bool continuePrevious(const Deck& deck, Step& step) {
  if (step.number < 2) return false;
  const Step& before = deck.steps[step.number - 2];
  step.procedure = before.procedure;
  step.procedureParameters = before.procedureParameters;
  step.procedureData = before.procedureData;
  step.domain = before.domain;
  step.timePeriod = before.timePeriod;
  if (step.description.empty()) step.description = "*" + step.procedure;
  return true;
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
    for (size_t i = 0; i < line.fields.size(); ++i) {
      if (i) text += ", ";
      text += line.fields[i];
    }
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
    for (std::string_view field : line.fields) {
      if (!field.empty()) request.variables.push_back(upper(field));
    }
  }
  step.outputs.push_back(std::move(request));
}

void DeckBuilder::endStep(const Card& card) {
  Step& step = currentStep(card);
  if (!stepHasProcedure_) stepHasProcedure_ = continuePrevious(deck_, step);
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
  std::map<std::string, PassedOver> passed;
  std::vector<std::string> passedOrder;
  while (reader.nextCard(card)) {
    if (builder.propertyCard(card) || builder.meshCard(card) || builder.stepCard(card)) {
      // read
    } else if (auto kind = passedOver().find(card.keyword); kind != passedOver().end()) {
      auto [entry, isNew] = passed.emplace(kind->second, PassedOver{card.where, {}});
      if (isNew) passedOrder.push_back(kind->second);
      ++entry->second.keywords[card.keyword];
    } else {
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
    continuePrevious(deck, deck.steps.back());
  }
  if (!deck.steps.empty() && deck.steps.back().procedure.empty()) {
    const Step& step = deck.steps.back();
    throw ParseError(
        step.where.file, step.where.line,
        "a procedure (*STATIC, *FREQUENCY, ...) in step " + std::to_string(step.number));
  }
  if (reader.strayLines() > 0) {
    const SourceRef& first = reader.firstStrayLine();
    warnings.warn("stray-lines", first.file + ":" + std::to_string(first.line) + ": " +
                                     std::to_string(reader.strayLines()) +
                                     " lines before the first keyword line are passed over, as "
                                     "the solver does");
  }
  if (deck.nodes.empty()) {
    // An empty or comment-only deck, or one without a mesh: nothing to import.
    throw ParseError(path, std::max<int64_t>(1, reader.topLines()),
                     "*NODE lines defining the model's nodes",
                     reader.topLines() == 0 ? "an empty file" : "none before the end of the deck");
  }
  for (const std::string& kind : passedOrder) {
    const PassedOver& p = passed.at(kind);
    std::string list;
    for (const auto& [keyword, n] : p.keywords) {
      list +=
          (list.empty() ? "*" : ", *") + keyword + (n > 1 ? " (" + std::to_string(n) + ")" : "");
    }
    warnings.warn("passed-over:" + kind, p.first.file + ":" + std::to_string(p.first.line) + ": " +
                                             kind + " have no place in the database: " + list +
                                             " not imported");
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
