#include "ServiceDatabases.hpp"

#include <unistd.h>

#include <atomic>

#include "PersistenceDatabases.hpp"
#include "PostgresTestServer.hpp"
#include "ShippedDatabases.hpp"
#include "caudalis/project/CatalogueDatabaseNozzleSource.hpp"
#include "caudalis/project/DatabaseChartStore.hpp"

namespace caudalis::testing {

namespace {

/// The number after "port=" in a key=value connection string.
std::string portOf(const std::string& connection) {
    const auto start = connection.find("port=") + 5;
    return connection.substr(start, connection.find(' ', start) - start);
}

}  // namespace

ServiceDatabases::ServiceDatabases(TestEngine engine) {
    if (engine == TestEngine::Sqlite) {
        project_ = folder_.file("project.db");
        catalogue_ = folder_.file("catalogue.db");
        return;
    }
    static std::atomic<int> counter{0};
    server_ = PostgresTestServer::sharedConnection();
    schemaSuffix_ = std::to_string(::getpid()) + "_" + std::to_string(++counter);
    const std::string uri = "postgresql://caudalis@127.0.0.1:" + portOf(server_) + "/postgres?schema=";
    project_ = uri + "services_project_" + schemaSuffix_;
    catalogue_ = uri + "services_catalogue_" + schemaSuffix_;
}

ServiceDatabases::~ServiceDatabases() {
    if (server_.empty()) {
        return;
    }
    try {
        executeAllOn(server_ + " dbname=postgres",
                     {"DROP SCHEMA IF EXISTS services_project_" + schemaSuffix_ + " CASCADE",
                      "DROP SCHEMA IF EXISTS services_catalogue_" + schemaSuffix_ + " CASCADE"});
    } catch (...) {
        // The server is thrown away after the tests anyway.
    }
}

project::SetupResult ServiceDatabases::setUp() const {
    return project::ProjectSetup({folder_.path(), project_, catalogue_}, shippedDataFile("")).run();
}

std::unique_ptr<design::NozzleSource> ServiceDatabases::nozzles() const {
    return std::make_unique<project::CatalogueDatabaseNozzleSource>(catalogue_);
}

std::unique_ptr<project::ChartStore> ServiceDatabases::charts() const {
    return std::make_unique<project::DatabaseChartStore>(project_, catalogue_);
}

project::ChartService ServiceDatabases::chartService() const {
    return project::ChartService([this] { return charts(); }, [this] { return nozzles(); });
}

fieldtests::FieldTestService ServiceDatabases::fieldTestService() const {
    return fieldtests::FieldTestService(
        project_, [this] { return nozzles(); }, [this] { return charts(); });
}

}  // namespace caudalis::testing
