#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <system_error>

#include "caudalis/caudalis.hpp"

namespace {

using namespace caudalis;

/// A database file in the temporary directory, removed afterwards.
class BenchDatabase {
public:
    BenchDatabase()
        : path_(std::filesystem::temp_directory_path() /
                ("caudalis-bench-" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + ".db")) {}
    ~BenchDatabase() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    BenchDatabase(const BenchDatabase&) = delete;
    BenchDatabase& operator=(const BenchDatabase&) = delete;

    std::string connectionString() const { return "Provider=SQLite;Data Source=" + path_.string(); }

private:
    std::filesystem::path path_;
};

void BM_InsertRowsInOneTransaction(benchmark::State& state) {
    BenchDatabase file;
    Connection con(file.connectionString());
    con.Open();
    con.Execute(
        "CREATE TABLE tb_reguladores (id INTEGER PRIMARY KEY, id_carta INTEGER, tramo INTEGER, "
        "pression REAL, caudal_max REAL, caudal_min REAL, installed INTEGER)");
    const std::string insert =
        "INSERT INTO tb_reguladores (id_carta,tramo,pression,caudal_max,caudal_min,installed) VALUES "
        "(?,?,?,?,?,?);";
    for (auto _ : state) {
        con.BeginTrans();
        for (Long i = 0; i < state.range(0); ++i) {
            std::string sql = insert;
            substituteParams(sql, BoundedArray<Variant>::of({Long{1}, i, sqlDouble(137.9), sqlDouble(2.5),
                                                             sqlDouble(0.1), sqlBoolean(true)}));
            con.Execute(sql);
        }
        con.CommitTrans();
        con.Execute("DELETE FROM tb_reguladores");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_InsertRowsInOneTransaction)->Arg(1000)->Unit(benchmark::kMillisecond);

void BM_SubstituteParams(benchmark::State& state) {
    const auto params =
        BoundedArray<Variant>::of({"'R3000'", sqlDouble(0.5), sqlDouble(1.25), sqlDouble(3.75),
                                   sqlDouble(0.48), sqlDouble(100.0), sqlDouble(300.0), Long{12}});
    for (auto _ : state) {
        std::string sql =
            "INSERT INTO Boquillas (denominacion,pmin,pmax,a,b,qmin,qmax,id_modelo)VALUES (?,?,?,?,?,?,?,?);";
        benchmark::DoNotOptimize(substituteParams(sql, params));
    }
}
BENCHMARK(BM_SubstituteParams);

void BM_SelectAndReadRows(benchmark::State& state) {
    Connection con(":memory:");
    con.Open();
    con.Execute("CREATE TABLE t (id INTEGER PRIMARY KEY, name TEXT, amount REAL)");
    con.BeginTrans();
    for (Long i = 0; i < state.range(0); ++i) {
        con.Execute("INSERT INTO t (name, amount) VALUES ('row', " + sqlDouble(i * 0.5) + ")");
    }
    con.CommitTrans();
    for (auto _ : state) {
        double total = 0.0;
        for (auto rs = con.Execute("SELECT name, amount FROM t;"); !rs->EOF_(); rs->MoveNext()) {
            total += rs->Fields("amount").toDouble();
        }
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_SelectAndReadRows)->Arg(1000);

}  // namespace
