#include <gtest/gtest.h>

#include <signal.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "PersistenceDatabases.hpp"
#include "PostgresTestServer.hpp"
#include "ProgramRun.hpp"
#include "SampleNozzles.hpp"
#include "TemporaryFolder.hpp"
#include "TestEngine.hpp"
#include "caudalis/db/Connection.hpp"

// A save of the command line that is cut short anywhere (the process killed after any of its
// statements, or at a random moment, or the PostgreSQL server stopped under it) leaves either the
// whole chart with its figures and design file or nothing of it, and the next save of the same
// name does what it would have done anyway.
using namespace caudalis;
using namespace caudalis::cli::clitest;
using caudalis::testing::PostgresTestServer;
using caudalis::testing::TemporaryFolder;
using caudalis::testing::TestEngine;

namespace {

using std::chrono::microseconds;

/// How a run of the program ended.
struct Ending {
    bool killed = false;
    int exitCode = -1;
    std::string err;
};

/// A run of the program in the background.
class Running {
public:
    Running(const std::filesystem::path& folder, const std::string& arguments, const std::string& environment)
        : err_(folder / ".stderr") {
        const std::string command = "cd '" + folder.string() + "' && exec env " + environment + " '" +
                                    CAUDALIS_CLI_EXECUTABLE + "' " + arguments + " >/dev/null 2>'" +
                                    err_.string() + "' </dev/null";
        pid_ = ::fork();
        if (pid_ == 0) {
            ::execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
            ::_exit(127);
        }
    }

    void kill() const { ::kill(pid_, SIGKILL); }

    Ending wait() const {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        Ending ending;
        ending.killed = WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
        ending.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        ending.err = readFile(err_);
        return ending;
    }

private:
    std::filesystem::path err_;
    pid_t pid_ = -1;
};

/// What a command saves: the command (before its databases and --save), the table of the
/// saved things with their key and name columns, and the tables of their rows, each with the
/// column that holds the key.
struct Saved {
    std::string command;
    std::string table;
    std::string key;
    std::string name;
    std::map<std::string, std::string> rows;
};

/// A chart with its figures and design file.
Saved chart() {
    return {"design '" + caudalis::testing::sourcePath("examples/designs/small.json") + "'",
            "tb_cartas",
            "id_carta",
            "nome",
            {{"tb_aspersores", "id_carta"},
             {"tb_indicadores", "id_carta"},
             {"tb_pluviometria", "id_carta"},
             {"tb_reguladores", "id_carta"},
             {"tb_drop", "carta_id"},
             {"chart_speed_table", "id_carta"},
             {"chart_outlet_figures", "id_carta"},
             {"chart_design", "id_carta"}}};
}

/// A field evaluation with its figures.
Saved evaluation() {
    return {"evaluate '" + caudalis::testing::sourcePath("examples/evaluations/north-2024.txt") +
                "' --gauge-diameter 0.1",
            "pivot_evaluations",
            "id",
            "name",
            {{"pivot_evaluation_figures", "evaluation_id"}}};
}

/// Rows per chart id, per table.
using RowCounts = std::map<std::string, std::map<long, long>>;

/// A project and a catalogue database of one engine, the program's arguments that name them,
/// and the checks of a project database after an interrupted save.
class SaveTarget {
public:
    SaveTarget(TestEngine engine, const std::string& server, Saved saved = chart())
        : saved_(std::move(saved)), engine_(engine) {
        if (engine == TestEngine::Sqlite) {
            project_ = "Provider=SQLite;Data Source=" + folder.file("project.db");
            catalogue_ = "Provider=SQLite;Data Source=" + folder.file("catalogue.db");
            catalogueArgument_ = " --catalogue catalogue.db";
            arguments_ = " --project project.db" + catalogueArgument_;
            return;
        }
        static std::atomic<int> counter{0};
        const std::string suffix = std::to_string(::getpid()) + "_" + std::to_string(++counter);
        const auto start = server.find("port=") + 5;
        const std::string port = server.substr(start, server.find(' ', start) - start);
        const std::string uri = "postgresql://caudalis@127.0.0.1:" + port + "/postgres?schema=";
        schemas_ = {"killed_project_" + suffix, "killed_catalogue_" + suffix};
        server_ = server;
        project_ = uri + schemas_[0];
        catalogue_ = uri + schemas_[1];
        catalogueArgument_ = " --catalogue '" + catalogue_ + "'";
        arguments_ = " --project '" + project_ + "'" + catalogueArgument_;
    }

    ~SaveTarget() {
        for (const auto& schema : schemas_) {
            try {
                caudalis::testing::executeOn(server_ + " dbname=postgres",
                                             "DROP SCHEMA IF EXISTS " + schema + " CASCADE");
            } catch (...) {
                // The server is thrown away after the tests anyway.
            }
        }
    }
    SaveTarget(const SaveTarget&) = delete;
    SaveTarget& operator=(const SaveTarget&) = delete;

    Running save(const std::string& name, const std::string& environment = "") const {
        const std::string save =
            saved_.table == "tb_cartas" ? " --save '" + name + "'" : " --name '" + name + "' --save";
        return Running(folder.path(), saved_.command + arguments_ + save, environment);
    }

    /// `catalogue import FILE` into the catalogue.
    Running import(const std::string& file, const std::string& environment) const {
        return Running(folder.path(), "catalogue import '" + file + "'" + catalogueArgument_, environment);
    }

    /// The numbers of brands, models and nozzles of the catalogue.
    std::vector<long> catalogueCounts() const {
        Connection con(catalogue_);
        con.Open();
        std::vector<long> counts;
        for (const char* table : {"marca", "Modelos", "Boquillas"}) {
            counts.push_back(
                con.Execute(std::string("SELECT count(*) AS n FROM ") + table)->Fields("n").toLong());
        }
        return counts;
    }

    Ending init() const { return Running(folder.path(), "init" + arguments_, "").wait(); }

    RowCounts rowCounts() const {
        Connection con(project_);
        con.Open();
        RowCounts counts;
        for (const auto& [table, key] : saved_.rows) {
            auto& ofTable = counts[table];
            for (auto rs = con.Execute("SELECT " + key + " AS id, count(*) AS n FROM " + table +
                                       " GROUP BY " + key);
                 !rs->EOF_(); rs->MoveNext()) {
                ofTable[rs->Fields("id").toLong()] = rs->Fields("n").toLong();
            }
        }
        return counts;
    }

    /// The saved things by name, with their keys.
    std::map<std::string, long> stored() const {
        Connection con(project_);
        con.Open();
        std::map<std::string, long> named;
        for (auto rs = con.Execute("SELECT " + saved_.name + " AS name, " + saved_.key + " AS id FROM " +
                                   saved_.table);
             !rs->EOF_(); rs->MoveNext()) {
            named[rs->Fields("name").toString()] = rs->Fields("id").toLong();
        }
        return named;
    }

    /// What is wrong with the project database ("" when nothing): a chart whose rows differ in
    /// number from those of the complete chart `reference`, rows of no chart, and on SQLite a
    /// failed integrity check.
    std::string problems(long reference) const {
        std::string found = integrity();
        const RowCounts counts = rowCounts();
        std::set<long> ids;
        for (const auto& [name, id] : stored()) {
            ids.insert(id);
            for (const auto& [table, perChart] : counts) {
                const auto at = [&](long chart) { return perChart.count(chart) ? perChart.at(chart) : 0L; };
                if (at(id) != at(reference)) {
                    found += "chart " + name + " has " + std::to_string(at(id)) + " rows in " + table + "; ";
                }
            }
        }
        for (const auto& [table, perChart] : counts) {
            for (const auto& [id, rows] : perChart) {
                if (!ids.count(id)) {
                    found += std::to_string(rows) + " rows of no chart (" + std::to_string(id) + ") in " +
                             table + "; ";
                }
            }
        }
        return found;
    }

    TemporaryFolder folder;

private:
    std::string integrity() const {
        if (engine_ != TestEngine::Sqlite) {
            return {};
        }
        // Opened for writing, as the next user would, so that a journal left by the killed
        // process is rolled back first.
        sqlite3* db = nullptr;
        std::string result = "cannot open";
        if (sqlite3_open_v2(folder.file("project.db").c_str(), &db, SQLITE_OPEN_READWRITE, nullptr) ==
            SQLITE_OK) {
            sqlite3_busy_timeout(db, 5000);
            sqlite3_stmt* check = nullptr;
            sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &check, nullptr);
            result.clear();
            int step = SQLITE_ROW;
            while ((step = sqlite3_step(check)) == SQLITE_ROW) {
                result += reinterpret_cast<const char*>(sqlite3_column_text(check, 0));
            }
            if (step != SQLITE_DONE) {
                result += std::string("(") + sqlite3_errmsg(db) + ")";
            }
            sqlite3_finalize(check);
        }
        sqlite3_close(db);
        return result == "ok" ? std::string() : "integrity check: " + result + "; ";
    }

    Saved saved_;
    TestEngine engine_;
    std::string server_;
    std::string project_;
    std::string catalogue_;
    std::string catalogueArgument_;
    std::string arguments_;
    std::vector<std::string> schemas_;
};

/// The trials of one engine and what they found.
class Trials {
public:
    explicit Trials(const SaveTarget& target) : target_(target) {
        const auto started = std::chrono::steady_clock::now();
        const auto stored = target_.save("Reference").wait();
        duration_ = std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - started);
        EXPECT_EQ(stored.exitCode, 0) << stored.err;
        reference_ = target_.stored().at("Reference");
    }

    /// A save of a new name, cut short by `cut` (given the running program); then the checks,
    /// and the same save again. Whether the program was killed.
    template <class Cut>
    bool trial(const std::string& environment, Cut cut) {
        const std::string name = "Trial " + std::to_string(++trials_);
        const auto running = target_.save(name, environment);
        cut(running);
        const Ending ending = running.wait();
        expectNothingPartial(name, ending);
        kills_ += ending.killed ? 1 : 0;
        return ending.killed;
    }

    /// Checks a project database after `ending`, then saves `name` again.
    void expectNothingPartial(const std::string& name, const Ending& ending) {
        EXPECT_EQ(target_.problems(reference_), "") << name;
        const bool stored = target_.stored().count(name) == 1;
        if (!ending.killed) {
            // A command that reports failure stored nothing; one that succeeded stored it all.
            EXPECT_EQ(stored, ending.exitCode == 0) << name << ": " << ending.err;
        }
        committed_ += stored && ending.killed ? 1 : 0;
        const Ending again = target_.save(name).wait();
        if (stored) {
            EXPECT_NE(again.err.find("already exists"), std::string::npos) << name << ": " << again.err;
        } else {
            EXPECT_EQ(again.exitCode, 0) << name << ": " << again.err;
        }
        EXPECT_EQ(target_.problems(reference_), "") << name << " saved again";
    }

    long kills() const { return kills_; }
    long committed() const { return committed_; }
    microseconds duration() const { return duration_; }

private:
    const SaveTarget& target_;
    long reference_ = 0;
    long trials_ = 0;
    long kills_ = 0;
    long committed_ = 0;
    microseconds duration_{};
};

void noCut(const Running&) {}

class InterruptedSave : public ::testing::TestWithParam<TestEngine> {
protected:
    std::string server =
        GetParam() == TestEngine::Postgresql ? PostgresTestServer::sharedConnection() : std::string();
};

/// Kills saves of `saved` after each statement in turn, then at random (after a random
/// statement, or by SIGKILL at a random moment of the run) until there were `kills` kills and at
/// least `randomKills` of them at random; checks after each. Prints the figures.
void killSaves(TestEngine engine, const std::string& server, const Saved& saved, long kills,
               long randomKills) {
    const SaveTarget target(engine, server, saved);
    const auto init = target.init();
    ASSERT_EQ(init.exitCode, 0) << init.err;
    Trials trials(target);
    ASSERT_FALSE(::testing::Test::HasFailure());

    // Every statement of the save in turn, until the save runs to its end.
    long statements = 0;
    while (trials.trial("CAUDALIS_TEST_KILL_AFTER_STATEMENTS=" + std::to_string(statements + 1), noCut)) {
        ++statements;
        ASSERT_LT(statements, 2000) << "the save never ends";
    }
    const long swept = trials.kills();
    EXPECT_GT(swept, 5);

    std::mt19937 random(27);
    std::uniform_int_distribution<long> statement(1, statements);
    std::uniform_int_distribution<long> moment(0, trials.duration().count() * 6 / 5);
    for (int attempt = 0;
         attempt < 3 * kills && (trials.kills() < kills || trials.kills() - swept < randomKills); ++attempt) {
        if (attempt % 2 == 0) {
            trials.trial("CAUDALIS_TEST_KILL_AFTER_STATEMENTS=" + std::to_string(statement(random)), noCut);
        } else {
            const microseconds wait(moment(random));
            trials.trial("", [&](const Running& running) {
                std::this_thread::sleep_for(wait);
                running.kill();
            });
        }
        ASSERT_FALSE(::testing::Test::HasFailure());
    }
    EXPECT_GE(trials.kills(), kills);
    std::cout << "[ figures  ] " << caudalis::testing::engineName(engine) << ", " << saved.table << ": "
              << statements << " statements a save, " << trials.kills() << " kills (" << swept
              << " one after each statement, " << trials.kills() - swept << " at random), "
              << trials.committed() << " of them after the commit; a save takes "
              << trials.duration().count() / 1000 << " ms\n";
}

}  // namespace

TEST_P(InterruptedSave, KilledAfterAnyStatementOrAtRandomTheChartIsWholeOrAbsent) {
    killSaves(GetParam(), server, chart(), 200, 80);
}

TEST_P(InterruptedSave, KilledAfterAnyStatementOrAtRandomTheEvaluationIsWholeOrAbsent) {
    killSaves(GetParam(), server, evaluation(), 40, 10);
}

TEST_P(InterruptedSave, KilledAfterAnyStatementTheImportIsWholeOrAbsent) {
    const SaveTarget target(GetParam(), server);
    ASSERT_EQ(target.init().exitCode, 0);
    const std::string csv = target.folder.file("new.csv");
    std::ofstream(csv) << "brand,model,nozzle,a,b,pmin,pmax,qmin,qmax\n"
                          "Killbrand,K1,k-1,0.02,0.5,100,400,0.2,0.4\n"
                          "Killbrand,K2,k-2,0.02,0.5,100,400,0.2,0.4\n"
                          "Killbrand,K2,k-3,0.02,0.5,100,400,0.2,0.4\n";
    const auto before = target.catalogueCounts();
    const std::vector<long> whole{before[0] + 1, before[1] + 2, before[2] + 3};
    long kills = 0;
    for (long statement = 1; statement < 500; ++statement) {
        const Ending ending =
            target.import(csv, "CAUDALIS_TEST_KILL_AFTER_STATEMENTS=" + std::to_string(statement)).wait();
        const auto counts = target.catalogueCounts();
        if (!ending.killed) {
            EXPECT_EQ(ending.exitCode, 0) << ending.err;
            EXPECT_EQ(counts, whole);
            break;
        }
        ++kills;
        if (counts == whole) {
            break;  // killed after the commit
        }
        EXPECT_EQ(counts, before) << "killed after statement " << statement;
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(kills, 10);
    std::cout << "[ figures  ] " << caudalis::testing::engineName(GetParam())
              << ", catalogue import of 3 rows: " << kills << " kills, one after each statement\n";
}

INSTANTIATE_TEST_SUITE_P(Engines, InterruptedSave, caudalis::testing::allEngines(),
                         caudalis::testing::EngineNamer());

TEST(InterruptedSaveOnServer, AServerStoppedMidSaveKeepsNoChartOfACommandThatFailed) {
    // A server of this test's own, since it is stopped again and again.
    const TemporaryFolder state;
    const auto stateFile = state.path() / "server";
    PostgresTestServer::start(stateFile);
    struct Stop {
        std::filesystem::path file;
        ~Stop() {
            try {
                PostgresTestServer::stop(file);
            } catch (...) {
                // Nothing more can be done about a server that will not stop.
            }
        }
    } stop{stateFile};
    // The tests' servers trade durability for speed; a stopped server must keep what it
    // committed, as any production server does.
    caudalis::testing::executeOn(PostgresTestServer::connection(stateFile) + " dbname=postgres",
                                 "ALTER DATABASE postgres SET synchronous_commit TO on");
    const SaveTarget target(TestEngine::Postgresql, PostgresTestServer::connection(stateFile));
    const auto init = target.init();
    ASSERT_EQ(init.exitCode, 0) << init.err;
    Trials trials(target);
    ASSERT_FALSE(HasFailure());

    std::mt19937 random(27);
    std::uniform_int_distribution<long> moment(0, trials.duration().count() * 3 / 2);
    long stops = 0;
    long failed = 0;
    long failedStoring = 0;
    for (int trial = 1; trial <= 16; ++trial) {
        const std::string name = "Stopped " + std::to_string(trial);
        const auto running = target.save(name);
        std::this_thread::sleep_for(microseconds(moment(random)));
        PostgresTestServer::halt(stateFile);
        ++stops;
        const Ending ending = running.wait();
        PostgresTestServer::resume(stateFile);
        failed += ending.exitCode != 0 ? 1 : 0;
        failedStoring += ending.err.find("cannot store the chart") != std::string::npos ? 1 : 0;
        trials.expectNothingPartial(name, ending);
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_EQ(stops, 16);
    std::cout << "[ figures  ] PostgreSQL: " << stops << " server stops, " << failed
              << " of the saves failed under them and stored nothing (" << failedStoring
              << " of them while storing the chart)\n";
}
