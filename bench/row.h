#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

/// A row of the table that bench.sh prints. A row is one work of ours, and either its floor, the same work
/// done the shortest way, measured in the same run, or a time. table.py reads the names and labels that these
/// give.
namespace tarvello::bench {

using Work = void (*)(benchmark::State&);

/// What a row is measured by: the time of the processor, which other programs disturb little, or the time on
/// the wall, for a work that waits for the disk or another process.
enum class Clock { processor, wall };

inline auto* add(const std::string& name, Work work, Clock clock) {
    auto* const registered = benchmark::RegisterBenchmark(name.c_str(), work);
    return clock == Clock::wall ? registered->UseRealTime() : registered;
}

/// @param reach  at most so many times the floor is what we want
inline void row(const std::string& name, Work ours, Work floor, double reach,
                Clock clock = Clock::processor) {
    char label[64];
    std::snprintf(label, sizeof label, "%g x", reach);
    add(name + "|ours|" + label, ours, clock);
    add(name + "|floor", floor, clock);
}

/// @param microseconds  at most so long is what we want
inline void row_within(const std::string& name, Work ours, double microseconds,
                       Clock clock = Clock::processor) {
    char label[64];
    std::snprintf(label, sizeof label, "%g us", microseconds);
    add(name + "|ours|" + label, ours, clock);
}

/// A row of memory: the works say in the counter "megabytes" what they took.
/// @param more  at most so many megabytes above the floor is what we want
inline void row_of_memory(const std::string& name, Work ours, Work floor, double more) {
    char label[64];
    std::snprintf(label, sizeof label, "%g MB", more);
    add(name + "|ours|" + label, ours, Clock::wall)->Iterations(1);
    add(name + "|floor", floor, Clock::wall)->Iterations(1);
}

} // namespace tarvello::bench
