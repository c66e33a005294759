#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "BenchCharts.hpp"
#include "PairedTiming.hpp"
#include "SqliteStatementCapture.hpp"
#include "TemporaryFolder.hpp"
#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

/// The shipped data folder of the source tree.
std::filesystem::path shippedData(const std::string& relative) {
    return std::filesystem::path(CAUDALIS_SOURCE_DIR) / "data" / relative;
}

/// A project and a catalogue database made from the shipped schemas (with the sample pipe
/// materials and catalogue) in a folder of the temporary directory, removed afterwards.
class BenchDatabases {
public:
    BenchDatabases() {
        create(projectFile(), {"schema/project.sql", "sample/pipe-materials.sql"});
        create(catalogueFile(), {"schema/catalogue.sql", "sample/catalogue-data.sql"});
    }

    std::string projectFile() const { return (folder_.path() / "project.db").string(); }
    std::string catalogueFile() const { return (folder_.path() / "catalogue.db").string(); }
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

    testing::TemporaryFolder folder_;
};

using bench::chartOf;
using bench::SqliteStatementCapture;

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

/// The yardstick of chart persistence: the captured statement texts run on a connection of its
/// own, each prepared, stepped to the end with every column of every row read, and finalized.
class RawStatements {
public:
    RawStatements(std::string file, std::vector<std::string> statements)
        : file_(std::move(file)), statements_(std::move(statements)) {}

    void run() const {
        sqlite3* db = nullptr;
        sqlite3_open_v2(file_.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI,
                        nullptr);
        for (const std::string& sql : statements_) {
            runOne(db, sql);
        }
        sqlite3_close_v2(db);
    }

    /// Prepares `sql`, steps it to the end reading every row, and finalizes it.
    static void runOne(sqlite3* db, const std::string& sql) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size() + 1), &statement, nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW) {
            readRow(statement);
        }
        sqlite3_finalize(statement);
    }

private:
    static void readRow(sqlite3_stmt* statement) {
        for (int column = 0; column < sqlite3_data_count(statement); ++column) {
            switch (sqlite3_column_type(statement, column)) {
                case SQLITE_INTEGER:
                    benchmark::DoNotOptimize(sqlite3_column_int64(statement, column));
                    break;
                case SQLITE_FLOAT:
                    benchmark::DoNotOptimize(sqlite3_column_double(statement, column));
                    break;
                case SQLITE_NULL:
                    break;
                default:
                    benchmark::DoNotOptimize(
                        std::string(static_cast<const char*>(sqlite3_column_blob(statement, column)),
                                    static_cast<std::size_t>(sqlite3_column_bytes(statement, column))));
            }
        }
    }

    std::string file_;
    std::vector<std::string> statements_;
};

/// The prepared yardstick of chart persistence: the captured statements run as `RawStatements`
/// does (on a connection with the catalogue attached as the library attaches it), except the
/// rows of the mounted sprinklers, which go through ONE prepared INSERT with their four numbers
/// bound per row.
class PreparedRawStatements {
public:
    PreparedRawStatements(std::string file, std::string catalogue, const std::vector<std::string>& statements)
        : file_(std::move(file)), catalogue_(std::move(catalogue)) {
        for (const std::string& sql : statements) {
            std::array<long long, 4> numbers{};
            if (std::sscanf(sql.c_str(),
                            "INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values "
                            "(%lld,%lld,%lld,%lld)",
                            &numbers[0], &numbers[1], &numbers[2], &numbers[3]) == 4) {
                steps_.push_back({{}, numbers});
            } else if (!sql.starts_with("ATTACH")) {
                steps_.push_back({sql, {}});
            }
        }
    }

    void run() const {
        sqlite3* db = nullptr;
        sqlite3_open_v2(file_.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI,
                        nullptr);
        RawStatements::runOne(db, "ATTACH DATABASE '" + catalogue_ + "' AS jet_file_1");
        sqlite3_stmt* row = nullptr;
        sqlite3_prepare_v2(db,
                           "INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (?,?,?,?)",
                           -1, &row, nullptr);
        for (const Step& step : steps_) {
            if (!step.sql.empty()) {
                RawStatements::runOne(db, step.sql);
                continue;
            }
            for (std::size_t i = 0; i < step.numbers.size(); ++i) {
                sqlite3_bind_int64(row, static_cast<int>(i + 1), step.numbers[i]);
            }
            sqlite3_step(row);
            sqlite3_reset(row);
        }
        sqlite3_finalize(row);
        sqlite3_close_v2(db);
    }

private:
    struct Step {
        std::string sql;
        std::array<long long, 4> numbers;
    };

    std::string file_;
    std::string catalogue_;
    std::vector<Step> steps_;
};

/// A chart of 600 sprinklers with databases to save it in and find it from, and the statement
/// texts SQLite runs for that.
class ChartRoundTrip {
public:
    ChartRoundTrip() : chart_(chartOf(600, AspersoresStatic().find(databases_.catalogueConnection()))) {}

    void save() { charts_.saveAsNew(databases_.projectConnection(), ++system_, *chart_); }
    void find() const {
        benchmark::DoNotOptimize(charts_.find(databases_.projectConnection(), databases_.catalogueFile(),
                                              static_cast<Integer>(chart_->id())));
    }
    /// The statements `work` makes SQLite run.
    template <class Work>
    static std::vector<std::string> statementsOf(Work&& work) {
        const SqliteStatementCapture capture;
        work();
        return capture.statements();
    }
    const BenchDatabases& databases() const noexcept { return databases_; }

private:
    BenchDatabases databases_;
    std::shared_ptr<CartaAspersores> chart_;
    CartaAspersoresStatic charts_;
    Long system_ = 0;
};

/// `saveAsNew` and `find` of a chart of 600 sprinklers beside raw SQLite running the statement
/// texts that the first save and find ran.
void BM_ChartSaveAndFindAgainstRawSqlite(benchmark::State& state) {
    ChartRoundTrip trip;
    const auto saveStatements = ChartRoundTrip::statementsOf([&] { trip.save(); });
    const auto findStatements = ChartRoundTrip::statementsOf([&] { trip.find(); });
    const RawStatements rawSave(trip.databases().projectFile(), saveStatements);
    const RawStatements rawFind(trip.databases().projectFile(), findStatements);
    bench::PairedTiming timing;
    for (auto _ : state) {
        timing.library([&] {
            trip.save();
            trip.find();
        });
        timing.yardstick([&] {
            rawSave.run();
            rawFind.run();
        });
        timing.addUnits(1);
    }
    timing.report(state);
    state.counters["statements"] = static_cast<double>(saveStatements.size() + findStatements.size());
}
BENCHMARK(BM_ChartSaveAndFindAgainstRawSqlite)->Unit(benchmark::kMillisecond);

/// `saveAsNew` and `find` of a chart of 600 sprinklers beside raw SQLite with one prepared
/// statement bound per sprinkler row.
void BM_ChartSaveAndFindAgainstPreparedSqlite(benchmark::State& state) {
    ChartRoundTrip trip;
    const auto statements = ChartRoundTrip::statementsOf([&] {
        trip.save();
        trip.find();
    });
    const PreparedRawStatements prepared(trip.databases().projectFile(), trip.databases().catalogueFile(),
                                         statements);
    bench::PairedTiming timing;
    for (auto _ : state) {
        timing.library([&] {
            trip.save();
            trip.find();
        });
        timing.yardstick([&] { prepared.run(); });
        timing.addUnits(1);
    }
    timing.report(state);
}
BENCHMARK(BM_ChartSaveAndFindAgainstPreparedSqlite)->Unit(benchmark::kMillisecond);

/// A stored chart computed again (`StoredChartDesign::rebuild`: the chart and its design read
/// back, the machine computed with the stored nozzles), beside its yardstick, the design run
/// of the same file that chose those nozzles.
void BM_RebuildStoredChartAgainstDesignRun(benchmark::State& state) {
    BenchDatabases databases;
    const auto text = design::readTextFile(
        (std::filesystem::path(CAUDALIS_SOURCE_DIR) / "examples/designs/realistic.json").string(),
        "design file");
    const auto description = design::DesignFile::parse(text, "realistic.json");
    design::InMemoryNozzleSource source(AspersoresStatic().find(databases.catalogueConnection()));
    const auto designed = design::DesignRunner().run(description, source);
    CartaAspersoresStatic().saveAsNew(databases.projectConnection(), 1, *designed.chart);
    auto figures = design::ChartFigures::of(designed);
    figures.design = text;
    Connection project(databases.projectConnection());
    project.Open();
    design::ChartFigures::save(project, designed.chart->id(), figures);
    project.Close();
    bench::PairedTiming timing;
    for (auto _ : state) {
        timing.library([&] {
            benchmark::DoNotOptimize(design::StoredChartDesign::rebuild(
                databases.projectConnection(), databases.catalogueFile(), designed.chart->id()));
        });
        timing.yardstick([&] { benchmark::DoNotOptimize(design::DesignRunner().run(description, source)); });
        timing.addUnits(static_cast<double>(designed.outlets.size()));
    }
    timing.report(state);
}
BENCHMARK(BM_RebuildStoredChartAgainstDesignRun)->Unit(benchmark::kMillisecond);

}  // namespace
