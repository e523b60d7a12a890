// A small SVG writer for the demo: curves as polylines, points as dots, shaded bands between
// x values, on linear axes with tick labels. The library itself never writes files.
#pragma once

#include <string>
#include <vector>

class SvgPlot {
public:
  SvgPlot(std::string title, std::string xLabel, std::string yLabel)
      : title_(std::move(title)), xLabel_(std::move(xLabel)), yLabel_(std::move(yLabel)) {}
  // A curve through (x[i], y[i]); dash is an SVG dash pattern or empty for a solid line.
  void line(const std::vector<double>& x, const std::vector<double>& y, const std::string& colour,
            const std::string& label, const std::string& dash = "");
  // The area under the curve from x[a] to x[b] down to a second curve, shaded.
  void band(const std::vector<double>& x, const std::vector<double>& top,
            const std::vector<double>& bottom, int a, int b, const std::string& colour);
  // A dot with a short text beside it.
  void dot(double x, double y, const std::string& colour, const std::string& text);
  // Writes the picture; false when the file can't be written.
  bool write(const std::string& path) const;

private:
  struct Item {
    std::vector<double> x, y;  // a polygon when closed
    std::string colour, label, dash, text;
    enum Kind { kBand, kLine, kDot } kind;  // drawn in this order
  };
  std::string title_, xLabel_, yLabel_;
  std::vector<Item> items_;
};
