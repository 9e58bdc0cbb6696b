// odb_export: a database as files that VTK and ParaView open: a .pvd time series of .vtu
// files, one per frame, with the mesh, node and element sets and the field outputs.
//
//   odb_export DATABASE OUTPUT.pvd [--field NAME]... [--step NAME]... [--last-frame]
//              [--integration-points] [--no-sets] [--no-derived]
//
// Exit status 0; 1 when the database cannot be read or a file not be written (the reason on
// standard error); 2 for a bad command line. Notes on what was left out go to standard
// error as warnings.
#include <CLI/CLI.hpp>
#include <iostream>

#include "odb/odb.h"
#include "tools/common/program.h"
#include "tools/export/series.h"

int main(int argc, char** argv) {
  CLI::App app{
      "Writes a database as a .pvd time series of .vtu files (one per frame) that VTK "
      "and ParaView open: the mesh of every instance, node and element sets, field "
      "outputs as point and cell data, von Mises and principal values of tensor fields "
      "(labelled derived).",
      "odb_export"};
  odbs::tools::setUpProgram(app);
  std::string database, output;
  odbs::exporter::ExportOptions options;
  bool noSets = false, noDerived = false;
  app.add_option("database", database, "The database to read")->required();
  app.add_option("output", output,
                 "The .pvd file to write; the frames go to the folder "
                 "beside it named after it")
      ->required()
      ->check([](const std::string& path) -> std::string {
        return path.size() > 4 && path.compare(path.size() - 4, 4, ".pvd") == 0
                   ? ""
                   : "the output file name must end in .pvd";
      });
  app.add_option("--field", options.fields, "Only this field output (repeat for more)")
      ->allow_extra_args(false);
  app.add_option("--step", options.steps, "Only this step (repeat for more)")
      ->allow_extra_args(false);
  app.add_flag("--last-frame", options.lastFrameOnly, "Only the last frame of each step");
  app.add_flag("--integration-points", options.field.integrationPoints,
               "Also every integration point's value, as NAME@ip cell arrays");
  app.add_flag("--no-sets", noSets, "Leave out the node and element set arrays");
  app.add_flag("--no-derived", noDerived, "Leave out von Mises and principal values");
  if (int code = odbs::tools::parseCommandLine(app, argc, argv); code >= 0) return code;
  options.mesh.sets = !noSets;
  options.field.derived = !noDerived;

  try {
    odb_initializeAPI();
    odb_Odb& odb = openOdb(database, true);
    odbs::exporter::ExportSummary s = odbs::exporter::exportSeries(odb, output, options);
    for (const auto& note : s.notes) std::cerr << "odb_export: warning: " << note << "\n";
    std::cerr << "odb_export: wrote " << output << ": " << s.frames << " frames of " << s.points
              << " points and " << s.cells << " cells\n";
    closeOdb(odb);
  } catch (const std::exception& e) {
    std::cerr << "odb_export: " << e.what() << "\n";
    return 1;
  }
  return 0;
}
