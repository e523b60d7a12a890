/* A plain C host of the installed library: it includes the public headers, passes NANUM
 * through an export, sorts with the library's comparison and releases a block. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <zomath/zomath.h>

static int failures = 0;

static void check(int ok, const char* what) {
  if (!ok) {
    fprintf(stderr, "FAILED: %s\n", what);
    ++failures;
  }
}

int main(void) {
  double values[5] = {3.0, NANUM, -1.0, 2.0, 0.0};
  double missing = NANUM;
  unsigned long long bits;
  void* block;

  memcpy(&bits, &missing, sizeof bits);
  check(bits == 0x81AA74FE1C132C0EULL, "NANUM has its bit pattern");

  check(AnotherDummyFunction(1.0, 2.0, 3.0, 4.0, NANUM) == 10.0 + NANUM, "sum with NANUM");

  /* NANUM is an ordinary tiny negative number to a sort that does not know it. */
  theQuickSort(values, 0, 4, (int)sizeof(double), GetAppropriateCompareAscend(11));
  check(values[0] == -1.0 && values[1] == NANUM && values[2] == 0.0 && values[4] == 3.0,
        "theQuickSort orders NANUM between -1 and 0");
  theMergeSort(values, 0, 4, (int)sizeof(double), GetAppropriateCompareDescend(11));
  check(values[0] == 3.0 && values[4] == -1.0, "theMergeSort descending");

  block = malloc(128);
  zomath_free(block);
  zomath_free(NULL);

  /* Linear algebra and records through the C interface: bool results and record layouts. */
  {
    double a[4] = {4.0, 7.0, 2.0, 6.0}, u[4] = {4.0, 7.0, 2.0, 6.0}, w[2], v[4];
    zomath_Spline host = {8, NULL, NULL, 0, 0};
    Nag_Spline routine;
    check(zomath_inverse(a, 2) == 0 && a[0] - 0.6 < 1e-15 && 0.6 - a[0] < 1e-15 &&
              a[1] + 0.7 < 1e-15 && -0.7 - a[1] < 1e-15, "zomath_inverse");
    check(zomath_svdcmp_2(u, 2, 2, w, v) == true, "zomath_svdcmp_2 answers true");
    host.pKnots = (double*)malloc(8 * sizeof(double));
    check(copy_spline_to_nag(&host, &routine) == 0 && routine.pKnots == host.pKnots &&
              routine.nKnots == 8, "copy_spline_to_nag");
    zomath_free_spline_struct(&host);
    check(host.pKnots == NULL, "zomath_free_spline_struct clears the pointer");
  }

  /* Summary statistics: the records as a C host lays them out, bool options included. */
  {
    double data[3] = {1.5, NANUM, 2.3}, whole = 0.0;
    DescStatResults r;
    DescStatOptions o;
    bool multi = true;
    memset(&o, 0, sizeof o);
    o.nMomentDenFlag = DS_SAS1_DF;
    o.bSEM = true;
    o.bWeightSum = true;
    check(zomath_desc_stats(data, 3, &r, NULL, 0.95, DS_SAS1_DF) == 0 && r.N == 2 &&
              r.Missing == 1 && r.Mean - 1.9 < 1e-15 && 1.9 - r.Mean < 1e-15 &&
              r.UCL > 6.98248 && r.UCL < 6.98249, "zomath_desc_stats");
    check(zomath_desc_stats_ex(data, 3, &whole, 1, &o, &r, NULL, 0.95, &multi) == 0 &&
              r.SEM - 0.4 < 1e-15 && 0.4 - r.SEM < 1e-15 && r.WeightSum == 2.0 &&
              r.Mean == NANUM && r.N == -1 && !multi, "zomath_desc_stats_ex options");
  }

  /* Percentiles: the quantile records as a C host lays them out. */
  {
    double data[6] = {4.0, NANUM, 1.0, 3.0, 2.0, 5.0}, percents[2] = {50.0, 101.0}, out[2];
    QuantileOptions o;
    QuantileResults q;
    memset(&o, 0, sizeof o);
    o.nInterpolate = INTERPOLATE_NONE;
    o.bQ1 = o.bIMax = o.bIQR = true;
    check(zomath_quantiles(data, 6, &o, &q, NULL, 0, NULL, NULL) == 0 && q.Q1 == 2.0 &&
              q.IQR == 2.0 && q.iMax == 5 && q.iMin == -1 && q.Median == NANUM,
          "zomath_quantiles hinges");
    check(zomath_percentiles(data, 6, percents, 2, out, INTERPOLATE_EDF_AVER, NULL) == 0 &&
              out[0] == 3.0 && out[1] == NANUM, "zomath_percentiles");
  }

  /* Hypothesis tests: the option and result records as a C host lays them out. */
  {
    double squares[10] = {0, 0.1, 0.4, 0.9, 1.6, 2.5, 3.6, 4.9, 6.4, 8.1}, other[3] = {1.0, 2.5, 2.0};
    HypotTestOptions o = {0.0, 4.0, TAILED_TEST_LOWER};
    tTestMeanResults r;
    tTestMean2SampleResults r2;
    tTestResults welch;
    check(zomath_one_sample_t_test(squares, 10, &o, &r) == 0 && r.N == 10 && r.DOF == 9 &&
              r.tValue > -1.28485 && r.tValue < -1.28475 && r.Prob > 0.11546 && r.Prob < 0.11548,
          "zomath_one_sample_t_test");
    o.dTestValue = 0.0;
    o.TailType = TAILED_TEST_TWO;
    check(zomath_two_sample_t_test(squares, 10, other, 3, &o, &r2, &welch) == 0 && r2.N1 == 10 &&
              r2.N2 == 3 && r2.DOF == 11.0 && r2.Mean2 > 1.8333 && r2.Mean2 < 1.8334 &&
              r2.DiffMean == NANUM && welch.DOF > 10.9865 && welch.DOF < 10.9866,
          "zomath_two_sample_t_test");
  }

  /* Analysis of variance: the table and two-way records as a C host lays them out. */
  {
    double y[6] = {1.0, 2.0, 3.0, 4.0, 6.0, 8.0};
    int sizes[2] = {3, 3}, fa[6] = {1, 1, 1, 2, 2, 2}, fb[6] = {1, 2, 1, 2, 1, 2};
    tTestMeanResults g[2];
    ANOVAFitSummary f;
    ANOVATable t;
    ANOVA2Table t2;
    ANOVA2TotalStats total;
    check(zomath_anova_one_way(y, 6, 2, sizes, g, 2, &f, &t) == 0 && t.DOF1 == 1.0 &&
              t.DOF2 == 4.0 && g[1].N == 3 && g[1].Mean == 6.0 && t.SSq1 > 23.99 &&
              t.SSq1 < 24.01 && f.GrandMean > 3.99 && f.GrandMean < 4.01 && t.MeanSq3 == NANUM,
          "zomath_anova_one_way");
    check(zomath_stats_anova_two_way_compute_anova_table(0, fa, 2, fb, 2, y, 6, NULL, NULL, &total,
                                                          NULL, &t2) == 0 &&
              total.N == 6 && total.NonMissing == 6 && t2.FactorA.DOF == 1 &&
              t2.Error.DOF == 3 && t2.CorrectedTotal.DOF == 5 && t2.Interaction.SSq == NANUM,
          "zomath_stats_anova_two_way_compute_anova_table");
  }

  if (failures == 0) printf("C consumer: all checks passed\n");
  return failures == 0 ? 0 : 1;
}
