#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "TemporaryFolder.hpp"
#include "TestEngine.hpp"
#include "caudalis/design/NozzleSource.hpp"
#include "caudalis/fieldtests/FieldTestService.hpp"
#include "caudalis/project/ChartService.hpp"
#include "caudalis/project/ProjectSetup.hpp"

namespace caudalis::testing {

/// A project database and a catalogue database named as a host names them (files of a fresh
/// folder, or two fresh schemas of the tests' PostgreSQL server), not made yet: the services
/// under test set them up.
class ServiceDatabases {
public:
    explicit ServiceDatabases(TestEngine engine);
    ~ServiceDatabases();

    const std::string& project() const noexcept { return project_; }
    const std::string& catalogue() const noexcept { return catalogue_; }
    const TemporaryFolder& folder() const noexcept { return folder_; }

    /// Sets both databases up from the source tree's data folder.
    project::SetupResult setUp() const;
    std::unique_ptr<design::NozzleSource> nozzles() const;
    std::unique_ptr<project::ChartStore> charts() const;
    /// The services on these databases, as a host makes them.
    project::ChartService chartService() const;
    fieldtests::FieldTestService fieldTestService() const;

private:
    TemporaryFolder folder_;
    std::string server_;
    std::string schemaSuffix_;
    std::string project_;
    std::string catalogue_;
};

/// A test of the services on the databases of each engine, set up before it runs.
class ServiceTest : public ::testing::TestWithParam<TestEngine> {
protected:
    void SetUp() override { databases.setUp(); }

    ServiceDatabases databases{GetParam()};
};

}  // namespace caudalis::testing
