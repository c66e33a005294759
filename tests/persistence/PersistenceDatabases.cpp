#include "PersistenceDatabases.hpp"

#include <filesystem>

#include "ShippedDatabases.hpp"
#include "caudalis/db/Connection.hpp"

namespace caudalis::testing {
namespace {

const std::vector<std::string> projectTables = {"tb_cartas",      "tb_aspersores",    "tb_reguladores",
                                                "tb_indicadores", "tb_pluviometria",  "tb_drop",
                                                "pipe_materials", "pivot_evaluations"};
const std::vector<std::string> catalogueTables = {"marca", "Modelos", "Boquillas"};

std::string rowText(const Recordset& rs) {
    std::string text;
    for (const std::string& name : rs.fieldNames()) {
        const Variant value = rs.Fields(name);
        if (!text.empty()) {
            text += '|';
        }
        text += value.isNull() ? std::string("<null>") : value.toString();
    }
    return text;
}

TableDump dump(const std::string& connectionString, const std::vector<std::string>& tables) {
    TableDump result;
    for (const std::string& table : tables) {
        result[table] = queryRowsText(connectionString, "SELECT * FROM " + table + " ORDER BY rowid");
    }
    result["sqlite_sequence"] =
        queryRowsText(connectionString, "SELECT * FROM sqlite_sequence ORDER BY name");
    return result;
}

double firstNumber(const std::string& connectionString, const std::string& sql) {
    Connection con(connectionString);
    con.Open();
    const auto rs = con.Execute(sql);
    return rs->Fields(rs->fieldNames().front()).toDouble();
}

/// Databases made once from the shipped scripts; every test gets copies of them.
class Templates {
public:
    Templates()
        : project_(folder_.file("project.db")),
          sample_(folder_.file("sample.db")),
          empty_(folder_.file("empty.db")) {
        createProjectDatabase(project_);
        createCatalogueDatabase(sample_, true);
        createCatalogueDatabase(empty_, false);
    }

    static const Templates& instance() {
        static const Templates templates;
        return templates;
    }

    const std::string& project() const { return project_; }
    const std::string& catalogue(bool sample) const { return sample ? sample_ : empty_; }

private:
    TemporaryFolder folder_;
    std::string project_;
    std::string sample_;
    std::string empty_;
};

}  // namespace

PersistenceDatabases::PersistenceDatabases(bool sampleCatalogue)
    : projectFile_(folder_.file("project.db")),
      catalogueFile_((folder_.path() / "sprinkler catalogue" / "catalogue.db").string()) {
    std::filesystem::create_directories(folder_.path() / "sprinkler catalogue");
    std::filesystem::copy_file(Templates::instance().project(), projectFile_);
    std::filesystem::copy_file(Templates::instance().catalogue(sampleCatalogue), catalogueFile_);
}

void PersistenceDatabases::executeOnProject(const std::string& sql) const {
    executeOn(projectConnection(), sql);
}

void PersistenceDatabases::executeOnCatalogue(const std::string& sql) const {
    executeOn(catalogueConnection(), sql);
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
    Connection con(connectionString);
    con.Open();
    con.Execute(sql);
}

}  // namespace caudalis::testing
