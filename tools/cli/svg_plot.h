// A small line-plot writer: series of (x, y) points drawn as polylines on linear axes with
// tick labels and a legend, as a standalone SVG document that any browser shows.
#pragma once

#include <string>
#include <vector>

namespace odbs::cli {

struct PlotSeries {
  std::string label;
  std::vector<double> x, y;  // same length; points that are not finite are left out
};

struct PlotOptions {
  std::string title, xLabel, yLabel;
  int width = 900;
  int height = 560;
};

// Tick positions for an axis over [lo, hi]: about target round values (steps of 1, 2 or 5
// times a power of ten) covering the range. A range of zero width is widened by one unit
// (or by 10% of the value) each way first.
std::vector<double> niceTicks(double lo, double hi, int target = 6);

// The whole document. Axis ranges cover every finite point of every series.
std::string renderSvgPlot(const std::vector<PlotSeries>& series, const PlotOptions& options);

}  // namespace odbs::cli
