#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace caudalis::testing {

/// The database engines that the persistence tests run on, each through its own test context.
enum class TestEngine { Sqlite, Postgresql };

/// "SQLite" or "PostgreSQL", as test names show it.
std::string engineName(TestEngine engine);

/// How GoogleTest prints an engine.
inline void PrintTo(TestEngine engine, std::ostream* out) {
    *out << engineName(engine);
}

/// Every engine, for value-parameterised tests.
inline auto allEngines() {
    return ::testing::Values(TestEngine::Sqlite, TestEngine::Postgresql);
}

/// Names a test instance after its engine.
struct EngineNamer {
    std::string operator()(const ::testing::TestParamInfo<TestEngine>& info) const {
        return engineName(info.param);
    }
};

}  // namespace caudalis::testing
