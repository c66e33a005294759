#include "caudalis/fieldtests/EvaluationStore.hpp"

#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/project/ServiceError.hpp"
#include "caudalis/project/StorableText.hpp"

namespace caudalis::fieldtests {

namespace {

constexpr const char* figuresTable = "pivot_evaluation_figures";

std::string takenName(const std::string& name, const std::string& path) {
    return "an evaluation named \"" + name + "\" already exists in project database " + path;
}

}  // namespace

EvaluationStore::EvaluationStore(std::string projectPath)
    : project_(std::move(projectPath), project::DatabaseKind::Project) {}

void EvaluationStore::requireFiguresTable() const {
    project_.requireUsable();
    if (!project_.hasTable(figuresTable)) {
        throw project::InputError("project database " + project_.path() + " has no table " + figuresTable +
                                  " (it predates stored figures): run caudalis init on its folder to add it");
    }
}

void EvaluationStore::requireNameIsFree(const std::string& name) const {
    project::requireStorableText(name, "evaluation name");
    requireFiguresTable();
    Connection connection(project_.connectionString());
    connection.Open();
    if (design::FieldEvaluationStore(connection).nameTaken(name)) {
        throw project::InputError(takenName(name, project_.path()));
    }
}

Long EvaluationStore::save(const design::FieldReadings& readings, const design::FieldEvaluationResult& result,
                           const std::string& name) const {
    requireNameIsFree(name);
    try {
        Connection connection(project_.connectionString());
        connection.Open();
        connection.BeginTrans();
        design::FieldEvaluationStore store(connection);
        if (store.nameTaken(name)) {
            throw project::InputError(takenName(name, project_.path()));
        }
        const auto id = store.save(readings, result, name);
        connection.CommitTrans();
        connection.Close();
        return id;
    } catch (const Error& error) {
        throw project::InputError("cannot store the evaluation in project database " + project_.path() +
                                  ": " + error.description());
    }
}

std::vector<design::StoredEvaluationSummary> EvaluationStore::list() const {
    requireFiguresTable();
    Connection connection(project_.connectionString());
    connection.Open();
    return design::FieldEvaluationStore(connection).list();
}

design::StoredFieldEvaluation EvaluationStore::find(Long id) const {
    requireFiguresTable();
    Connection connection(project_.connectionString());
    connection.Open();
    auto found = design::FieldEvaluationStore(connection).find(id);
    if (!found) {
        throw project::InputError("project database " + project_.path() + " holds no evaluation " +
                                  std::to_string(id));
    }
    return *found;
}

}  // namespace caudalis::fieldtests
