// odb_fields: the field output of one frame of a database, read with the database library.
//
//   odb_fields DATABASE [--step NAME] [--frame N] [--field NAME] [--values N]
//
// Lists the field outputs of the frame (default: the last frame of the last step) and
// prints the first N values (default 10) of one of them (default: the first in name
// order) with their node or element labels. Exit status 0, 1 when the database cannot be
// read or has no such step, frame or field, 2 for bad arguments (a frame or count that is
// not a whole number of 0 or more).
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "odb/odb.h"

namespace {

struct Args {
  std::string database, step, field;
  int frame = -1;  // -1: the last frame
  int values = 10;
};

// The message for arguments that parse but make no sense, or "" when they are fine.
std::string checkArgs(const Args& a) {
  if (a.frame < -1) return "--frame needs a frame number of 0 or more";
  if (a.values < 0) return "--values needs a count of 0 or more";
  return "";
}

// Closes the database however run() leaves it, so an error path leaks nothing.
class OpenDatabase {
 public:
  explicit OpenDatabase(const std::string& path) : odb_(&openOdb(path, true)) {}
  ~OpenDatabase() {
    closeOdb(*odb_);
    odb_finalizeAPI();
  }
  OpenDatabase(const OpenDatabase&) = delete;
  OpenDatabase& operator=(const OpenDatabase&) = delete;
  odb_Odb& get() const { return *odb_; }

 private:
  odb_Odb* odb_;
};

const char kUsage[] =
    "usage: odb_fields DATABASE [--step NAME] [--frame N] [--field NAME] [--values N]\n";

// A whole decimal number, or INT_MIN for anything else (which checkArgs refuses).
int wholeNumber(const std::string& v) {
  char* end = nullptr;
  errno = 0;
  long n = std::strtol(v.c_str(), &end, 10);
  if (v.empty() || *end != '\0' || errno != 0 || n < INT_MIN + 1 || n > INT_MAX) return INT_MIN;
  return static_cast<int>(n);
}

bool parse(int argc, char** argv, Args* a) {
  for (int i = 1; i < argc; ++i) {
    std::string k = argv[i];
    if (k.compare(0, 2, "--") != 0) {
      if (!a->database.empty()) return false;
      a->database = k;
      continue;
    }
    if (i + 1 >= argc) return false;
    std::string v = argv[++i];
    if (k == "--step")
      a->step = v;
    else if (k == "--frame")
      a->frame = wholeNumber(v);
    else if (k == "--field")
      a->field = v;
    else if (k == "--values")
      a->values = wholeNumber(v);
    else
      return false;
  }
  return !a->database.empty();
}

const char* positionName(int p) {
  switch (p) {
    case odb_Enum::NODAL:
      return "nodal";
    case odb_Enum::ELEMENT_NODAL:
      return "element nodal";
    case odb_Enum::INTEGRATION_POINT:
      return "integration point";
    case odb_Enum::CENTROID:
      return "centroid";
    case odb_Enum::WHOLE_ELEMENT:
      return "whole element";
    default:
      return "other";
  }
}

std::string joined(const odb_SequenceString& s) {
  std::string out;
  for (int i = 0; i < s.size(); ++i) out += (i ? " " : "") + s[i];
  return out;
}

// Prints up to `limit` values of a field output, block by block.
void printValues(const odb_FieldOutput& field, int limit) {
  odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
  int shown = 0;
  for (int b = 0; b < blocks.size() && shown < limit; ++b) {
    const odb_FieldBulkData& block = blocks[b];
    std::printf("  block %d: %s, %s, %d values of %d components%s\n", b + 1,
                block.instance().name().c_str(), positionName(block.position()), block.length(),
                block.width(), block.sectionPoint().number() > 0 ? " (section point)" : "");
    for (int row = 0; row < block.length() && shown < limit; ++row, ++shown) {
      if (block.nodeLabels() != nullptr && block.elementLabels() == nullptr) {
        std::printf("    node %7d", block.nodeLabels()[row]);
      } else if (block.elementLabels() != nullptr) {
        std::printf("    element %7d", block.elementLabels()[row]);
        if (block.integrationPoints() != nullptr)
          std::printf(" point %d", block.integrationPoints()[row]);
      }
      for (int c = 0; c < block.width(); ++c) {
        double v = block.precision() == odb_Enum::DOUBLE_PRECISION
                       ? block.dataDouble()[row * block.width() + c]
                       : block.data()[row * block.width() + c];
        std::printf(" %13.6g", v);
      }
      std::printf("\n");
    }
  }
}

int run(const Args& a) {
  odb_initializeAPI();
  OpenDatabase db(a.database);
  const odb_Odb& odb = db.get();
  const odb_StepRepository& steps = odb.steps();
  if (steps.size() == 0) {
    std::printf("%s has no steps\n", a.database.c_str());
    return 0;
  }
  const odb_Step& step = a.step.empty() ? steps.at(steps.size() - 1) : steps[a.step];
  const odb_SequenceFrame& frames = step.frames();
  if (frames.size() == 0) {
    std::printf("%s has no frames\n", step.name().c_str());
    return 0;
  }
  if (a.frame >= frames.size())
    throw std::runtime_error(step.name() + " has no frame " + std::to_string(a.frame) +
                             " (frames 0 to " + std::to_string(frames.size() - 1) + ")");
  const odb_Frame& frame = frames[a.frame < 0 ? frames.size() - 1 : a.frame];
  const odb_FieldOutputRepository& fields = frame.fieldOutputs();
  std::printf("%s, frame %d (%s): %d field outputs\n", step.name().c_str(), frame.frameIndex(),
              frame.description().c_str(), fields.size());
  std::string chosen = a.field;
  for (odb_FieldOutputRepositoryIT it(fields); !it.isDone(); it.next()) {
    const odb_FieldOutput& f = it.currentValue();
    if (chosen.empty()) chosen = f.name();
    std::printf("  %-8s %-32s %s%s\n", f.name().c_str(), f.description().c_str(),
                joined(f.componentLabels()).c_str(), f.isComplex() ? " (complex)" : "");
  }
  if (!chosen.empty()) {
    std::printf("%s, first %d values:\n", chosen.c_str(), a.values);
    printValues(fields[chosen], a.values);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Args a;
  if (!parse(argc, argv, &a)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  std::string bad = checkArgs(a);
  if (!bad.empty()) {
    std::fprintf(stderr, "odb_fields: %s\n%s", bad.c_str(), kUsage);
    return 2;
  }
  try {
    return run(a);
  } catch (const std::exception& e) {
    std::fprintf(stderr, "odb_fields: %s\n", e.what());
    return 1;
  }
}
