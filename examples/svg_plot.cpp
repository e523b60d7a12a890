#include "svg_plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

void SvgPlot::line(const std::vector<double>& x, const std::vector<double>& y,
                   const std::string& colour, const std::string& label, const std::string& dash) {
  items_.push_back({x, y, colour, label, dash, "", Item::kLine});
}

void SvgPlot::band(const std::vector<double>& x, const std::vector<double>& top,
                   const std::vector<double>& bottom, int a, int b, const std::string& colour) {
  Item it{{}, {}, colour, "", "", "", Item::kBand};
  for (int i = a; i <= b; ++i) it.x.push_back(x[i]), it.y.push_back(top[i]);
  for (int i = b; i >= a; --i) it.x.push_back(x[i]), it.y.push_back(bottom[i]);
  items_.push_back(it);
}

void SvgPlot::dot(double x, double y, const std::string& colour, const std::string& text) {
  items_.push_back({{x}, {y}, colour, "", "", text, Item::kDot});
}

namespace {

// A step of 1, 2 or 5 times a power of ten giving about n ticks over the span.
double tick_step(double span, int n) {
  const double raw = span / n, p = std::pow(10.0, std::floor(std::log10(raw)));
  const double m = raw / p;
  return (m < 1.5 ? 1 : m < 3.5 ? 2 : m < 7.5 ? 5 : 10) * p;
}

}  // namespace

bool SvgPlot::write(const std::string& path) const {
  const double W = 900, H = 520, left = 70, right = 20, top = 40, bottom = 60;
  double x0 = INFINITY, x1 = -INFINITY, y0 = INFINITY, y1 = -INFINITY;
  for (const Item& it : items_)
    for (std::size_t i = 0; i < it.x.size(); ++i) {
      x0 = std::min(x0, it.x[i]), x1 = std::max(x1, it.x[i]);
      y0 = std::min(y0, it.y[i]), y1 = std::max(y1, it.y[i]);
    }
  if (!(x1 > x0) || !(y1 > y0)) return false;
  const double pad = 0.05 * (y1 - y0);
  y0 -= pad, y1 += pad;
  const auto px = [&](double x) { return left + (x - x0) / (x1 - x0) * (W - left - right); };
  const auto py = [&](double y) { return H - bottom - (y - y0) / (y1 - y0) * (H - top - bottom); };
  std::ostringstream s;
  s.setf(std::ios::fixed);
  s.precision(1);
  s << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" << W << "\" height=\"" << H
    << "\" font-family=\"sans-serif\" font-size=\"12\">\n<rect width=\"100%\" height=\"100%\" "
       "fill=\"white\"/>\n<text x=\"" << W / 2 << "\" y=\"24\" text-anchor=\"middle\" "
       "font-size=\"15\">" << title_ << "</text>\n";
  // Axes with ticks.
  s << "<g stroke=\"#444\" fill=\"none\"><rect x=\"" << left << "\" y=\"" << top << "\" width=\""
    << W - left - right << "\" height=\"" << H - top - bottom << "\"/></g>\n";
  const double xs = tick_step(x1 - x0, 8), ys = tick_step(y1 - y0, 6);
  char label[32];
  for (double t = std::ceil(x0 / xs) * xs; t <= x1; t += xs) {
    std::snprintf(label, sizeof label, "%g", std::fabs(t) < 1e-9 * xs ? 0.0 : t);
    s << "<line x1=\"" << px(t) << "\" x2=\"" << px(t) << "\" y1=\"" << H - bottom << "\" y2=\""
      << H - bottom + 5 << "\" stroke=\"#444\"/><text x=\"" << px(t) << "\" y=\"" << H - bottom + 18
      << "\" text-anchor=\"middle\">" << label << "</text>\n";
  }
  for (double t = std::ceil(y0 / ys) * ys; t <= y1; t += ys) {
    std::snprintf(label, sizeof label, "%g", std::fabs(t) < 1e-9 * ys ? 0.0 : t);
    s << "<line x1=\"" << left - 5 << "\" x2=\"" << left << "\" y1=\"" << py(t) << "\" y2=\""
      << py(t) << "\" stroke=\"#444\"/><text x=\"" << left - 8 << "\" y=\"" << py(t) + 4
      << "\" text-anchor=\"end\">" << label << "</text>\n";
  }
  s << "<text x=\"" << (left + W - right) / 2 << "\" y=\"" << H - 15
    << "\" text-anchor=\"middle\">" << xLabel_ << "</text>\n<text transform=\"translate(18,"
    << (top + H - bottom) / 2 << ") rotate(-90)\" text-anchor=\"middle\">" << yLabel_
    << "</text>\n";
  // Bands first, then lines, then dots, so that nothing hides the curve.
  int legend = 0;
  for (int pass = 0; pass < 3; ++pass)
    for (const Item& it : items_) {
      if (it.kind != pass) continue;
      if (it.kind == Item::kDot) {
        s << "<circle cx=\"" << px(it.x[0]) << "\" cy=\"" << py(it.y[0]) << "\" r=\"4\" fill=\""
          << it.colour << "\"/><text x=\"" << px(it.x[0]) + 6 << "\" y=\"" << py(it.y[0]) - 6
          << "\">" << it.text << "</text>\n";
        continue;
      }
      s << (it.kind == Item::kBand ? "<polygon" : "<polyline") << " points=\"";
      for (std::size_t i = 0; i < it.x.size(); ++i) s << px(it.x[i]) << ',' << py(it.y[i]) << ' ';
      if (it.kind == Item::kBand)
        s << "\" fill=\"" << it.colour << "\" fill-opacity=\"0.3\" stroke=\"none\"/>\n";
      else
        s << "\" fill=\"none\" stroke=\"" << it.colour << "\" stroke-width=\"1.3\""
          << (it.dash.empty() ? "" : " stroke-dasharray=\"" + it.dash + "\"") << "/>\n";
      if (it.kind == Item::kLine && !it.label.empty()) {
        const double ly = top + 16 + 16 * legend++;
        s << "<line x1=\"" << W - right - 150 << "\" x2=\"" << W - right - 125 << "\" y1=\"" << ly - 4
          << "\" y2=\"" << ly - 4 << "\" stroke=\"" << it.colour << "\" stroke-width=\"2\""
          << (it.dash.empty() ? "" : " stroke-dasharray=\"" + it.dash + "\"") << "/><text x=\""
          << W - right - 118 << "\" y=\"" << ly << "\">" << it.label << "</text>\n";
      }
    }
  s << "</svg>\n";
  std::ofstream out(path);
  out << s.str();
  return static_cast<bool>(out);
}
