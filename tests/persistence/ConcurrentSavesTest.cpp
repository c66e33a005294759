#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>

#include "ChartFixture.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/core/Errors.hpp"

using namespace caudalis;
using namespace caudalis::testing;

namespace {

/// How a designer's save ended, as the exit status of the process that made it.
enum SaveOutcome { Stored = 0, NameTaken = 1, OtherError = 2 };

/// Two designers, each a process with its own connections, saving a chart under the same name
/// into one project database at the same moment.
class ConcurrentSaves : public ::testing::TestWithParam<TestEngine>, public ChartFixture {
protected:
    ConcurrentSaves() : ChartFixture(GetParam()) {}

    /// Starts a designer that waits for the start signal on `gate`, saves, and exits with
    /// its outcome.
    pid_t designer(const std::string& name, int gate) const {
        const pid_t child = ::fork();
        if (child != 0) {
            return child;
        }
        char signal = 0;
        const bool started = ::read(gate, &signal, 1) == 1;
        auto chart = fullChart(name);
        int outcome = OtherError;
        try {
            if (started) {
                saveAsNew(*chart);
                outcome = Stored;
            }
        } catch (const Error& error) {
            outcome = error.number() == errorNumber(CartaExceptions::NomeDaCartaJaExistente) ? NameTaken
                                                                                             : OtherError;
        }
        ::_exit(outcome);
    }

    static int outcomeOf(pid_t child) {
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : OtherError;
    }

    /// The outcomes of two simultaneous saves of a chart named `name`, in no particular order.
    std::array<int, 2> saveTwiceAtOnce(const std::string& name) const {
        std::array<int, 2> gate{};
        EXPECT_EQ(::pipe(gate.data()), 0);
        const std::array<pid_t, 2> designers{designer(name, gate[0]), designer(name, gate[0])};
        EXPECT_EQ(::write(gate[1], "go", 2), 2);
        ::close(gate[0]);
        ::close(gate[1]);
        return {outcomeOf(designers[0]), outcomeOf(designers[1])};
    }
};

TEST_P(ConcurrentSaves, OneDesignerStoresTheChartAndTheOtherHearsTheNameIsTaken) {
    constexpr int rounds = 6;
    for (int round = 1; round <= rounds; ++round) {
        const std::string name = "North field " + std::to_string(round);
        const auto outcomes = saveTwiceAtOnce(name);
        EXPECT_EQ(outcomes[0] + outcomes[1], Stored + NameTaken) << name;
        EXPECT_NE(outcomes[0], outcomes[1]) << name;
        EXPECT_EQ(databases.projectNumber("SELECT count(*) FROM tb_cartas WHERE nome='" + name + "'"), 1)
            << name;
    }
    const double charts = databases.projectNumber("SELECT count(*) FROM tb_cartas");
    EXPECT_EQ(charts, rounds);
    EXPECT_EQ(databases.projectNumber("SELECT count(*) FROM tb_indicadores"), charts);
    EXPECT_EQ(databases.projectNumber("SELECT count(*) FROM tb_aspersores"), 3 * charts);
}

INSTANTIATE_TEST_SUITE_P(Engines, ConcurrentSaves, allEngines(), EngineNamer());

}  // namespace
