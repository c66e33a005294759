#include "PostgresTestDatabases.hpp"

#include <unistd.h>

#include <atomic>

#include "PersistenceDatabases.hpp"
#include "PostgresTestServer.hpp"
#include "ShippedDatabases.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/db/SqlScript.hpp"

namespace caudalis::testing {
namespace {

/// Serialises the making of the templates among the test processes that share a server.
constexpr const char* templateLockKey = "20161";
/// The database that holds the templates and every test's schemas.
constexpr const char* testDatabase = "caudalis_tests";
constexpr const char* projectTemplate = "project_template";

/// Copies every table of one schema, with its rows and indexes, into a new schema, and sets
/// each generated key to continue after the copied rows.
constexpr const char* copySchemaFunction = R"(CREATE FUNCTION copy_schema(source text, target text)
RETURNS void LANGUAGE plpgsql AS '
DECLARE
    t record;
    k record;
BEGIN
    EXECUTE format(''CREATE SCHEMA %I'', target);
    FOR t IN SELECT tablename FROM pg_tables WHERE schemaname = source LOOP
        EXECUTE format(''CREATE TABLE %I.%I (LIKE %I.%I INCLUDING ALL)'', target, t.tablename, source, t.tablename);
        EXECUTE format(''INSERT INTO %I.%I SELECT * FROM %I.%I'', target, t.tablename, source, t.tablename);
        FOR k IN SELECT attname FROM pg_attribute
                 WHERE attrelid = format(''%I.%I'', target, t.tablename)::regclass AND attidentity <> '''' LOOP
            EXECUTE format(''SELECT setval(pg_get_serial_sequence(%L, %L), ''
                           ''coalesce((SELECT max(%I) FROM %I.%I), 0) + 1, false)'',
                           format(''%I.%I'', target, t.tablename), k.attname, k.attname, target, t.tablename);
        END LOOP;
    END LOOP;
END')";

std::string onDatabase(const std::string& server, const std::string& database) {
    return server + " dbname=" + database;
}

std::string inSchema(const std::string& connectionString, const std::string& schema) {
    return connectionString + " schema='" + schema + "'";
}

void runScripts(const std::string& connectionString, std::initializer_list<const char*> scripts) {
    Connection connection(connectionString);
    connection.Open();
    for (const char* script : scripts) {
        runScriptFile(connection, shippedDataFile(script));
    }
}

std::string catalogueTemplate(bool sampleCatalogue) {
    return sampleCatalogue ? "catalogue_sample_template" : "catalogue_empty_template";
}

/// The schemas every test copies, made by the scripts that make a new user's databases.
void fillTemplates(const std::string& database) {
    executeAllOn(database,
                 {copySchemaFunction, std::string("CREATE SCHEMA ") + projectTemplate,
                  "CREATE SCHEMA " + catalogueTemplate(true), "CREATE SCHEMA " + catalogueTemplate(false)});
    runScripts(inSchema(database, projectTemplate),
               {"schema/project-postgresql.sql", "sample/pipe-materials.sql"});
    runScripts(inSchema(database, catalogueTemplate(true)),
               {"schema/catalogue-postgresql.sql", "sample/catalogue-data.sql"});
    runScripts(inSchema(database, catalogueTemplate(false)), {"schema/catalogue-postgresql.sql"});
}

/// Makes the test database with its templates unless another test process already has.
void provideTemplates(const std::string& server) {
    static bool provided = false;
    if (provided) {
        return;
    }
    Connection lock(onDatabase(server, "postgres"));
    lock.Open();
    lock.Execute(std::string("SELECT pg_advisory_lock(") + templateLockKey + ")");
    const auto present = lock.Execute(std::string("SELECT count(*) AS n FROM pg_database WHERE datname='") +
                                      testDatabase + "'");
    if (present->Fields("n").toLong() == 0) {
        const std::string building = std::string(testDatabase) + "_building";
        lock.Execute("DROP DATABASE IF EXISTS " + building);
        lock.Execute("CREATE DATABASE " + building);
        fillTemplates(onDatabase(server, building));
        lock.Execute("ALTER DATABASE " + building + " RENAME TO " + testDatabase);
    }
    lock.Execute(std::string("SELECT pg_advisory_unlock(") + templateLockKey + ")");
    provided = true;
}

std::string uniqueSuffix() {
    static std::atomic<int> counter{0};
    return std::to_string(::getpid()) + "_" + std::to_string(++counter);
}

std::string functionFor(const std::string& table) {
    return "injected_" + table;
}

std::vector<std::string> triggerOn(const std::string& table, const std::string& event,
                                   const std::string& body) {
    return {"CREATE OR REPLACE FUNCTION " + functionFor(table) + "() RETURNS trigger LANGUAGE plpgsql AS '" +
                body + "'",
            "CREATE TRIGGER injected_failure BEFORE " + event + " ON " + table +
                " FOR EACH ROW EXECUTE FUNCTION " + functionFor(table) + "()"};
}

}  // namespace

PostgresTestDatabases::PostgresTestDatabases(bool sampleCatalogue)
    : database_(onDatabase(PostgresTestServer::sharedConnection(), testDatabase)),
      projectSchema_("project_" + uniqueSuffix()),
      catalogueSchema_("sprinkler catalogue " + uniqueSuffix()) {
    provideTemplates(PostgresTestServer::sharedConnection());
    executeAllOn(
        database_,
        {"SELECT copy_schema('" + std::string(projectTemplate) + "', '" + projectSchema_ + "')",
         "SELECT copy_schema('" + catalogueTemplate(sampleCatalogue) + "', '" + catalogueSchema_ + "')"});
}

PostgresTestDatabases::~PostgresTestDatabases() {
    try {
        executeAllOn(database_, {"DROP SCHEMA \"" + projectSchema_ + "\" CASCADE",
                                 "DROP SCHEMA \"" + catalogueSchema_ + "\" CASCADE"});
    } catch (...) {
        // The server and everything on it are thrown away after the tests anyway.
    }
}

std::string PostgresTestDatabases::projectConnection() const {
    return inSchema(database_, projectSchema_);
}

std::string PostgresTestDatabases::catalogueConnection() const {
    return inSchema(database_, catalogueSchema_);
}

std::string PostgresTestDatabases::allRowsOf(const std::string& table) const {
    return "SELECT * FROM " + table + " ORDER BY ctid";
}

std::vector<std::string> PostgresTestDatabases::refuse(const std::string& table,
                                                       const std::string& event) const {
    return triggerOn(table, event, "BEGIN RAISE EXCEPTION ''injected''; END");
}

std::vector<std::string> PostgresTestDatabases::stopRefusing(const std::string& table) const {
    return {"DROP TRIGGER injected_failure ON " + table};
}

std::vector<std::string> PostgresTestDatabases::ignoreInserts(const std::string& table) const {
    return triggerOn(table, "INSERT", "BEGIN RETURN NULL; END");
}

std::string PostgresTestDatabases::setLastKey(const std::string& table, const std::string& column,
                                              long last) const {
    return "SELECT setval(pg_get_serial_sequence('" + table + "', '" + column + "'), " +
           std::to_string(last) + ")";
}

}  // namespace caudalis::testing
