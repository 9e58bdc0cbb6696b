#include "tools/export/series.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "odb/odb.h"
#include "tools/common/number_text.h"

namespace odbs::exporter {

namespace {

DataArray fieldValue(const std::string& name, double v) {
  DataArray a(name, DataArray::Kind::kFloat64);
  a.f64 = {v};
  return a;
}

bool wanted(const std::vector<std::string>& list, const std::string& name) {
  return list.empty() || std::find(list.begin(), list.end(), name) != list.end();
}

struct SeriesEntry {
  double time;
  std::string file;  // relative to the .pvd
  std::string what;  // step and frame, for a comment
};

void writePvd(const std::string& path, const std::vector<SeriesEntry>& entries) {
  std::ofstream out(path, std::ios::trunc);
  if (!out) throw std::runtime_error("cannot write " + path);
  out << "<?xml version=\"1.0\"?>\n"
         "<VTKFile type=\"Collection\" version=\"0.1\" byte_order=\"LittleEndian\">\n"
         "  <Collection>\n";
  for (const auto& e : entries) {
    out << "    <!-- " << xmlEscape(e.what) << " -->\n"
        << "    <DataSet timestep=\"" << tools::formatNumber(e.time)
        << "\" group=\"\" part=\"0\" file=\"" << xmlEscape(e.file) << "\"/>\n";
  }
  out << "  </Collection>\n</VTKFile>\n";
  out.close();
  if (!out) throw std::runtime_error("cannot write " + path);
}

}  // namespace

ExportSummary exportSeries(const odb_Odb& odb, const std::string& pvdPath,
                           const ExportOptions& options) {
  namespace fs = std::filesystem;
  fs::path pvd(pvdPath);
  std::string stem = pvd.stem().string();
  fs::path folder = pvd.parent_path() / stem;
  std::error_code ec;
  fs::create_directories(folder, ec);
  if (ec) throw std::runtime_error("cannot create folder " + folder.string() + ": " + ec.message());

  const odb_StepRepository& steps = odb.steps();
  for (const auto& name : options.steps)
    if (!steps.isMember(name)) throw std::runtime_error("no step named '" + name + "'");

  Mesh mesh = buildMesh(odb, options.mesh);
  ExportSummary summary;
  summary.points = mesh.grid.pointCount();
  summary.cells = mesh.grid.cellCount();
  for (const auto& t : mesh.unknownTypes)
    summary.notes.push_back("element type " + t + " is not in the cell table: its elements are " +
                            "written as points");
  for (size_t e = 0; e < mesh.index.entities.size(); ++e)
    mesh.grid.comments.push_back("instance " + std::to_string(e) + ": " + mesh.index.entities[e]);

  VtuGrid& grid = mesh.grid;
  const size_t meshPointArrays = grid.pointData.size(), meshCellArrays = grid.cellData.size();
  std::vector<SeriesEntry> entries;
  double previous = -std::numeric_limits<double>::infinity();
  std::vector<bool> fieldSeen(options.fields.size(), false);

  auto writeFrame = [&](const std::string& file, double time, const std::string& what) {
    grid.fieldData.insert(grid.fieldData.begin(), fieldValue("TimeValue", time));
    writeVtu(grid, (folder / file).string());
    entries.push_back({time, stem + "/" + file, what});
    grid.pointData.resize(meshPointArrays);
    grid.cellData.resize(meshCellArrays);
    grid.fieldData.clear();
    ++summary.frames;
  };

  for (int s = 0; s < steps.size(); ++s) {
    const odb_Step& step = steps.at(s);
    if (!wanted(options.steps, step.name())) continue;
    const odb_SequenceFrame& frames = step.frames();
    for (int f = options.lastFrameOnly ? std::max(0, frames.size() - 1) : 0; f < frames.size();
         ++f) {
      const odb_Frame& frame = frames[f];
      double time = step.totalTime() + frame.frameValue();
      if (step.domain() != odb_Enum::TIME || !std::isfinite(time) || time <= previous)
        time = std::isfinite(previous) ? previous + 1.0 : 0.0;
      previous = time;

      const odb_FieldOutputRepository& fields = frame.fieldOutputs();
      for (odb_FieldOutputRepositoryIT it(fields); !it.isDone(); it.next()) {
        const odb_FieldOutput& field = it.currentValue();
        if (!wanted(options.fields, field.name())) continue;
        for (size_t k = 0; k < options.fields.size(); ++k)
          if (options.fields[k] == field.name()) fieldSeen[k] = true;
        addFieldArrays(field, mesh.index, options.field, grid, summary.notes);
        field.bulkDataBlocks().clearAll();
      }
      frame.releaseFieldOutputs();
      grid.fieldData = {fieldValue("step", s + 1), fieldValue("frame", frame.frameIndex()),
                        fieldValue("frame_value", frame.frameValue()),
                        fieldValue("frequency", frame.frequency())};
      std::ostringstream file, what;
      file << "s" << s + 1 << "_f" << f << ".vtu";
      what << step.name() << ", frame " << frame.frameIndex() << " (" << frame.description() << ")";
      writeFrame(file.str(), time, what.str());
    }
  }
  for (size_t k = 0; k < options.fields.size(); ++k) {
    if (!fieldSeen[k] && summary.frames > 0)
      summary.notes.push_back("no frame has a field output named '" + options.fields[k] + "'");
  }
  if (summary.frames == 0) writeFrame("mesh.vtu", 0.0, "the mesh (no frames)");
  writePvd(pvdPath, entries);
  std::sort(summary.notes.begin(), summary.notes.end());
  summary.notes.erase(std::unique(summary.notes.begin(), summary.notes.end()), summary.notes.end());
  return summary;
}

}  // namespace odbs::exporter
