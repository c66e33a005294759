#include "EvaluationStore.hpp"

#include "CliErrors.hpp"
#include "StorableText.hpp"
#include "caudalis/core/Error.hpp"
#include "caudalis/db/Connection.hpp"
#include "caudalis/evaluation/PivotEvaluations.hpp"

namespace caudalis::cli {

namespace {

bool nameTaken(Connection& connection, const std::string& name) {
    return PivotEvaluations::shared()->exists(connection, "name='" + name + "'");
}

std::string takenName(const std::string& name) {
    return "an evaluation named \"" + name + "\" already exists";
}

}  // namespace

EvaluationStore::EvaluationStore(std::string projectPath)
    : project_(std::move(projectPath), DatabaseKind::Project) {}

void EvaluationStore::requireNameIsFree(const std::string& name) const {
    requireStorableText(name, "evaluation name");
    project_.requireUsable();
    Connection connection(project_.connectionString());
    connection.Open();
    if (nameTaken(connection, name)) {
        throw InputError(takenName(name) + " in project database " + project_.path());
    }
}

Long EvaluationStore::save(PivotEvaluation evaluation) const {
    requireNameIsFree(evaluation.name);
    try {
        Connection connection(project_.connectionString());
        connection.Open();
        connection.BeginTrans();
        if (nameTaken(connection, evaluation.name)) {
            throw InputError(takenName(evaluation.name) + " in project database " + project_.path());
        }
        PivotEvaluations::shared()->save(connection, evaluation);
        connection.CommitTrans();
        connection.Close();
    } catch (const Error& error) {
        throw InputError("cannot store the evaluation in project database " + project_.path() + ": " +
                         error.description());
    }
    return evaluation.id;
}

}  // namespace caudalis::cli
