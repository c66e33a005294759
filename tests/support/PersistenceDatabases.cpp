#include "PersistenceDatabases.hpp"

#include "PostgresTestDatabases.hpp"
#include "SqliteTestDatabases.hpp"
#include "caudalis/db/Connection.hpp"

namespace caudalis::testing {
namespace {

const std::vector<std::string> projectTables = {"tb_cartas",      "tb_aspersores",    "tb_reguladores",
                                                "tb_indicadores", "tb_pluviometria",  "tb_drop",
                                                "pipe_materials", "pivot_evaluations"};
const std::vector<std::string> catalogueTables = {"marca", "Modelos", "Boquillas"};

std::string valueText(const Variant& value) {
    if (value.isNull()) {
        return "<null>";
    }
    if (value.type() == Variant::Type::Boolean) {
        return value.toBoolean() ? "1" : "0";
    }
    return value.toString();
}

std::string rowText(const Recordset& rs) {
    std::string text;
    for (const std::string& name : rs.fieldNames()) {
        text += (text.empty() ? "" : "|") + valueText(rs.Fields(name));
    }
    return text;
}

double firstNumber(const std::string& connectionString, const std::string& sql) {
    Connection con(connectionString);
    con.Open();
    const auto rs = con.Execute(sql);
    return rs->Fields(rs->fieldNames().front()).toDouble();
}

std::unique_ptr<EngineDatabases> databasesOf(TestEngine engine, bool sampleCatalogue) {
    if (engine == TestEngine::Postgresql) {
        return std::make_unique<PostgresTestDatabases>(sampleCatalogue);
    }
    return std::make_unique<SqliteTestDatabases>(sampleCatalogue);
}

}  // namespace

PersistenceDatabases::PersistenceDatabases(TestEngine engine, bool sampleCatalogue)
    : engine_(engine), databases_(databasesOf(engine, sampleCatalogue)) {}

void PersistenceDatabases::executeOnProject(const std::string& sql) const {
    executeOn(projectConnection(), sql);
}

void PersistenceDatabases::executeOnCatalogue(const std::string& sql) const {
    executeOn(catalogueConnection(), sql);
}

TableDump PersistenceDatabases::dump(const std::string& connectionString,
                                     const std::vector<std::string>& tables) const {
    TableDump result;
    for (const std::string& table : tables) {
        result[table] = queryRowsText(connectionString, databases_->allRowsOf(table));
    }
    for (const std::string& counters : databases_->keyCounterQueries()) {
        result[counters] = queryRowsText(connectionString, counters);
    }
    return result;
}

TableDump PersistenceDatabases::dumpProject() const {
    return dump(projectConnection(), projectTables);
}

TableDump PersistenceDatabases::dumpCatalogue() const {
    return dump(catalogueConnection(), catalogueTables);
}

TableRows PersistenceDatabases::projectRows(const std::string& sql) const {
    return queryRowsText(projectConnection(), sql);
}

TableRows PersistenceDatabases::catalogueRows(const std::string& sql) const {
    return queryRowsText(catalogueConnection(), sql);
}

double PersistenceDatabases::projectNumber(const std::string& sql) const {
    return firstNumber(projectConnection(), sql);
}

double PersistenceDatabases::catalogueNumber(const std::string& sql) const {
    return firstNumber(catalogueConnection(), sql);
}

void PersistenceDatabases::refuseOnProject(const std::string& table, const std::string& event) const {
    executeAllOn(projectConnection(), databases_->refuse(table, event));
}

void PersistenceDatabases::stopRefusingOnProject(const std::string& table) const {
    executeAllOn(projectConnection(), databases_->stopRefusing(table));
}

void PersistenceDatabases::refuseOnCatalogue(const std::string& table, const std::string& event) const {
    executeAllOn(catalogueConnection(), databases_->refuse(table, event));
}

void PersistenceDatabases::ignoreInsertsOnCatalogue(const std::string& table) const {
    executeAllOn(catalogueConnection(), databases_->ignoreInserts(table));
}

void PersistenceDatabases::setLastProjectKey(const std::string& table, const std::string& column,
                                             long last) const {
    executeOnProject(databases_->setLastKey(table, column, last));
}

TableRows queryRowsText(const std::string& connectionString, const std::string& sql) {
    Connection con(connectionString);
    con.Open();
    const auto rs = con.Execute(sql);
    TableRows rows;
    for (; !rs->EOF_(); rs->MoveNext()) {
        rows.push_back(rowText(*rs));
    }
    return rows;
}

void executeOn(const std::string& connectionString, const std::string& sql) {
    executeAllOn(connectionString, {sql});
}

void executeAllOn(const std::string& connectionString, const std::vector<std::string>& statements) {
    Connection con(connectionString);
    con.Open();
    for (const std::string& sql : statements) {
        con.Execute(sql);
    }
}

}  // namespace caudalis::testing
