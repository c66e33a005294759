// Chart storage on each engine: the embedded SQLite file is the yardstick for a PostgreSQL
// server on the loopback address (the tests' throwaway server, started for the run).
#include <benchmark/benchmark.h>

#include "BenchCharts.hpp"
#include "PersistenceDatabases.hpp"
#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;
using caudalis::testing::TestEngine;

/// saveAsNew of a 600-sprinkler chart under a new system, then find of it with its nozzles
/// joined from the catalogue.
void BM_SaveAsNewAndFindChartOf600Sprinklers(benchmark::State& state, TestEngine engine) {
    const caudalis::testing::PersistenceDatabases databases(engine);
    const auto chart = bench::chartOf(600, AspersoresStatic().find(databases.catalogueConnection()));
    CartaAspersoresStatic charts;
    Long system = 0;
    for (auto _ : state) {
        charts.saveAsNew(databases.projectConnection(), ++system, *chart);
        const auto found = charts.find(databases.projectConnection(), databases.cataloguePath(),
                                       static_cast<Integer>(chart->id()));
        if (found->mountedAspersores()->Count() != 600) {
            state.SkipWithError("the chart did not come back whole");
        }
    }
    state.SetItemsProcessed(state.iterations() * 600);
}
BENCHMARK_CAPTURE(BM_SaveAsNewAndFindChartOf600Sprinklers, SQLite, TestEngine::Sqlite)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveAsNewAndFindChartOf600Sprinklers, PostgreSQL, TestEngine::Postgresql)
    ->Unit(benchmark::kMillisecond);

}  // namespace
