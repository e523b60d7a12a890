// Reference tables for accuracy tests, and the error statistics reported against them.
//
// A table is a CSV file under tests/data: lines starting with '#' are comments (the generator
// names its source and precision there); the first other line names the columns; every row holds
// the arguments, then the reference value, then a scale. The error at a row is
// |computed - reference| / scale: the generator sets scale to |reference| away from zeros, and to
// the function's magnitude nearby where the function crosses zero, so that an absolute error
// there is measured against the size of the function around it.
#pragma once

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "zomath/core.h"

namespace zomath::testing {

struct ReferenceRow {
  std::vector<double> args;
  double value;
  double scale;
};

// The rows of a table under tests/data/<relative path> as numbers, comment lines and the header
// line left out; empty if the file can't be read (the caller asserts).
inline std::vector<std::vector<double>> load_rows(const std::string& relativePath) {
  std::vector<std::vector<double>> rows;
  std::ifstream in(std::string(ZOMATH_TEST_DATA_DIR) + "/" + relativePath);
  std::string line;
  bool header = true;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (header) {
      header = false;
      continue;
    }
    std::vector<double> fields;
    std::stringstream ss(line);
    std::string field;
    while (std::getline(ss, field, ',')) fields.push_back(std::strtod(field.c_str(), nullptr));
    rows.push_back(std::move(fields));
  }
  return rows;
}

// Rows of a reference table: arguments, value, scale.
inline std::vector<ReferenceRow> load_reference(const std::string& relativePath) {
  std::vector<ReferenceRow> rows;
  for (const std::vector<double>& fields : load_rows(relativePath)) {
    if (fields.size() < 3) continue;
    ReferenceRow row;
    row.scale = fields.back();
    row.value = fields[fields.size() - 2];
    row.args.assign(fields.begin(), fields.end() - 2);
    rows.push_back(row);
  }
  return rows;
}

// Correct digits of a value against a reference: -log10 of the relative error, 16 when exact.
inline double digits(double value, double reference) {
  if (value == reference) return 16;
  return std::fmin(16, -std::log10(std::fabs(value - reference) / std::fabs(reference)));
}

// Worst and root-mean-square scaled error over a table, with where the worst one occurs.
class ErrorStats {
public:
  void add(const ReferenceRow& row, double computed) {
    ++count_;
    double err;
    if (computed == row.value) {
      err = 0;
    } else if (std::isnan(computed) || std::isinf(computed) || computed == NANUM) {
      err = INFINITY;
    } else {
      err = std::fabs(computed - row.value) / row.scale;
    }
    sumSquares_ += err * err;
    if (err > worst_ || count_ == 1) {
      worst_ = err;
      worstArgs_ = row.args;
      worstValue_ = computed;
      worstReference_ = row.value;
    }
  }
  int count() const { return count_; }
  double worst() const { return worst_; }
  double rms() const { return count_ ? std::sqrt(sumSquares_ / count_) : 0.0; }
  std::string describe() const {
    std::ostringstream os;
    os.precision(17);
    os << count_ << " points, worst " << worst_ << " (" << worst_ / 2.220446049250313e-16
       << " eps) at (";
    for (size_t i = 0; i < worstArgs_.size(); ++i) os << (i ? ", " : "") << worstArgs_[i];
    os << "): got " << worstValue_ << ", reference " << worstReference_ << "; rms " << rms();
    return os.str();
  }

private:
  int count_ = 0;
  double worst_ = 0;
  double sumSquares_ = 0;
  std::vector<double> worstArgs_;
  double worstValue_ = 0, worstReference_ = 0;
};

}  // namespace zomath::testing
