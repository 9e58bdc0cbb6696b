// odb_fields: the field output of one frame of a database, read with the database library.
//
//   odb_fields DATABASE [--step NAME] [--frame N] [--field NAME] [--values N]
//              [--format text|csv|json]
//
// Lists the field outputs of the frame (default: the last frame of the last step) and
// prints values of one of them (default: the first in name order) with their locations:
// as text for people (the first N values, default 10), or as a CSV or JSON table for
// programs (every value unless --values is given), one row per value with the columns
// instance, position, element, integration_point, node, section_point, the components
// (full precision), the conjugate parts of a complex field, and for a symmetric tensor
// field its derived von Mises and principal values. Exit status 0; 1 when the database
// cannot be read or has no such step, frame or field; 2 for a bad command line.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <string>

#include "odb/odb.h"
#include "tools/common/derived_values.h"
#include "tools/common/program.h"
#include "tools/common/table_writer.h"

namespace {

struct Args {
  std::string database, step, field, format = "text";
  int frame = -1;   // -1: the last frame
  int values = -1;  // -1: 10 for text, all for tables
};

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

double valueAt(const odb_FieldBulkData& block, bool conjugate, int row, int c) {
  size_t i = size_t(row) * size_t(block.width()) + size_t(c);
  if (block.precision() == odb_Enum::DOUBLE_PRECISION)
    return conjugate ? block.conjugateDataDouble()[i] : block.dataDouble()[i];
  return conjugate ? block.conjugateData()[i] : block.data()[i];
}

// Prints up to `limit` values of a field output, block by block, for people.
void printValues(const odb_FieldOutput& field, int limit) {
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
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
      for (int c = 0; c < block.width(); ++c) std::printf(" %13.6g", valueAt(block, false, row, c));
      std::printf("\n");
    }
  }
}

// Every value (up to limit, -1 for all) as one table row with its location.
void printTable(const odb_FieldOutput& field, odbs::tools::TableFormat format, long limit) {
  std::vector<std::string> labels;
  for (int c = 0; c < field.componentLabels().size(); ++c)
    labels.push_back(field.componentLabels()[c]);
  std::vector<std::string> columns = {"instance",          "position", "element",
                                      "integration_point", "node",     "section_point"};
  columns.insert(columns.end(), labels.begin(), labels.end());
  if (field.isComplex())
    for (const auto& l : labels) columns.push_back(l + " imaginary");
  std::optional<odbs::tools::TensorLayout> tensor;
  if (field.type() >= odb_Enum::TENSOR_3D_FULL && field.type() <= odb_Enum::TENSOR_2D_SURFACE)
    tensor = odbs::tools::TensorLayout::fromLabels(labels);
  if (tensor) {
    for (const char* d : {"Mises (derived)", "Principal max (derived)", "Principal mid (derived)",
                          "Principal min (derived)"})
      columns.push_back(d);
  }
  const size_t width = labels.size();
  odbs::tools::TableWriter table(std::cout, format, columns);
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  long written = 0;
  std::vector<double> value(width);
  for (int b = 0; b < blocks.size(); ++b) {
    const odb_FieldBulkData& block = blocks[b];
    if (size_t(block.width()) != width) {
      // The header names the field's components; a block of another width cannot fit it.
      throw std::runtime_error("a block of " + field.name() + " has " +
                               std::to_string(block.width()) + " components, the field " +
                               std::to_string(width));
    }
    const bool conjugate =
        block.conjugateData() != nullptr || block.conjugateDataDouble() != nullptr;
    for (int row = 0; row < block.length() && (limit < 0 || written < limit); ++row, ++written) {
      table.cell(block.instance().name()).cell(positionName(block.position()));
      if (block.elementLabels())
        table.cell(block.elementLabels()[row]);
      else
        table.empty();
      if (block.integrationPoints())
        table.cell(block.integrationPoints()[row]);
      else
        table.empty();
      if (block.nodeLabels())
        table.cell(block.nodeLabels()[row]);
      else
        table.empty();
      if (block.sectionPoint().number() >= 0)
        table.cell(block.sectionPoint().number());
      else
        table.empty();
      for (size_t c = 0; c < width; ++c) {
        value[c] = valueAt(block, false, row, int(c));
        if (block.precision() == odb_Enum::DOUBLE_PRECISION)
          table.cell(value[c]);
        else
          table.cell(static_cast<float>(value[c]));
      }
      if (field.isComplex()) {
        for (size_t c = 0; c < width; ++c) {
          if (conjugate)
            table.cell(valueAt(block, true, row, int(c)));
          else
            table.empty();
        }
      }
      if (tensor) {
        odbs::tools::Tensor6 t = tensor->tensor(value.data());
        table.cell(odbs::tools::equivalent(t, odbs::tools::tensorKindOfField(field.name())));
        for (double p : odbs::tools::principalValues(t)) table.cell(p);
      }
      table.endRow();
    }
  }
}

int run(const Args& a) {
  odb_initializeAPI();
  odb_Odb& odb = openOdb(a.database, true);
  const odb_StepRepository& steps = odb.steps();
  const bool text = a.format == "text";
  if (steps.size() == 0) {
    std::fprintf(text ? stdout : stderr, "%s has no steps\n", a.database.c_str());
    return text ? 0 : 1;
  }
  if (!a.step.empty() && !steps.isMember(a.step))
    throw std::runtime_error("no step named '" + a.step + "'");
  const odb_Step& step = a.step.empty() ? steps.at(steps.size() - 1) : steps[a.step];
  const odb_SequenceFrame& frames = step.frames();
  if (frames.size() == 0) {
    std::fprintf(text ? stdout : stderr, "%s has no frames\n", step.name().c_str());
    return text ? 0 : 1;
  }
  if (a.frame >= frames.size())
    throw std::runtime_error(step.name() + " has " + std::to_string(frames.size()) +
                             " frames (0 to " + std::to_string(frames.size() - 1) + ")");
  const odb_Frame& frame = frames[a.frame < 0 ? frames.size() - 1 : a.frame];
  const odb_FieldOutputRepository& fields = frame.fieldOutputs();
  std::string chosen = a.field;
  if (!chosen.empty() && fields.find(chosen) == nullptr)
    throw std::runtime_error("the frame has no field output named '" + chosen + "'");
  if (chosen.empty() && fields.size() > 0)
    chosen = odb_FieldOutputRepositoryIT(fields).currentKey();
  if (!text) {
    if (chosen.empty()) throw std::runtime_error("the frame has no field outputs");
    odbs::tools::TableFormat format;
    odbs::tools::parseTableFormat(a.format, &format);
    printTable(fields[chosen], format, a.values);
    closeOdb(odb);
    return 0;
  }
  std::printf("%s, frame %d (%s): %d field outputs\n", step.name().c_str(), frame.frameIndex(),
              frame.description().c_str(), fields.size());
  for (odb_FieldOutputRepositoryIT it(fields); !it.isDone(); it.next()) {
    const odb_FieldOutput& f = it.currentValue();
    std::printf("  %-8s %-32s %s%s\n", f.name().c_str(), f.description().c_str(),
                joined(f.componentLabels()).c_str(), f.isComplex() ? " (complex)" : "");
  }
  if (!chosen.empty()) {
    int limit = a.values < 0 ? 10 : a.values;
    std::printf("%s, first %d values:\n", chosen.c_str(), limit);
    printValues(fields[chosen], limit);
  }
  closeOdb(odb);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{
      "Lists the field outputs of one frame of a database and prints the values of one "
      "of them with their locations.",
      "odb_fields"};
  odbs::tools::setUpProgram(app);
  Args a;
  app.add_option("database", a.database, "The database")->required();
  app.add_option("--step", a.step, "The step (default: the last)");
  app.add_option("--frame", a.frame, "Frame position in the step, from 0 (default: the last)")
      ->check(CLI::NonNegativeNumber);
  app.add_option("--field", a.field, "The field output (default: the first by name)");
  app.add_option("--values", a.values, "How many values (default: 10 as text, all as csv or json)")
      ->check(CLI::NonNegativeNumber);
  app.add_option("--format", a.format, "text (default), csv or json")
      ->option_text("text|csv|json")
      ->check(CLI::IsMember({"text", "csv", "json"}));
  if (int code = odbs::tools::parseCommandLine(app, argc, argv); code >= 0) return code;
  try {
    return run(a);
  } catch (const std::exception& e) {
    std::fflush(stdout);
    std::fprintf(stderr, "odb_fields: %s\n", e.what());
    return 1;
  }
}
