#include "PostgresLibrary.hpp"

#include <dlfcn.h>

#include <string>

#include "caudalis/db/DatabaseErrors.hpp"

namespace caudalis {
namespace {

/// What the dynamic loader last reported, or "" when it reported nothing.
std::string loaderMessage() {
    const char* message = dlerror();
    return message == nullptr ? std::string() : std::string(message);
}

[[noreturn]] void raiseNotLoaded(const char* file, const std::string& reason) {
    std::string message = "PostgreSQL connections need PostgreSQL's client library ";
    message += file;
    message += ", which could not be loaded (";
    message += reason;
    message += "): install it (Debian: libpq5)";
    raiseEngineError(message);
}

/// Looks up `name` in `library` into `function`.
template <class Function>
void resolve(void* library, const char* file, const char* name, Function& function) {
    void* symbol = dlsym(library, name);
    if (symbol == nullptr) {
        raiseNotLoaded(file, loaderMessage());
    }
    function = reinterpret_cast<Function>(symbol);
}

}  // namespace

const PostgresLibrary& PostgresLibrary::shared() {
    static const PostgresLibrary library = load(fileName);
    return library;
}

PostgresLibrary PostgresLibrary::load(const char* file) {
    // The library stays loaded for the life of the process: results and connections may
    // outlive any one owner, so it is never closed.
    void* library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        raiseNotLoaded(file, loaderMessage());
    }
    PostgresLibrary pq;
    resolve(library, file, "PQconnectdb", pq.PQconnectdb);
    resolve(library, file, "PQfinish", pq.PQfinish);
    resolve(library, file, "PQstatus", pq.PQstatus);
    resolve(library, file, "PQerrorMessage", pq.PQerrorMessage);
    resolve(library, file, "PQsetNoticeProcessor", pq.PQsetNoticeProcessor);
    resolve(library, file, "PQtransactionStatus", pq.PQtransactionStatus);
    resolve(library, file, "PQdb", pq.PQdb);
    resolve(library, file, "PQexec", pq.PQexec);
    resolve(library, file, "PQexecParams", pq.PQexecParams);
    resolve(library, file, "PQresultStatus", pq.PQresultStatus);
    resolve(library, file, "PQresultErrorField", pq.PQresultErrorField);
    resolve(library, file, "PQclear", pq.PQclear);
    resolve(library, file, "PQntuples", pq.PQntuples);
    resolve(library, file, "PQnfields", pq.PQnfields);
    resolve(library, file, "PQfname", pq.PQfname);
    resolve(library, file, "PQftype", pq.PQftype);
    resolve(library, file, "PQgetisnull", pq.PQgetisnull);
    resolve(library, file, "PQgetvalue", pq.PQgetvalue);
    resolve(library, file, "PQgetlength", pq.PQgetlength);
    resolve(library, file, "PQconninfoParse", pq.PQconninfoParse);
    resolve(library, file, "PQconninfoFree", pq.PQconninfoFree);
    resolve(library, file, "PQfreemem", pq.PQfreemem);
    return pq;
}

}  // namespace caudalis
