// A short tour of what the library offers, on the sample readings in examples/data.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "zomath/zomath.h"

namespace {

struct Reading {
  std::string station;
  double value;
};

std::vector<Reading> load(const std::string& path) {
  std::vector<Reading> rows;
  std::ifstream in(path);
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string station, value;
    std::getline(fields, station, ',');
    std::getline(fields, value);
    rows.push_back({station, value.empty() ? NANUM : std::stod(value)});
  }
  return rows;
}

void print(const char* title, const std::vector<double>& values, const std::vector<int>& order,
           const std::vector<Reading>& rows) {
  std::printf("%s\n", title);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] == NANUM)
      std::printf("  %-3s  missing\n", rows[order[i]].station.c_str());
    else
      std::printf("  %-3s  %6.1f\n", rows[order[i]].station.c_str(), values[i]);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = argc > 1 ? argv[1] : ZOMATH_EXAMPLES_DATA_DIR "/sample.csv";
  const std::vector<Reading> rows = load(path);
  if (rows.empty()) {
    std::fprintf(stderr, "demo: no readings in %s\n", path.c_str());
    return 1;
  }
  std::printf("zomath demo: %zu readings from %s\n", rows.size(), path.c_str());
  std::printf("Missing readings travel as NANUM = %.8e\n\n", NANUM);

  std::vector<double> values;
  std::vector<int> order;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    values.push_back(rows[i].value);
    order.push_back(static_cast<int>(i));
  }
  const int n = static_cast<int>(values.size());

  // Descending by temperature, stations following: a merge sort keeps ties in file order.
  CMergeSort byValue(values.data(), n, sizeof(double), order.data(), sizeof(int), n);
  byValue.Sort(0, n - 1, GetAppropriateCompareDescend(13));
  print("Warmest first (stable merge sort, station index as companion):", values, order, rows);

  // Back to station order: sort the companion ascending, values following.
  CQSort byStation(order.data(), n, sizeof(int), values.data(), sizeof(double), n);
  byStation.Sort(0, n - 1, GetAppropriateCompareAscend(8));
  print("\nBack in station order (quick sort on the index, values as companion):", values,
        order, rows);

  double sum = 0;
  int valid = 0;
  for (double v : values)
    if (v != NANUM) sum = AnotherDummyFunction(sum, v, 0, 0, 0), ++valid;
  std::printf("\n%d of %d readings present, mean %.2f degC\n", valid, n, sum / valid);
  return 0;
}
