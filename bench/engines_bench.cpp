// Chart storage on each engine: the embedded SQLite file is the yardstick for a PostgreSQL
// server on the loopback address (the tests' throwaway server, started for the run), and libpq
// with a prepared statement is the yardstick of the PostgreSQL engine itself.
#include <benchmark/benchmark.h>
#include <libpq-fe.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "BenchCharts.hpp"
#include "PairedTiming.hpp"
#include "PersistenceDatabases.hpp"
#include "SqliteStatementCapture.hpp"
#include "caudalis/caudalis.hpp"
#include "caudalis/db/PostgresConnectionString.hpp"

namespace {

using namespace caudalis;
using caudalis::testing::PersistenceDatabases;
using caudalis::testing::TestEngine;

/// The databases of `engine`, or nothing (with the reason given to `state`) when the engine
/// cannot be had, as when PostgreSQL's server programs are not installed.
std::unique_ptr<PersistenceDatabases> databasesOf(benchmark::State& state, TestEngine engine) {
    try {
        return std::make_unique<PersistenceDatabases>(engine);
    } catch (const std::runtime_error& error) {
        std::fprintf(stderr, "skipped: no PostgreSQL server: %s\n", error.what());
        state.SkipWithError("no PostgreSQL server could be started (see the message above)");
        return nullptr;
    }
}

/// saveAsNew of a 600-sprinkler chart under a new system, then find of it with its nozzles
/// joined from the catalogue.
class ChartTrip {
public:
    explicit ChartTrip(const PersistenceDatabases& databases)
        : databases_(databases),
          chart_(bench::chartOf(600, AspersoresStatic().find(databases.catalogueConnection()))) {}

    /// False when the chart did not come back whole.
    bool run() {
        charts_.saveAsNew(databases_.projectConnection(), ++system_, *chart_);
        const auto found = charts_.find(databases_.projectConnection(), databases_.cataloguePath(),
                                        static_cast<Integer>(chart_->id()));
        return found->mountedAspersores()->Count() == 600;
    }

private:
    const PersistenceDatabases& databases_;
    std::shared_ptr<CartaAspersores> chart_;
    CartaAspersoresStatic charts_;
    Long system_ = 0;
};

void BM_SaveAsNewAndFindChartOf600Sprinklers(benchmark::State& state, TestEngine engine) {
    const auto databases = databasesOf(state, engine);
    if (!databases) {
        return;
    }
    ChartTrip trip(*databases);
    for (auto _ : state) {
        if (!trip.run()) {
            state.SkipWithError("the chart did not come back whole");
        }
    }
    state.SetItemsProcessed(state.iterations() * 600);
}
BENCHMARK_CAPTURE(BM_SaveAsNewAndFindChartOf600Sprinklers, SQLite, TestEngine::Sqlite)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SaveAsNewAndFindChartOf600Sprinklers, PostgreSQL, TestEngine::Postgresql)
    ->Unit(benchmark::kMillisecond);

/// The prepared yardstick on PostgreSQL: the statements a save and a find of the chart make
/// SQLite run, run through libpq on a connection of its own to the project schema (the
/// catalogue's attached file becoming the catalogue's schema), except the rows of the mounted
/// sprinklers, which go through ONE prepared INSERT with their four numbers bound per row.
class PreparedLibpqStatements {
public:
    PreparedLibpqStatements(const std::string& project, const std::string& catalogue,
                            const std::vector<std::string>& sqliteStatements) {
        const auto server = PostgresConnectionString::parse(project);
        conninfo_ = server->conninfo();
        searchPath_ = "SET search_path TO \"" + server->schema().value_or("public") + "\"";
        const std::string catalogueSchema =
            "\"" + PostgresConnectionString::parse(catalogue)->schema().value_or("public") + "\".";
        for (const std::string& sql : sqliteStatements) {
            add(sql, catalogueSchema);
        }
    }

    /// The number of statements that failed (none when the yardstick does what the library did).
    int run() const {
        PGconn* connection = PQconnectdb(conninfo_.c_str());
        int failures = check(PQexec(connection, searchPath_.c_str()));
        failures += check(PQprepare(connection, "row",
                                    "INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values "
                                    "($1,$2,$3,$4)",
                                    4, nullptr));
        for (const Step& step : steps_) {
            if (!step.sql.empty()) {
                failures += check(PQexec(connection, step.sql.c_str()));
                continue;
            }
            std::array<std::array<char, 24>, 4> texts{};
            std::array<const char*, 4> values{};
            for (std::size_t i = 0; i < texts.size(); ++i) {
                std::snprintf(texts[i].data(), texts[i].size(), "%lld", step.numbers[i]);
                values[i] = texts[i].data();
            }
            failures += check(PQexecPrepared(connection, "row", 4, values.data(), nullptr, nullptr, 0));
        }
        PQfinish(connection);
        return failures;
    }

private:
    struct Step {
        std::string sql;
        std::array<long long, 4> numbers;
    };

    void add(const std::string& sql, const std::string& catalogueSchema) {
        std::array<long long, 4> numbers{};
        if (std::sscanf(
                sql.c_str(),
                "INSERT INTO tb_aspersores (tramo,saida,id_aspersor,id_carta) values (%lld,%lld,%lld,%lld)",
                &numbers[0], &numbers[1], &numbers[2], &numbers[3]) == 4) {
            steps_.push_back({{}, numbers});
        } else if (sql.starts_with("BEGIN")) {
            steps_.push_back({"BEGIN", {}});
        } else if (!sql.starts_with("ATTACH") && !sql.starts_with("DETACH") && !sql.starts_with("PRAGMA")) {
            std::string text = withTruthValues(sql);
            for (auto at = text.find(attachedName); at != std::string::npos;
                 at = text.find(attachedName, at)) {
                text.replace(at, attachedName.size(), catalogueSchema);
            }
            steps_.push_back({text, {}});
        }
    }

    /// `sql` with the `installed` flag, which the embedded engine keeps as 1 or 0, written as
    /// PostgreSQL's boolean (the only column of the chart's tables whose values differ).
    static std::string withTruthValues(const std::string& sql) {
        const auto column = sql.find(",installed");
        const auto values = sql.find("VALUES (");
        if (column == std::string::npos || values == std::string::npos) {
            return sql;
        }
        const auto commasBefore = [](std::string_view text) {
            return std::count(text.begin(), text.end(), ',');
        };
        const auto position = commasBefore(std::string_view(sql).substr(0, column + 1).substr(sql.find('(')));
        std::size_t at = values + 8;
        for (long i = 0; i < position; ++i) {
            at = sql.find(',', at) + 1;
        }
        const std::size_t end = sql.find_first_of(",)", at);
        const bool set = std::string_view(sql).substr(at, end - at).find('1') != std::string_view::npos;
        return sql.substr(0, at) + (set ? "true" : "false") + sql.substr(end);
    }

    /// 1 when `result` is not a success, 0 when it is; clears it.
    static int check(PGresult* result) {
        const ExecStatusType status = PQresultStatus(result);
        if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) {
            std::fprintf(stderr, "yardstick statement failed: %s", PQresultErrorMessage(result));
        }
        for (int row = 0; row < PQntuples(result); ++row) {
            for (int column = 0; column < PQnfields(result); ++column) {
                benchmark::DoNotOptimize(
                    std::string(PQgetvalue(result, row, column),
                                static_cast<std::size_t>(PQgetlength(result, row, column))));
            }
        }
        PQclear(result);
        return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK ? 0 : 1;
    }

    static constexpr std::string_view attachedName = "jet_file_1.";
    std::string conninfo_;
    std::string searchPath_;
    std::vector<Step> steps_;
};

/// The statements a save and a find of the chart make SQLite run.
std::vector<std::string> sqliteStatementsOfATrip() {
    const PersistenceDatabases sqlite(TestEngine::Sqlite);
    ChartTrip trip(sqlite);
    const bench::SqliteStatementCapture capture;
    trip.run();
    return capture.statements();
}

/// `saveAsNew` and `find` of a chart of 600 sprinklers on PostgreSQL beside libpq with one
/// prepared statement bound per sprinkler row.
void BM_ChartSaveAndFindAgainstPreparedLibpq(benchmark::State& state) {
    const auto databases = databasesOf(state, TestEngine::Postgresql);
    if (!databases) {
        return;
    }
    const PreparedLibpqStatements prepared(databases->projectConnection(), databases->catalogueConnection(),
                                           sqliteStatementsOfATrip());
    ChartTrip trip(*databases);
    bench::PairedTiming timing;
    int failures = 0;
    for (auto _ : state) {
        timing.library([&] { failures += trip.run() ? 0 : 1; });
        timing.yardstick([&] { failures += prepared.run(); });
        timing.addUnits(1);
    }
    if (failures > 0) {
        state.SkipWithError("a statement failed or the chart did not come back whole");
    }
    timing.report(state);
}
BENCHMARK(BM_ChartSaveAndFindAgainstPreparedLibpq)->Unit(benchmark::kMillisecond);

}  // namespace
