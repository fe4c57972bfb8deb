#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

/// A row of the table that bench.sh prints. A row is one work of ours, and either its floor, the same work
/// done the shortest way, measured in the same run, or a time. table.py reads the names and labels that these
/// give.
namespace tarvello::bench {

using Work = void (*)(benchmark::State&);

/// @param reach  at most so many times the floor is what we want
inline void row(const std::string& name, Work ours, Work floor, double reach) {
    char label[64];
    std::snprintf(label, sizeof label, "%g x", reach);
    benchmark::RegisterBenchmark((name + "|ours|" + label).c_str(), ours)->UseRealTime();
    benchmark::RegisterBenchmark((name + "|floor").c_str(), floor)->UseRealTime();
}

/// @param microseconds  at most so long is what we want
inline void row_within(const std::string& name, Work ours, double microseconds) {
    char label[64];
    std::snprintf(label, sizeof label, "%g us", microseconds);
    benchmark::RegisterBenchmark((name + "|ours|" + label).c_str(), ours)->UseRealTime();
}

} // namespace tarvello::bench
