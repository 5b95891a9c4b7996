#pragma once

// Runs the benchmarks of the program and prints a table with a row for each benchmark and measure.
//
// "Thing_baseline/1000" is the baseline of "Thing/1000": the last column has the ratio of the two.
// "Thing_baseline_floor/1000" and "Thing_baseline_gio/1000" are further ones, named beside their
// ratios. Of repeated benchmarks the table has the medians. False when one of them failed.
bool runBenchmarks(int argc, char *argv[]);
