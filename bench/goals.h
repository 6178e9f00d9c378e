// The goals, each a ratio of two times of one run or a number, and the table that tells which hold.
#ifndef BENCH_GOALS_H
#define BENCH_GOALS_H

#include <map>
#include <string>

namespace bench
{

// Nanoseconds by benchmark, "Parse/6": the least of its repetitions.
using Times = std::map<std::string, double>;

// Prints one line of the table. goal 0: for orientation, without a verdict.
void PrintLine(const std::string& work, double measured, double goal);
// Prints the lines of all ratios whose benchmarks have run.
void PrintRatios(const Times& times);

} // namespace bench

#endif
