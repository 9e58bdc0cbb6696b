#include "tools/cli/svg_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <sstream>

#include "tools/common/xml_text.h"

namespace odbs::cli {

namespace {

const char* const kColors[] = {"#1f77b4", "#d62728", "#2ca02c", "#ff7f0e", "#9467bd",
                               "#8c564b", "#e377c2", "#7f7f7f", "#bcbd22", "#17becf"};

constexpr size_t kMarkedPoints = 60;

std::string tickText(double v, double step) {
  if (std::fabs(v) < step * 1e-9) v = 0;  // -0 and rounding noise at zero
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.6g", v);
  return buf;
}

struct Range {
  double lo = std::numeric_limits<double>::infinity();
  double hi = -std::numeric_limits<double>::infinity();
  void add(double v) {
    lo = std::min(lo, v);
    hi = std::max(hi, v);
  }
  bool empty() const { return lo > hi; }
};

void widen(double& lo, double& hi) {
  if (hi > lo) return;
  double d = lo == 0 ? 1.0 : std::fabs(lo) * 0.1;
  lo -= d;
  hi += d;
}

}  // namespace

std::vector<double> niceTicks(double lo, double hi, int target) {
  if (!std::isfinite(lo) || !std::isfinite(hi)) return {};
  widen(lo, hi);
  double raw = (hi - lo) / std::max(target, 1);
  double power = std::pow(10.0, std::floor(std::log10(raw)));
  double step = power;
  for (double m : {1.0, 2.0, 5.0, 10.0}) {
    step = m * power;
    if (step >= raw) break;
  }
  std::vector<double> ticks;
  double first = std::floor(lo / step) * step;
  double last = std::ceil(hi / step) * step;
  for (double t = first; t <= last + step * 0.5 && ticks.size() < 100; t += step)
    ticks.push_back(std::fabs(t) < step * 1e-9 ? 0.0 : t);
  return ticks;
}

std::string renderSvgPlot(const std::vector<PlotSeries>& series, const PlotOptions& o) {
  Range xr, yr;
  for (const auto& s : series) {
    for (size_t i = 0; i < s.x.size() && i < s.y.size(); ++i) {
      if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) continue;
      xr.add(s.x[i]);
      yr.add(s.y[i]);
    }
  }
  if (xr.empty()) xr = {0, 1};
  if (yr.empty()) yr = {0, 1};
  std::vector<double> xt = niceTicks(xr.lo, xr.hi), yt = niceTicks(yr.lo, yr.hi);
  double x0 = xt.front(), x1 = xt.back(), y0 = yt.front(), y1 = yt.back();
  double xStep = xt.size() > 1 ? xt[1] - xt[0] : 1, yStep = yt.size() > 1 ? yt[1] - yt[0] : 1;

  const double left = 80, right = 20, top = 40;
  const double legendLine = 18;
  const double bottom = 60 + legendLine * static_cast<double>(series.size());
  double pw = o.width - left - right, ph = o.height - top - bottom;
  if (ph < 100) ph = 100;
  double height = top + ph + bottom;
  auto px = [&](double x) { return left + (x - x0) / (x1 - x0) * pw; };
  auto py = [&](double y) { return top + ph - (y - y0) / (y1 - y0) * ph; };

  std::ostringstream svg;
  svg.precision(6);
  svg << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << o.width << "\" height=\"" << height
      << "\" viewBox=\"0 0 " << o.width << ' ' << height
      << "\" font-family=\"sans-serif\" font-size=\"12\">\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
  svg << "<text x=\"" << o.width / 2 << "\" y=\"24\" text-anchor=\"middle\" font-size=\"15\">"
      << tools::xmlEscape(o.title) << "</text>\n";
  svg << "<g stroke=\"#dddddd\">\n";
  for (double t : xt)
    svg << "<line x1=\"" << px(t) << "\" y1=\"" << top << "\" x2=\"" << px(t) << "\" y2=\""
        << top + ph << "\"/>\n";
  for (double t : yt)
    svg << "<line x1=\"" << left << "\" y1=\"" << py(t) << "\" x2=\"" << left + pw << "\" y2=\""
        << py(t) << "\"/>\n";
  svg << "</g>\n<rect x=\"" << left << "\" y=\"" << top << "\" width=\"" << pw << "\" height=\""
      << ph << "\" fill=\"none\" stroke=\"black\"/>\n";
  for (double t : xt)
    svg << "<text x=\"" << px(t) << "\" y=\"" << top + ph + 16 << "\" text-anchor=\"middle\">"
        << tickText(t, xStep) << "</text>\n";
  for (double t : yt)
    svg << "<text x=\"" << left - 6 << "\" y=\"" << py(t) + 4 << "\" text-anchor=\"end\">"
        << tickText(t, yStep) << "</text>\n";
  svg << "<text x=\"" << left + pw / 2 << "\" y=\"" << top + ph + 36 << "\" text-anchor=\"middle\">"
      << tools::xmlEscape(o.xLabel) << "</text>\n";
  svg << "<text transform=\"translate(16," << top + ph / 2
      << ") rotate(-90)\" text-anchor=\"middle\">" << tools::xmlEscape(o.yLabel) << "</text>\n";

  for (size_t k = 0; k < series.size(); ++k) {
    const PlotSeries& s = series[k];
    const char* color = kColors[k % (sizeof kColors / sizeof kColors[0])];
    svg << "<polyline fill=\"none\" stroke=\"" << color << "\" stroke-width=\"1.5\" points=\"";
    bool first = true;
    for (size_t i = 0; i < s.x.size() && i < s.y.size(); ++i) {
      if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) continue;
      svg << (first ? "" : " ") << px(s.x[i]) << ',' << py(s.y[i]);
      first = false;
    }
    svg << "\"/>\n";
    // Short series get a mark per point, so that a single sample shows too.
    if (s.x.size() <= kMarkedPoints) {
      for (size_t i = 0; i < s.x.size() && i < s.y.size(); ++i) {
        if (!std::isfinite(s.x[i]) || !std::isfinite(s.y[i])) continue;
        svg << "<circle cx=\"" << px(s.x[i]) << "\" cy=\"" << py(s.y[i]) << "\" r=\"2.5\" fill=\""
            << color << "\"/>\n";
      }
    }
    double ly = top + ph + 50 + legendLine * static_cast<double>(k);
    svg << "<line x1=\"" << left << "\" y1=\"" << ly << "\" x2=\"" << left + 24 << "\" y2=\"" << ly
        << "\" stroke=\"" << color << "\" stroke-width=\"2\"/>\n"
        << "<text x=\"" << left + 30 << "\" y=\"" << ly + 4 << "\">" << tools::xmlEscape(s.label)
        << "</text>\n";
  }
  svg << "</svg>\n";
  return svg.str();
}

}  // namespace odbs::cli
