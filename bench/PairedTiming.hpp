#pragma once

#include <benchmark/benchmark.h>

#include <ctime>

namespace caudalis::bench {

/// CPU time used so far by the calling thread, in nanoseconds.
inline double threadCpuNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// A library operation timed side by side with its yardstick in the same iteration, so that
/// both see the same machine state; reports both per unit of work and their ratio.
/// Both sides are timed by `clock` (in nanoseconds), the calling thread's CPU time unless told.
class PairedTiming {
public:
    using Clock = double (*)();

    template <class Work>
    void library(Work&& work, Clock clock = &threadCpuNanoseconds) {
        library_ += timed(work, clock);
    }
    template <class Work>
    void yardstick(Work&& work, Clock clock = &threadCpuNanoseconds) {
        yardstick_ += timed(work, clock);
    }
    /// Counts the units of work (outlets, nozzles, sprinklers) both sides did.
    void addUnits(double units) { units_ += units; }

    /// Sets the counters `library_ns`, `yardstick_ns` (per unit) and `ratio`.
    void report(benchmark::State& state) const {
        const double units = units_ > 0 ? units_ : 1.0;
        state.counters["library_ns"] = library_ / units;
        state.counters["yardstick_ns"] = yardstick_ / units;
        state.counters["ratio"] = yardstick_ > 0 ? library_ / yardstick_ : 0.0;
    }

private:
    template <class Work>
    static double timed(Work& work, Clock clock) {
        const double start = clock();
        work();
        return clock() - start;
    }

    double library_ = 0;
    double yardstick_ = 0;
    double units_ = 0;
};

}  // namespace caudalis::bench
