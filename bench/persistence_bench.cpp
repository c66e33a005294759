#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <system_error>

#include "BenchCharts.hpp"
#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

/// The shipped data folder of the source tree.
std::filesystem::path shippedData(const std::string& relative) {
    return std::filesystem::path(__FILE__).parent_path().parent_path() / "data" / relative;
}

/// A project and a catalogue database made from the shipped schemas (with the sample pipe
/// materials and catalogue) in a folder of the temporary directory, removed afterwards.
class BenchDatabases {
public:
    BenchDatabases()
        : folder_(std::filesystem::temp_directory_path() /
                  ("caudalis-persistence-bench-" +
                   std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()))) {
        std::filesystem::create_directories(folder_);
        create(projectFile(), {"schema/project.sql", "sample/pipe-materials.sql"});
        create(catalogueFile(), {"schema/catalogue.sql", "sample/catalogue-data.sql"});
    }
    ~BenchDatabases() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    BenchDatabases(const BenchDatabases&) = delete;
    BenchDatabases& operator=(const BenchDatabases&) = delete;

    std::string projectFile() const { return (folder_ / "project.db").string(); }
    std::string catalogueFile() const { return (folder_ / "catalogue.db").string(); }
    std::string projectConnection() const { return "Provider=SQLite;Data Source=" + projectFile(); }
    std::string catalogueConnection() const { return "Provider=SQLite;Data Source=" + catalogueFile(); }

private:
    static void create(const std::string& file, std::initializer_list<const char*> scripts) {
        Connection con("Provider=SQLite;Data Source=" + file);
        con.Open();
        for (const char* script : scripts) {
            runScriptFile(con, shippedData(script));
        }
    }

    std::filesystem::path folder_;
};

using bench::chartOf;

void BM_SaveAsNewChartOf600Sprinklers(benchmark::State& state) {
    BenchDatabases databases;
    const auto catalogue = AspersoresStatic().find(databases.catalogueConnection());
    auto chart = chartOf(600, catalogue);
    CartaAspersoresStatic charts;
    Long system = 0;
    for (auto _ : state) {
        charts.saveAsNew(databases.projectConnection(), ++system, *chart);
    }
    state.SetItemsProcessed(state.iterations() * 600);
}
BENCHMARK(BM_SaveAsNewChartOf600Sprinklers)->Unit(benchmark::kMillisecond);

void BM_FindChartOf600Sprinklers(benchmark::State& state) {
    BenchDatabases databases;
    const auto catalogue = AspersoresStatic().find(databases.catalogueConnection());
    auto chart = chartOf(600, catalogue);
    CartaAspersoresStatic charts;
    charts.saveAsNew(databases.projectConnection(), 1, *chart);
    const auto id = static_cast<Integer>(chart->id());
    for (auto _ : state) {
        benchmark::DoNotOptimize(charts.find(databases.projectConnection(), databases.catalogueFile(), id));
    }
    state.SetItemsProcessed(state.iterations() * 600);
}
BENCHMARK(BM_FindChartOf600Sprinklers)->Unit(benchmark::kMillisecond);

void BM_FindWholeCatalogue(benchmark::State& state) {
    BenchDatabases databases;
    AspersoresStatic catalogue;
    for (auto _ : state) {
        benchmark::DoNotOptimize(catalogue.find(databases.catalogueConnection()));
    }
}
BENCHMARK(BM_FindWholeCatalogue)->Unit(benchmark::kMillisecond);

}  // namespace
