// A short tour of what the library offers, on the sample readings in examples/data: sorting with
// a companion array, summary kernels that skip missing readings, a t test with its confidence
// interval, a least-squares trend by pseudo-inverse, and a few special function values; the
// summary statistics of the readings as one table; a straight line and a quadratic fitted to a
// calibration series, with their parameter and analysis of variance tables; a one-way analysis of
// variance of plot yields by fertiliser with Tukey's comparison of the means; the peak analysis
// of a spectrum (noise, baseline, peaks, markers, heights and areas) with an SVG picture.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <utility>
#include <string>
#include <vector>

#include "svg_plot.h"
#include "zomath/zomath.h"

namespace {

struct Reading {
  std::string station;
  double value;
};

// The two comma-separated fields of each line of a file: the first, and the rest of the line
// (empty when the line has no comma). Blank lines and lines starting with '#' are left out.
std::vector<std::pair<std::string, std::string>> fields_of(const std::string& path) {
  std::vector<std::pair<std::string, std::string>> rows;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    const std::size_t comma = line.find(',');
    rows.emplace_back(line.substr(0, comma), comma == std::string::npos ? "" : line.substr(comma + 1));
  }
  return rows;
}

// A second field as a number, NANUM when it is empty.
double value_of(const std::string& field) { return field.empty() ? NANUM : std::stod(field); }

// A file of x,y pairs.
void read_xy(const std::string& path, std::vector<double>& x, std::vector<double>& y) {
  for (const auto& [a, b] : fields_of(path)) {
    x.push_back(std::stod(a));
    y.push_back(std::stod(b));
  }
}

std::vector<Reading> load(const std::string& path) {
  std::vector<Reading> rows;
  for (const auto& [station, value] : fields_of(path)) rows.push_back({station, value_of(value)});
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

// The road a script language takes: functions found by name in the library's table and called
// with an array of doubles that each row unpacks as its kind says, and a numerical integral of
// a host function through the one-row base table.
void named_functions(const std::vector<double>& present) {
  std::printf("\nFunctions by name through the table:\n");
  struct Call {
    const char* name;
    std::vector<double> args;
  };
  const Call calls[] = {{"Bessel_J0", {2.5}},        {"tinv", {0.975, 12}},
                        {"poisspdf", {3, 2.5}},      {"poisspdf", {2.5, 2.5}},
                        {"bivarnormcdf", {0, 0, 0.5}}, {"no_such_function", {1}}};
  for (const Call& c : calls) {
    unsigned long index = 0;
    const int count =
        zomath_ZT_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>(c.name), &index, nullptr, nullptr);
    std::string shown = std::string(c.name) + "(";
    for (std::size_t i = 0; i < c.args.size(); ++i) {
      char arg[32];
      std::snprintf(arg, sizeof(arg), "%s%g", i ? ", " : "", c.args[i]);
      shown += arg;
    }
    shown += ")";
    if (count < 0) {
      std::printf("  %-24s not in the table\n", shown.c_str());
      continue;
    }
    std::vector<double> args = c.args;
    args.resize(4, 0.0);
    double value = NANUM;
    const int code = zomath_ZT_functions(ZOMATH_ZT_CALL, nullptr, &index, args.data(), &value);
    std::printf("  %-24s = %.15g (row %lu, code %d)\n", shown.c_str(), value, index, code);
  }
  zomath_StringArray names = {nullptr, 0, 0}, argLists = {nullptr, 0, 0};
  const int inverses = zomath_ZT_functions_get_list(&names, &argLists, ZOMATH_ZT_INVERSE);
  std::printf("  %d inverse distribution functions:", inverses);
  for (int i = 0; i < names.nSize; ++i) std::printf(" %s(%s)", names.pItems[i], argLists.pItems[i]);
  std::printf("\n");
  zomath_string_array_clear(&names);
  zomath_string_array_clear(&argLists);

  // The share of a normal fitted to the readings that lies above 25 degC, by integrating its
  // density from 25 to +infinity (NANUM as the upper bound), beside the closed form.
  if (present.size() < 2) return;
  double mean = 0, ss = 0;
  for (double v : present) mean += v / present.size();
  for (double v : present) ss += (v - mean) * (v - mean);
  struct Normal {
    double mu, sigma;
  } fitted{mean, std::sqrt(ss / (present.size() - 1))};
  ZTFInfo info{[](double x, void* p) {
                 const auto* n = static_cast<Normal*>(p);
                 return normpdf(x, n->mu, n->sigma, nullptr);
               },
               &fitted};
  unsigned long index = 0;
  double bounds[2] = {25.0, NANUM}, share = NANUM;
  zomath_ZT_base_functions(ZOMATH_ZT_LOOKUP, const_cast<char*>("integral"), &index, nullptr,
                           nullptr, nullptr);
  zomath_ZT_base_functions(ZOMATH_ZT_CALL, nullptr, &index, &info, bounds, &share);
  std::printf("  integral of the fitted normal density above 25 degC = %.10f (closed form %.10f)\n",
              share, normcdf((25.0 - fitted.mu) / fitted.sigma, ZOMATH_TAIL_UPPER, nullptr));
}


// The summary engine's record for the readings, one statistic a line. NANUM (a statistic that
// doesn't exist for these data) shows as a dash.
void summary_table(const std::vector<double>& values) {
  DescStatResults r;
  if (zomath_desc_stats(values.data(), static_cast<int>(values.size()), &r, nullptr, 0.95, DS_SAS1_DF) != 0)
    return;
  RangeResults range;
  zomath_range(values.data(), static_cast<int>(values.size()), &range);
  // Quartiles interpolated at (n + 1) p / 100 (percentiles 25, 50, 75), NANUM left out.
  QuantileOptions quartileOptions = {INTERPOLATE_WEIGHT_AVER_RIGHT, false, false, true, true, true,
                                     false, false, true, false};
  QuantileResults quartiles;
  zomath_quantiles(values.data(), static_cast<int>(values.size()), &quartileOptions, &quartiles,
                   nullptr, 0, nullptr, nullptr);
  std::printf("\nSummary statistics of the temperatures (denominator n - 1, 95%% limits):\n");
  const struct {
    const char* name;
    double value;
  } rows[] = {{"N", double(r.N)},     {"Missing", double(r.Missing)},
              {"Mean", r.Mean},       {"Standard deviation", r.SD},
              {"SE of mean", r.SEM},  {"Lower 95% limit", r.LCL},
              {"Upper 95% limit", r.UCL}, {"Variance", r.Variance},
              {"Sum", r.Sum},         {"Skewness", r.Skewness},
              {"Kurtosis (excess)", r.Kurtosis}, {"Coefficient of variation", r.COV},
              {"Mean absolute deviation", r.MAD}, {"Geometric mean", r.GeoMean},
              {"Geometric SD", r.GeoSD}, {"Mode", r.Mode},
              {"Minimum", range.Min},  {"Maximum", range.Max},
              {"Range", range.Range},  {"First quartile", quartiles.Q1},
              {"Median", quartiles.Median}, {"Third quartile", quartiles.Q3},
              {"Interquartile range", quartiles.IQR}};
  for (const auto& row : rows) {
    if (row.value == NANUM)
      std::printf("  %-26s %12s\n", row.name, "-");
    else if (&row < rows + 2)
      std::printf("  %-26s %7.0f\n", row.name, row.value);  // the counts
    else
      std::printf("  %-26s %12.4f\n", row.name, row.value);
  }
}

// The tests as a person reads them: the hypotheses, the statistic with its degrees of freedom,
// the probability, the interval, and what they say at the 5% level. Missing readings are left
// out by the exports themselves.
void hypothesis_tests(const std::vector<double>& values) {
  const int n = static_cast<int>(values.size());
  const double mu0 = 20.0, level = 0.95;
  const HypotTestOptions two = {0.0, mu0, TAILED_TEST_TWO};
  tTestMeanResults one;
  std::printf("\nOne-sample t test of the mean temperature:\n");
  if (zomath_one_sample_t_test(values.data(), n, &two, &one) != 0) {
    std::printf("  no test: the readings have no spread\n");
    return;
  }
  double lcl = NANUM, ucl = NANUM;
  zomath_confidence_levels_for_mean(&level, 1, &one, &lcl, &ucl);
  std::printf("  H0: mean = %.1f degC   H1: mean != %.1f degC (two-sided)\n", mu0, mu0);
  std::printf("  %d readings: mean %.3f, SD %.3f, standard error %.3f degC\n", one.N, one.Mean,
              one.SD, one.SEM);
  std::printf("  t = %.4f with %d degrees of freedom, p = %.4f\n", one.tValue, one.DOF, one.Prob);
  std::printf("  95%% confidence interval of the mean: %.3f to %.3f degC\n", lcl, ucl);
  std::printf("  at the 5%% level the readings %s a mean of %.1f degC\n",
              one.Prob < 0.05 ? "reject" : "do not reject", mu0);

  // The first half of the stations against the second.
  const std::vector<double> west(values.begin(), values.begin() + n / 2),
      east(values.begin() + n / 2, values.end());
  const HypotTestOptions same = {0.0, 0.0, TAILED_TEST_TWO};
  tTestMean2SampleResults r;
  tTestResults welch;
  if (zomath_two_sample_t_test(west.data(), static_cast<int>(west.size()), east.data(),
                               static_cast<int>(east.size()), &same, &r, &welch) != 0 ||
      r.tValue == NANUM)
    return;
  double pooled[2], unequal[2];
  zomath_two_sample_confidence_levels_for_mean_equal_var(&level, 1, &r, &pooled[0], &pooled[1]);
  zomath_two_sample_confidence_levels_for_mean_unequal_var(&level, 1, &r, &unequal[0], &unequal[1]);
  std::printf("\nTwo-sample t test, the first %d stations against the last %d:\n",
              static_cast<int>(west.size()), static_cast<int>(east.size()));
  std::printf("  H0: the two means are equal   H1: they differ (two-sided)\n");
  std::printf("  first:  %d readings, mean %.3f, SD %.3f degC\n", r.N1, r.Mean1, r.SD1);
  std::printf("  last:   %d readings, mean %.3f, SD %.3f degC\n", r.N2, r.Mean2, r.SD2);
  std::printf("  equal variances:   t = %.4f, %5.2f degrees of freedom, p = %.4f; "
              "95%% interval of the difference %.3f to %.3f\n",
              r.tValue, r.DOF, r.Prob, pooled[0], pooled[1]);
  std::printf("  unequal variances: t = %.4f, %5.2f degrees of freedom, p = %.4f; "
              "95%% interval of the difference %.3f to %.3f\n",
              welch.tValue, welch.DOF, welch.Prob, unequal[0], unequal[1]);
  std::printf("  at the 5%% level the readings %s a difference between the halves\n",
              r.Prob < 0.05 ? "show" : "do not show");
}

// A fit's parameter table and analysis of variance, as a report shows them. NANUM prints as a
// dash.
void fit_report(const char* title, const char* const* names, const FitParameter* fit, int k,
                const FitStats& st, const FitAnovaTable& an) {
  auto num = [](double v, const char* format) {
    static char text[4][32];
    static int slot = 0;
    char* out = text[slot++ % 4];
    if (v == NANUM)
      std::snprintf(out, 32, "%s", "-");
    else
      std::snprintf(out, 32, format, v);
    return out;
  };
  std::printf("\n%s\n", title);
  std::printf("  %-10s %12s %12s %9s %9s %25s\n", "Parameter", "Value", "Std error", "t value",
              "Prob>|t|", "95% confidence limits");
  for (int j = 0; j < k; ++j) {
    const FitParameter& p = fit[j];
    std::printf("  %-10s %12s %12s %9s %9s", names[j], num(p.value, "%.6g"), num(p.Error, "%.4g"),
                num(p.tValue, "%.2f"), num(p.Prob, "%.3g"));
    std::printf("  %11s .. %s\n", num(p.LCL, "%.5g"), num(p.UCL, "%.5g"));
  }
  std::printf("  N %.0f, residual DF %.0f, root MSE %.4g, R-squared %.6f (adjusted %.6f)\n", st.N,
              st.DOF, st.RootMSE, st.RSquare, st.AdjRSquare);
  std::printf("  %-8s %4s %16s %14s %12s %10s\n", "Source", "DF", "Sum of squares", "Mean square",
              "F value", "Prob>F");
  std::printf("  %-8s %4.0f %16s %14s %12s %10s\n", "Model", an.ModelDF, num(an.ModelSS, "%.6g"),
              num(an.ModelMS, "%.6g"), num(an.FValue, "%.6g"), num(an.ProbF, "%.3g"));
  std::printf("  %-8s %4.0f %16s %14s\n", "Error", an.ErrorDF, num(an.ErrorSS, "%.6g"),
              num(an.ErrorMS, "%.6g"));
  std::printf("  %-8s %4.0f %16s\n", "Total", an.TotalDF, num(an.TotalSS, "%.6g"));
}

// A straight line and a quadratic through a calibration series: which describes it better is
// read from the residual mean square and the t value of the quadratic term.
void calibration_fits(const std::string& path) {
  std::vector<double> x, y;
  read_xy(path, x, y);
  if (x.size() < 4) return;
  const int n = static_cast<int>(x.size());
  std::printf("\nCalibration series %s: absorbance against concentration (mg/L), %d standards\n",
              path.c_str(), n);
  // Errors from the scatter about the curve (no weights to trust), 95% limits.
  const LinearFitOptions options{false, 1.0, 0, true, 0.95, false, false, 0.0};
  FitParameter line[2], quad[3];
  FitStats st;
  FitAnovaTable an;
  const char* lineNames[] = {"Intercept", "Slope"};
  if (zomath_linear_fit(x.data(), y.data(), n, line, nullptr, 0, &options, &st, &an, nullptr,
                        nullptr, nullptr, 0, 0) == 0)
    fit_report("Straight line: absorbance = a + b conc", lineNames, line, 2, st, an);
  const char* quadNames[] = {"Intercept", "Linear", "Quadratic"};
  if (zomath_polynomial_fit(n, x.data(), y.data(), nullptr, 2, &options, quad, 3, &st, &an,
                            nullptr, nullptr, nullptr, -1) >= 0)
    fit_report("Quadratic: absorbance = c0 + c1 conc + c2 conc^2", quadNames, quad, 3, st, an);
}


// A one-way analysis of variance of plot yields by fertiliser, and which fertilisers differ by
// Tukey's comparison, as a report shows them; Levene's test checks the equal spread it assumes.
void fertiliser_anova(const std::string& path) {
  std::vector<std::string> names;
  std::vector<std::vector<double>> groups;
  for (const auto& [name, value] : fields_of(path)) {
    if (names.empty() || names.back() != name) {
      names.push_back(name);
      groups.emplace_back();
    }
    groups.back().push_back(value_of(value));
  }
  const int k = static_cast<int>(groups.size());
  if (k < 2) return;
  std::vector<double> data;
  std::vector<int> sizes;
  for (const auto& g : groups) {
    data.insert(data.end(), g.begin(), g.end());
    sizes.push_back(static_cast<int>(g.size()));
  }
  std::vector<tTestMeanResults> stats(k);
  ANOVAFitSummary fit;
  ANOVATable t, levene;
  if (zomath_anova_one_way(data.data(), static_cast<int>(data.size()), k, sizes.data(),
                           stats.data(), k, &fit, &t) != 0 || t.FValue == NANUM)
    return;
  std::printf("\nOne-way analysis of variance of %s: wheat yield (t/ha) by fertiliser\n",
              path.c_str());
  std::printf("  %-10s %3s %8s %8s %8s\n", "Fertiliser", "N", "Mean", "SD", "SEM");
  for (int g = 0; g < k; ++g)
    std::printf("  %-10s %3d %8.3f %8.3f %8.3f\n", names[g].c_str(), stats[g].N, stats[g].Mean,
                stats[g].SD, stats[g].SEM);
  std::printf("  %-8s %4s %15s %12s %9s %10s\n", "Source", "DF", "Sum of squares", "Mean square",
              "F value", "Prob>F");
  std::printf("  %-8s %4.0f %15.5f %12.5f %9.3f %10.3g\n", "Between", t.DOF1, t.SSq1, t.MeanSq1,
              t.FValue, t.PValue);
  std::printf("  %-8s %4.0f %15.5f %12.5f\n", "Within", t.DOF2, t.SSq2, t.MeanSq2);
  std::printf("  %-8s %4.0f %15.5f\n", "Total", t.DOF3, t.SSq3);
  std::printf("  R-squared %.4f, root MSE %.4f t/ha, coefficient of variation %.2f%%\n",
              fit.RSquare, fit.RootMSE, 100 * fit.CoefVar);
  if (zomath_anova_equal_variance_test(data.data(), static_cast<int>(data.size()), k,
                                       sizes.data(), nullptr, 0, &levene, ANOVA_LEVENE) == 0)
    std::printf("  Levene's test of equal spread: F = %.3f on %.0f and %.0f DF, p = %.3f\n",
                levene.FValue, levene.DOF1, levene.DOF2, levene.PValue);
  std::printf("  at the 5%% level the fertilisers %s the mean yield\n",
              t.PValue < 0.05 ? "differ in" : "do not differ in");

  // Tukey-Kramer comparison of every pair, from the group means and the within mean square.
  const int m = k * (k - 1) / 2;
  std::vector<double> means(k), diff(m), lcl(m), ucl(m), sem(m), stat(m), prob(m), alpha(m);
  std::vector<int> counts(k), index(m), sig(m);
  for (int g = 0; g < k; ++g) {
    means[g] = stats[g].Mean;
    counts[g] = stats[g].N;
  }
  if (zomath_anova_mean_comparison(means.data(), k, counts.data(), k, t.MeanSq2,
                                   static_cast<int>(t.DOF2), 0.05, k, index.data(), m,
                                   diff.data(), m, lcl.data(), m, ucl.data(), m, sem.data(), m,
                                   stat.data(), m, prob.data(), m, sig.data(), m, alpha.data(), m,
                                   COMPARE_TUKEY) != 0)
    return;
  std::printf("\nTukey-Kramer comparison of the means, 95%% simultaneous intervals:\n");
  std::printf("  %-22s %10s %8s %8s %8s %8s\n", "Pair", "Difference", "Lower", "Upper", "Prob",
              "Differ?");
  int c = 0;
  for (int i = 1; i < k; ++i)
    for (int j = 0; j < i; ++j, ++c) {
      const std::string pair = names[i] + " - " + names[j];
      char p[16];
      std::snprintf(p, sizeof p, prob[c] < 1e-4 ? "<0.0001" : "%.4f", prob[c]);
      std::printf("  %-22s %10.3f %8.3f %8.3f %8s %8s\n", pair.c_str(), diff[c], lcl[c], ucl[c], p,
                  sig[c] ? "yes" : "no");
    }
}

// A noisy absorbance band smoothed by each filter, side by side, and its top found where the
// cleaned Savitzky-Golay slope passes through zero.
void smoothing_demo(const std::string& path) {
  std::vector<double> x, y;
  read_xy(path, x, y);
  const int n = static_cast<int>(x.size());
  if (n < 16) return;
  std::vector<double> mean(n), weighted(n), golay(n), median(n), fourier(n), slope(n);
  zomath_adjave_smooth(y.data(), mean.data(), n, 3, ZOMATH_BOUNDARY_NONE, false);
  zomath_adjave_smooth(y.data(), weighted.data(), n, 3, ZOMATH_BOUNDARY_REFLECT, true);
  zomath_savitsky_golay(y.data(), golay.data(), n, 3, 3, 2, 0, ZOMATH_BOUNDARY_NONE);
  zomath_median_filter(n, y.data(), median.data(), 3, 50, ZOMATH_BOUNDARY_REPEAT, true);
  const int fft = zomsp_fft_filter_smoothing(n, y.data(), fourier.data(), 0.08);
  zomath_savitsky_golay_derivative(x.data(), y.data(), slope.data(), n, 3, -1, 2, 1, true);
  std::printf("\nSmoothing a noisy absorbance band (%s, %d readings), 7-point windows:\n",
              path.c_str(), n);
  std::printf("  %6s %8s %9s %9s %9s %9s %9s %10s\n", "nm", "raw", "average", "weighted",
              "S-Golay", "median", "Fourier", "slope/nm");
  for (int i = 25; i <= 60; i += 5)
    std::printf("  %6.1f %8.4f %9.4f %9.4f %9.4f %9.4f %9.4f %10.5f\n", x[i], y[i], mean[i],
                weighted[i], golay[i], median[i], fft == 0 ? fourier[i] : NANUM, slope[i]);
  // Cleaning makes the slope pass through an exact 0 where it turns: the band's top.
  int top = 0;
  for (int i = 1; i < n; ++i)
    if (golay[i] > golay[top]) top = i;
  for (int i = std::max(top - 3, 1); i < std::min(top + 4, n - 1); ++i)
    if (slope[i] == 0 && slope[i - 1] > 0 && slope[i + 1] < 0)
      std::printf("  the cleaned slope passes through 0 at %.1f nm, the band's top\n", x[i]);
}


// Peak analysis of a spectrum: the noise level, a baseline through quiet points near both ends,
// peaks of the baseline-corrected curve (lightly smoothed) that stand at least 10 noise levels
// high, the markers where each leaves and rejoins the baseline, and the area between them. The
// picture goes to the build directory.
void peak_analysis(const std::string& path) {
  std::vector<double> x, y;
  read_xy(path, x, y);
  const int n = static_cast<int>(x.size());
  if (n < 50) return;
  std::printf("\nPeak analysis of a spectrum (%s, %d points from %.0f to %.0f):\n", path.c_str(),
              n, x.front(), x.back());
  const double noise = zomath_get_noise_level(n, y.data());
  std::printf("  noise level (SD of white noise) %.4f\n", noise);

  // Baseline: a line through quiet points of the first and last 15%, read at every x.
  std::vector<double> bx(n), by(n), base(n);
  int rc = zomath_create_baseline_end_weighted_linear(n, x.data(), y.data(), n, bx.data(),
                                                      by.data(), 0.15,
                                                      ZOMATH_SMOOTH_SAVITZKY_GOLAY, 0.1);
  if (rc == 0)
    rc = zomath_interpolate(x.data(), base.data(), n, bx.data(), by.data(), n,
                            ZOMATH_INTERP_LINEAR, 0, nullptr, nullptr, 0, 0);
  if (rc != 0) {
    std::printf("  no baseline (code %d)\n", rc);
    return;
  }
  std::printf("  baseline from quiet ends: %.4f at %.0f to %.4f at %.0f\n", base.front(),
              x.front(), base.back(), x.back());

  // Peaks of the corrected curve after a 9-point Savitzky-Golay smoothing.
  std::vector<double> corrected(n), smooth(n), smoothY(n);
  for (int i = 0; i < n; ++i) corrected[i] = y[i] - base[i];
  zomath_savitsky_golay(corrected.data(), smooth.data(), n, 4, 4, 2, 0, ZOMATH_BOUNDARY_NONE);
  for (int i = 0; i < n; ++i) smoothY[i] = smooth[i] + base[i];
  int np = n;
  std::vector<double> px(n), py(n);
  std::vector<int> pidx(n);
  rc = zomath_find_peaks_by_local_maximum(&np, x.data(), smooth.data(), px.data(), py.data(),
                                          pidx.data(), ZOMATH_PEAK_POSITIVE, 10);
  if (rc == 0 && np > 0) rc = zomath_test_peaks_by_height(&np, px.data(), py.data(), pidx.data(),
                                                         10 * noise);
  if (rc != 0 || np == 0) {
    std::printf("  no peaks (code %d)\n", rc);
    return;
  }
  std::sort(pidx.begin(), pidx.begin() + np);

  // Markers: where the smoothed curve comes within half the mean step of the raw data of the
  // baseline.
  std::vector<int> markers(2 * np);
  std::vector<double> mx(2 * np), my(2 * np);
  rc = zomath_make_base_markers(markers.data(), mx.data(), my.data(), 2 * np, pidx.data(), np,
                                x.data(), smoothY.data(), y.data(), base.data(), n);
  if (rc != 0) {
    std::printf("  no markers (code %d)\n", rc);
    return;
  }
  std::printf("  %d peaks at least %.3f (10 noise levels) above the baseline:\n", np, 10 * noise);
  std::printf("  %4s %10s %10s %10s %10s %10s\n", "peak", "position", "height", "from", "to",
              "area");
  SvgPlot plot("Peak analysis of " + path.substr(path.find_last_of('/') + 1), "Raman shift (cm-1)",
               "intensity");
  for (int g = 0; g < np; ++g) {
    const int p = pidx[g], a = markers[2 * g], b = markers[2 * g + 1];
    double area = NANUM;
    zomath_integrate(b - a + 1, x.data() + a, corrected.data() + a, &area, nullptr);
    std::printf("  %4d %10.1f %10.4f %10.1f %10.1f %10.3f\n", g + 1, x[p], smooth[p], x[a], x[b],
                area);
    plot.band(x, y, base, a, b, g % 2 ? "#e6a100" : "#2a9d8f");
    char text[32];
    std::snprintf(text, sizeof text, "%d: %.0f", g + 1, x[p]);
    plot.dot(x[p], y[p], "#c0392b", text);
  }
  std::printf("  (height of the smoothed curve above the baseline; area by the trapezoidal rule\n"
              "  on the baseline-corrected readings between the markers)\n");
  plot.line(x, y, "#1f4e79", "spectrum");
  plot.line(x, base, "#555555", "baseline", "6,4");
  const std::string out = std::string(ZOMATH_EXAMPLES_OUTPUT_DIR) + "/peaks.svg";
  if (plot.write(out))
    std::printf("  picture of the curve, baseline and marked peaks written to %s\n", out.c_str());
  else
    std::printf("  the picture could not be written to %s\n", out.c_str());
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

  // Summary: the kernels skip NANUM and keep positions.
  int valid = 0;
  double variance = 0;
  const double mean = zomath_d_mean_variance(values.data(), n, &variance, &valid);
  unsigned int iMin = 0, iMax = 0;
  zomath_d_minmax(values.data(), 0, static_cast<unsigned int>(n - 1), &iMin, &iMax);
  std::vector<double> present;
  for (double v : values)
    if (v != NANUM) present.push_back(v);
  double median = NANUM;
  zomath_get_median_in_vector(static_cast<int>(present.size()), present.data(), &median);
  const double sd = std::sqrt(variance);
  std::printf("\nSummary: %d of %d readings present; mean %.3f, SD %.3f, median %.2f degC\n", valid, n,
              mean, sd, median);
  std::printf("  coolest %s (%.1f), warmest %s (%.1f)\n", rows[order[iMin]].station.c_str(),
              values[iMin], rows[order[iMax]].station.c_str(), values[iMax]);
  summary_table(values);

  // One-sample t test against 20 degC, two-sided, with a 95% confidence interval.
  const double df = valid - 1, mu0 = 20.0;
  const double t = (mean - mu0) * std::sqrt(static_cast<double>(valid)) / sd;
  int err = 0;
  const double p = tcdf(t, df, ZOMATH_TAIL_TWO_SIDED, &err);
  const double tCrit = tinv(0.05, df, ZOMATH_TAIL_TWO_SIDED, &err);
  const double half = tCrit * sd / std::sqrt(static_cast<double>(valid));
  std::printf("\nt test of mean = %.1f: t = %.4f on %.0f df, two-sided p = %.4f\n", mu0, t, df, p);
  std::printf("  95%% confidence interval %.3f to %.3f degC (t quantile %.4f)\n", mean - half,
              mean + half, tCrit);

  hypothesis_tests(values);

  // Trend over the station order: least squares through the pseudo-inverse of [1, index].
  std::vector<double> design, y;
  for (int i = 0; i < n; ++i) {
    if (values[i] == NANUM) continue;
    design.push_back(1.0);
    design.push_back(order[i]);
    y.push_back(values[i]);
  }
  const int m = static_cast<int>(y.size());
  std::vector<double> pinv(2 * static_cast<std::size_t>(m));
  if (zomath_pinv(design.data(), pinv.data(), m, 2, 0.0) == 0) {
    double b0 = 0, b1 = 0;
    for (int i = 0; i < m; ++i) {
      b0 += pinv[i] * y[i];
      b1 += pinv[m + i] * y[i];
    }
    std::printf("\nLeast-squares trend: %.3f %+.4f degC per station\n", b0, b1);
  }

  // Special functions, in both forms where the library has two.
  std::printf("\nSpecial functions:\n");
  std::printf("  Gamma(1/2)^2   = %.17g (pi = %.17g)\n", gamma_fn(0.5) * gamma_fn(0.5), std::acos(-1.0));
  std::printf("  erf(1)         = %.17g, own kernel %.17g\n", ADummyFunction(1.0), zomath_erf(1.0));
  std::printf("  J0(2.4048...)  = %.3g (first zero)\n", bessel_j0(2.404825557695773));
  std::printf("  Ai(-10)        = %.17g, own kernel %.17g\n", airy_ai(-10.0), zomath_airy_ai(-10.0));
  std::printf("  bessel_y0(0)   = %s (no value exists)\n", bessel_y0(0.0) == NANUM ? "NANUM" : "?");

  named_functions(present);
  calibration_fits(ZOMATH_EXAMPLES_DATA_DIR "/calibration.csv");
  fertiliser_anova(ZOMATH_EXAMPLES_DATA_DIR "/yields.csv");
  smoothing_demo(ZOMATH_EXAMPLES_DATA_DIR "/spectrum.csv");
  peak_analysis(ZOMATH_EXAMPLES_DATA_DIR "/peaks.csv");
  return 0;
}
