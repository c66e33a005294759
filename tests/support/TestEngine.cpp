#include "TestEngine.hpp"

namespace caudalis::testing {

std::string engineName(TestEngine engine) {
    return engine == TestEngine::Sqlite ? "SQLite" : "PostgreSQL";
}

}  // namespace caudalis::testing
